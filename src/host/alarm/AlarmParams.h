// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Language.h"
#include "api/values/CMError.h"
#include "host/rpc/JsonRpc.h"
#include "host/rpc/RpcMethods.h"

#include <QString>
#include <QVariant>

#include <optional>

/// \file
/// Parameters of the methods in this folder.

/// A whole number from \a lowest to \a highest, as JSON has it; nothing for anything else.
inline std::optional<int> wholeNumber(const QVariant &value, int lowest, int highest)
{
    if (value.userType() != QMetaType::LongLong)
        return {};
    const qlonglong number = value.toLongLong();
    if (number < lowest || number > highest)
        return {};
    return static_cast<int>(number);
}

inline JsonRpcError wrongParams(const QString &words)
{
    return {JsonRpcError::InvalidParams, words, {}};
}

/// What the database says of a change that it could not keep.
inline JsonRpcError notSaved(const QString &words)
{
    return RpcMethods::toRpcError(CMError(Language::ntr(words)));
}
