// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "host/rpc/JsonRpc.h"

#include <QStringList>

#include <chrono>
#include <optional>

/// Reads the parameters of one call. The first parameter that is missing or of the wrong type is
/// the error; reading goes on with empty values. A null parameter counts as missing.
class RpcParams {
public:
    /// Most role names, and most characters of one, that a request may name.
    static constexpr int MaxRoles = 100;
    static constexpr int MaxRoleLength = 100;
    /// Rows in one answer, and what is answered when no range is asked for.
    static constexpr int MaxRows = 10000;
    static constexpr int DefaultRows = 100;
    /// A year.
    static constexpr int MaxSeconds = 366 * 24 * 3600;

    explicit RpcParams(const QVariantHash &params);

    bool failed() const { return !m_error.isEmpty(); }
    JsonRpcError error() const;

    /// "path" as a path that addresses something.
    CMPath path();
    /// "screen" as a path that addresses something, and "row", from 0.
    CMPath screen();
    int row();
    /// "path" as a row has it; empty when it is missing.
    CMPath rowPath();
    /// "roles": every role when it is missing.
    QStringList roles();
    /// "role".
    QString role();
    /// "first" and "last", from 0, inclusive.
    void range(int &first, int &last);
    /// "refresh": whether to fetch again; false when it is missing.
    bool refresh();
    /// "poll": whether the client repeats this request regularly; false when it is missing.
    bool poll();
    /// A number of seconds, at most MaxSeconds and possibly negative; none when it is missing.
    std::optional<std::chrono::milliseconds> seconds(const char *name);
    /// "live": false when it is missing.
    bool live();
    /// \a name as a whole number from \a least to \a most; nothing when it is missing.
    std::optional<int> number(const QString &name, int least, int most);
    /// \a name as true or false; nothing when it is missing.
    std::optional<bool> truth(const QString &name);
    /// "value": anything, but it must be there.
    QVariant value();

    /// Something is wrong with the parameters together.
    void fail(const QString &error);

private:
    CMPath path(const QString &name);
    bool flag(const QString &name);
    bool index(const QString &name, int &value);

    const QVariantHash m_params;
    QString m_error;
};
