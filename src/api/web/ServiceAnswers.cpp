// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/ServiceAnswers.h"

#include "api/web/VeskJson.h"

namespace {

constexpr int FirstErrorCode = 400;

/// The status in \a answer, a response body; null when the body does not have that form.
QString statusIn(const QByteArray &answer, const ServiceAnswerForm &form)
{
    VeskError error;
    QVariant value = VeskJson::parse(answer, error);
    if (!error.isEmpty())
        return {};
    for (const QString &member : form.status) {
        if (value.userType() != QMetaType::QVariantHash)
            return {};
        value = value.toHash().value(member);
    }
    switch (value.userType()) {
    case QMetaType::QString:
    case QMetaType::LongLong:
        return value.toString();
    default:
        return {};
    }
}

VeskServiceFault::Kind kindOf(HttpClientStatus status)
{
    switch (status) {
    case HttpClientStatus::ResolveFailed:
    case HttpClientStatus::ConnectFailed:
    case HttpClientStatus::TooManyRedirects:
        return VeskServiceFault::Unreachable;
    case HttpClientStatus::TimedOut:
        return VeskServiceFault::TimedOut;
    case HttpClientStatus::TlsFailed:
        return VeskServiceFault::Insecure;
    case HttpClientStatus::TooLarge:
    case HttpClientStatus::Broken:
        return VeskServiceFault::Broken;
    case HttpClientStatus::Success:
    case HttpClientStatus::InvalidRequest:
    case HttpClientStatus::Cancelled:
        break;
    }
    return VeskServiceFault::None;
}

} // namespace

bool hasFailed(const HttpClientResult &exchange)
{
    return kindOf(exchange.status()) != VeskServiceFault::None
        || (exchange.status() == HttpClientStatus::Success && exchange.code() >= FirstErrorCode);
}

VeskServiceFault serviceFaultOf(const HttpClientResult &exchange, const ServiceAnswerForm &form)
{
    if (exchange.status() != HttpClientStatus::Success)
        return {kindOf(exchange.status()), 0};
    const bool isError = exchange.code() >= FirstErrorCode;
    const QString status = form.isKnown() ? statusIn(exchange.data(), form) : QString();
    if (isError && (status.isNull() || form.good.contains(status)))
        return {VeskServiceFault::HttpStatus, exchange.code()};
    if (!form.isKnown() || form.good.contains(status))
        return {};
    if (status.isNull())
        return {VeskServiceFault::Unreadable, 0};
    return {VeskServiceFault::Reported, status.toInt()};
}
