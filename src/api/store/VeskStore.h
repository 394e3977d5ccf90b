// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMError.h"
#include "api/values/CMPath.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantHash>

#include <functional>

/// What a plug-in keeps from one start to the next: keys with values, which the host writes to its
/// state folder. For a plug-in whose descriptor says that it needs "store"; the plug-in needs no
/// file of its own.
///
/// The values are there from the beginning: the host hands all of them over with the
/// configuration, so reading never waits. A write takes effect once it is on the disk, or not at
/// all.
///
/// On the thread on which it is created, that of the worker, with an event loop.
class VESK_API VeskStore : public QObject {
    Q_OBJECT

public:
    /// Of all keys, in UTF-8, and values together. A write that leads beyond is refused.
    static constexpr int MaxBytes = 1024 * 1024;
    static constexpr int MaxKeys = 10000;
    /// Of a key, which is not empty, in UTF-8.
    static constexpr int MaxKeyBytes = 200;

    /// \a config is what worker_create() was given.
    explicit VeskStore(const QVariantHash &config, QObject *parent = nullptr);

    /// Whether the host keeps a store for this plug-in. Without one, writes fail.
    bool isAvailable() const { return !m_path.isEmpty(); }
    /// In no particular order.
    QStringList keys() const { return m_values.keys(); }
    bool contains(const QString &key) const { return m_values.contains(key); }
    /// Null for a key that is not there.
    QByteArray value(const QString &key) const { return m_values.value(key); }

    /// Null values stand for keys that are removed.
    using Changes = QHash<QString, QByteArray>;
    /// Called with an empty error when the changes are on the disk and in effect.
    using Done = std::function<void(const CMError &error)>;
    /// Writes all of \a changes or none of them. Writes are carried out in their order, each of
    /// them whether or not the one before succeeded. \a done is called through the event loop,
    /// unless this is destroyed before; the write is carried out all the same.
    void write(const Changes &changes, Done done);

private:
    CMPath m_path; ///< of the store in the host's tree
    QHash<QString, QByteArray> m_values;
};
