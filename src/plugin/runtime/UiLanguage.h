// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

class CMSubscription;

/// Sets the process's language to that of the language setting, and notifies the process's workers
/// when it changes. Main thread, with an event loop; while there is a root.
class UiLanguage : public QObject {
    Q_OBJECT

public:
    /// \a folders have the catalogues. Applies the setting's present value.
    explicit UiLanguage(const QStringList &folders, QObject *parent = nullptr);
    ~UiLanguage() override;

private:
    /// Returns whether the language has changed.
    bool apply() const;

    const QStringList m_folders;
    std::unique_ptr<CMSubscription> m_setting;
};
