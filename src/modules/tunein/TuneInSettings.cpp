// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInSettings.h"

#include "api/core/log.h"
#include "api/nodes/CMRootWorker.h"
#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValue.h"
#include "api/values/VeskValuePaths.h"

VESK_LOGGER("CB_TuneIn")

namespace {

constexpr int MaxSerialLength = 32;
/// "00:1A:2B:3C:4D:5E"
constexpr int MacLength = 17;

VeskValue hostValue(const CMPath &path)
{
    return VeskValue(CMRoot()->getValue(path).toHash());
}

} // namespace

bool TuneInSettings::load()
{
    m_browseIndexUrl = hostValue(VeskTuneInBrowseIndexUrlPath()).string_();
    m_partnerId = hostValue(VeskTuneInPartnerIdPath()).string_();
    m_childElementsInSingleList = hostValue(VeskChildElementsInSingleListPath()).bool_();
    m_supportedStreams = hostValue(VeskTuneInSupportedStreamsPath()).string_();
    m_enabledFixItWizard = hostValue(VeskTuneInEnabledFixItWizardPath()).bool_();
    loadSerial();
    VESK_DEBUG("Configuration: Partner ID: '"
        << m_partnerId << "', SN: '" << m_serial << "', supported streams: '"
        << (m_supportedStreams.isEmpty() ? QStringLiteral("TuneIn default") : m_supportedStreams)
        << "'");
    return true;
}

void TuneInSettings::loadSerial()
{
    m_serial = hostValue(VeskSystemMemberIdPath()).string_();
    if (m_serial.isEmpty()) {
        VESK_WARN("Obtained empty member ID string, MAC address will be used instead of it!");
        const QString mac = hostValue(VeskNetworkStateEthernetMAC()).string_();
        if (mac.length() == MacLength) {
            VESK_DEBUG("Got MAC: " << mac);
            m_serial = mac;
        } else {
            VESK_WARN("Got invalid MAC: " << mac << "; using default (00:00:00:00:00:00)");
            m_serial = QStringLiteral("00:00:00:00:00:00");
        }
    }
    if (m_serial.length() > MaxSerialLength) {
        m_serial.truncate(MaxSerialLength);
        VESK_WARN("Truncated serial number to 32 characters!");
    }
}
