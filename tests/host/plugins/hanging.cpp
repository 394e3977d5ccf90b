// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMNodesWorker.h"

#include <QCoreApplication>
#include <QTimer>

#include <unistd.h>

/// Never returns. Exported, so that a stack shows its name.
extern "C" Q_DECL_EXPORT void standStillForEver()
{
    for (;;)
        ::pause();
}

// A plug-in that blocks the main thread of its process soon after it was loaded.
extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *config)
{
    QMetaObject::invokeMethod(
        qApp, [] { QTimer::singleShot(300, qApp, &standStillForEver); }, Qt::QueuedConnection);
    return new CMNodesWorker(*static_cast<const QVariantHash *>(config), QStringLiteral("Hanging"));
}
