// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/ServiceFaults.h"

#include <algorithm>

namespace {

constexpr int FirstServerError = 500;

TrString text(const char *source, const QVector<TrArg> &arguments)
{
    return TrString(QStringLiteral("Host"), QString::fromLatin1(source), QString(), -1, arguments);
}

/// "HTTP 403", or "403" where it is the service's own status.
QString statusOf(const VeskServiceFault &fault)
{
    const QString code = QString::number(fault.code);
    return fault.kind == VeskServiceFault::HttpStatus ? QStringLiteral("HTTP ") + code : code;
}

const char *sourceOf(const VeskServiceFault &fault)
{
    switch (fault.kind) {
    case VeskServiceFault::Unreachable:
        return QT_TRANSLATE_NOOP(
            "Host", "The %1 service cannot be reached. Please try again later.");
    case VeskServiceFault::TimedOut:
        return QT_TRANSLATE_NOOP("Host", "The %1 service does not answer. Please try again later.");
    case VeskServiceFault::Insecure:
        return QT_TRANSLATE_NOOP("Host", "There is no secure connection to the %1 service.");
    case VeskServiceFault::Broken:
        return QT_TRANSLATE_NOOP(
            "Host", "The answer of the %1 service did not come whole. Please try again later.");
    case VeskServiceFault::Unreadable:
        return QT_TRANSLATE_NOOP("Host",
            "What came is no answer of the %1 service. It may be out of order, or this network may "
            "want a login first.");
    case VeskServiceFault::HttpStatus:
    case VeskServiceFault::Reported:
        if (fault.code >= FirstServerError) {
            return QT_TRANSLATE_NOOP(
                "Host", "The %1 service is out of order (%2). Please try again later.");
        }
        return QT_TRANSLATE_NOOP("Host", "The %1 service cannot answer this (%2).");
    case VeskServiceFault::None:
        break;
    }
    return "";
}

} // namespace

void ServiceFaults::declare(const CMPath &root, const TrString &deviceSetting)
{
    VESK_ASSERT_THREAD(m_thread);
    m_services.push_back({root, deviceSetting});
}

TrString ServiceFaults::words(const CMPath &path, const VeskServiceFault &fault) const
{
    VESK_ASSERT_THREAD(m_thread);
    if (fault.isEmpty())
        return {};
    const auto found = std::find_if(m_services.begin(), m_services.end(),
        [&path](const Service &each) { return each.root.prefix() == path.prefix(); });
    const Service service = found == m_services.end() ? Service {path, TrString()} : *found;
    if (fault.isRefusal())
        return refusal(service, statusOf(fault));
    return text(sourceOf(fault), {TrArg(service.root.prefix()), TrArg(statusOf(fault))});
}

TrString ServiceFaults::refusal(const Service &service, const QString &status) const
{
    const QString name = service.root.prefix();
    if (service.deviceSetting.isEmpty()) {
        return text(QT_TRANSLATE_NOOP("Host", "The %1 service refuses this device (%2)."),
            {TrArg(name), TrArg(status)});
    }
    return text(QT_TRANSLATE_NOOP(
                    "Host", "The %1 service refuses this device (%2). Check the setting \"%3\"."),
        {TrArg(name), TrArg(status), TrArg(service.deviceSetting.toString())});
}
