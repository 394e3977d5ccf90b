// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

class CMSubscription;

/// Keeps the process's language the one of the language setting, and tells the process's workers
/// when it changes. Main thread, with an event loop; while there is a root.
class UiLanguage : public QObject {
    Q_OBJECT

public:
    /// \a folders have the catalogues. What the setting says now holds at once.
    explicit UiLanguage(const QStringList &folders, QObject *parent = nullptr);
    ~UiLanguage() override;

private:
    /// Whether it was another one.
    bool apply() const;

    const QStringList m_folders;
    std::unique_ptr<CMSubscription> m_setting;
};
