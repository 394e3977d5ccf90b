// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskValue.h"

#include <QObject>

#include <memory>

/// Follows one value: changed() is emitted with the current value once the event loop runs, and
/// with every later one. Lives on the thread that creates it, which needs an event loop. While no
/// worker has the value nothing is emitted.
class VESK_API CMValueItem : public QObject {
    Q_OBJECT

public:
    CMValueItem(const CMPath &path, QObject *parent);
    ~CMValueItem() override;

Q_SIGNALS:
    void changed(const VeskValue &newValue);

private:
    void read();
    void take(const QVariant &answered);

    const CMPath m_path;
    std::unique_ptr<CMSubscription> m_subscription;
    VeskValue m_last;
    bool m_reading = false;
    bool m_readAgain = false;
};
