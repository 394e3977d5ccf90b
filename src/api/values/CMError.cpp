// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMError.h"

namespace {

[[maybe_unused]] const bool Registered = veskRegisterHashType<CMError>("CMError");

}

CMError::CMError(const QString &name, const TrString &message, const TrString &title)
{
    insert(Name(), name);
    insert(Message(), message);
    insert(Title(), title);
}

CMError::CMError(const TrString &message)
    : CMError(DefaultName(), message, TrString(QStringLiteral("CMError"), DefaultTitle()))
{
}

VESK_KEY(CMError::Name, "name")
VESK_KEY(CMError::Message, "message")
VESK_KEY(CMError::Title, "title")
VESK_KEY(CMError::DefaultName, "VeskError")
VESK_KEY(CMError::DefaultTitle, "Error")
VESK_KEY(CMError::NoNodeName, "VeskError:no-node")
VESK_KEY(CMError::UnansweredName, "VeskError:unanswered")
VESK_KEY(CMError::TooLongName, "VeskError:too-long")

QString CMError::name() const
{
    return text(Name());
}

TrString CMError::message() const
{
    return TrString::fromVariant(value(Message()));
}

TrString CMError::title() const
{
    return TrString::fromVariant(value(Title()));
}
