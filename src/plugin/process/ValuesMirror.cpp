// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/process/ValuesMirror.h"

ValuesMirror::ValuesMirror(std::function<void(const CMRequest &)> write, QObject *parent)
    : CMValuesWorker(parent)
    , m_write(std::move(write))
{
}

void ValuesMirror::apply(const ValueMessage &message)
{
    if (message.path.isEmpty())
        return;
    const VeskValue value {VeskHash(message.value)};
    if (this->value(message.path).isEmpty())
        define(message.path, value, message.writable ? Writable : ReadOnly, message.title);
    else
        setValue(message.path, value);
}

void ValuesMirror::request(CMRequest request)
{
    if (request.kind() == CMRequest::SetData)
        m_write(request);
    else
        CMValuesWorker::request(std::move(request));
}
