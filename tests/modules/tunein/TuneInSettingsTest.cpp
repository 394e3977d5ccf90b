// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInSettings.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "tests/modules/tunein/TuneInHost.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString TooLong = "0123456789abcdef0123456789abcdef01234567"_s;

class TuneInSettingsTest : public testing::Test, protected TuneInHost {
protected:
    LogCapture m_log {"CB_TuneIn"};
    TuneInSettings m_settings;
};

/// Has no values and counts the requests.
class CountingWorker : public CMAbstractWorker {
public:
    void request(CMRequest request) override
    {
        ++asked;
        request.reply().setError(CMError(TrString("test", "nothing here")));
    }

    std::atomic<int> asked {0};
};

} // namespace

TEST_F(TuneInSettingsTest, ReadsEveryValueFromTheHost)
{
    set(VeskTuneInPartnerIdPath(), "p1"_s);
    set(VeskTuneInBrowseIndexUrlPath(), "http://index.example/"_s);
    set(VeskTuneInSupportedStreamsPath(), "mp3,aac,hls"_s);
    set(VeskChildElementsInSingleListPath(), true);
    set(VeskTuneInEnabledFixItWizardPath(), true);

    EXPECT_TRUE(m_settings.load());

    EXPECT_EQ(m_settings.partnerId(), "p1"_s);
    EXPECT_EQ(m_settings.browseIndexUrl(), "http://index.example/"_s);
    EXPECT_EQ(m_settings.supportedStreams(), "mp3,aac,hls"_s);
    EXPECT_TRUE(m_settings.childElementsInSingleList());
    EXPECT_TRUE(m_settings.enabledFixItWizard());
    EXPECT_EQ(m_settings.serviceId(), QString());
}

TEST_F(TuneInSettingsTest, ReadsTheTwoSwitchesSeparately)
{
    set(VeskChildElementsInSingleListPath(), true);
    m_settings.load();
    EXPECT_TRUE(m_settings.childElementsInSingleList());
    EXPECT_FALSE(m_settings.enabledFixItWizard());
}

TEST_F(TuneInSettingsTest, UsesTheMemberIdAsSerial)
{
    m_settings.load();
    EXPECT_EQ(m_settings.serial(), "ABC"_s);
    EXPECT_THAT(m_log.lines(),
        ElementsAre("DEBUG Configuration: Partner ID: 'partner', SN: 'ABC', "
                    "supported streams: 'mp3,aac'"_s));
}

TEST_F(TuneInSettingsTest, UsesTheMacAsSerialWithoutAMemberId)
{
    set(VeskSystemMemberIdPath(), QString());
    set(VeskNetworkStateEthernetMAC(), "00:1a:2B:3C:4D:5E"_s);
    m_settings.load();
    EXPECT_EQ(m_settings.serial(), "00:1a:2B:3C:4D:5E"_s);
    EXPECT_THAT(m_log.lines(),
        ElementsAre(
            "WARN Obtained empty member ID string, MAC address will be used instead of it!"_s,
            "DEBUG Got MAC: 00:1a:2B:3C:4D:5E"_s,
            "DEBUG Configuration: Partner ID: 'partner', SN: '00:1a:2B:3C:4D:5E', "
            "supported streams: 'mp3,aac'"_s));
}

TEST_F(TuneInSettingsTest, ValidatesAMacOnlyByItsLength)
{
    set(VeskSystemMemberIdPath(), QString());
    set(VeskNetworkStateEthernetMAC(), "seventeen letters"_s);
    m_settings.load();
    EXPECT_EQ(m_settings.serial(), "seventeen letters"_s);
}

TEST_F(TuneInSettingsTest, ReplacesAnInvalidMacByZeros)
{
    set(VeskSystemMemberIdPath(), QString());
    for (const QString &mac : {"001A2B3C4D5E"_s, QString(), "00:1A:2B:3C:4D:5E:"_s}) {
        set(VeskNetworkStateEthernetMAC(), mac);
        m_log.clear();
        m_settings.load();
        EXPECT_EQ(m_settings.serial(), "00:00:00:00:00:00"_s);
        EXPECT_THAT(m_log.lines("WARN"_s),
            ElementsAre(
                "Obtained empty member ID string, MAC address will be used instead of it!"_s,
                "Got invalid MAC: "_s + mac + "; using default (00:00:00:00:00:00)"_s));
    }
}

TEST_F(TuneInSettingsTest, TruncatesASerialTo32Characters)
{
    set(VeskSystemMemberIdPath(), TooLong);
    m_settings.load();
    EXPECT_EQ(m_settings.serial(), "0123456789abcdef0123456789abcdef"_s);
    EXPECT_THAT(m_log.lines(),
        ElementsAre("WARN Truncated serial number to 32 characters!"_s,
            "DEBUG Configuration: Partner ID: 'partner', "
            "SN: '0123456789abcdef0123456789abcdef', supported streams: 'mp3,aac'"_s));
}

TEST_F(TuneInSettingsTest, TruncatesOnlySerialsOfMoreThan32Characters)
{
    set(VeskSystemMemberIdPath(), TooLong.left(33));
    m_settings.load();
    EXPECT_EQ(m_settings.serial(), TooLong.left(32));
    EXPECT_THAT(m_log.lines("WARN"_s), ElementsAre("Truncated serial number to 32 characters!"_s));

    m_log.clear();
    set(VeskSystemMemberIdPath(), TooLong.left(32));
    m_settings.load();
    EXPECT_EQ(m_settings.serial(), TooLong.left(32));
    EXPECT_THAT(m_log.lines("WARN"_s), IsEmpty());
}

TEST_F(TuneInSettingsTest, LogsEmptyFormatsAsTuneInsDefault)
{
    set(VeskTuneInSupportedStreamsPath(), QString());
    m_settings.load();
    EXPECT_EQ(m_settings.supportedStreams(), QString());
    EXPECT_THAT(m_log.lines("DEBUG"_s),
        ElementsAre("Configuration: Partner ID: 'partner', SN: 'ABC', "
                    "supported streams: 'TuneIn default'"_s));
}

TEST_F(TuneInSettingsTest, KeepsPlaceholdersInValues)
{
    set(VeskTuneInPartnerIdPath(), "%2 and %3"_s);
    set(VeskSystemMemberIdPath(), "%3"_s);
    m_settings.load();
    EXPECT_THAT(m_log.lines("DEBUG"_s),
        ElementsAre("Configuration: Partner ID: '%2 and %3', SN: '%3', "
                    "supported streams: 'mp3,aac'"_s));
}

TEST(TuneInSettingsOfABareHostTest, AreEmptyExceptForTheSerial)
{
    TuneInHost host {QStringList()};
    LogCapture log("CB_TuneIn");
    TuneInSettings settings;
    EXPECT_TRUE(settings.load());
    EXPECT_EQ(settings.partnerId(), QString());
    EXPECT_EQ(settings.browseIndexUrl(), QString());
    EXPECT_EQ(settings.supportedStreams(), QString());
    EXPECT_FALSE(settings.childElementsInSingleList());
    EXPECT_FALSE(settings.enabledFixItWizard());
    EXPECT_EQ(settings.serial(), "00:00:00:00:00:00"_s);
    EXPECT_THAT(log.lines(),
        ElementsAre(
            "WARN Obtained empty member ID string, MAC address will be used instead of it!"_s,
            "WARN Got invalid MAC: ; using default (00:00:00:00:00:00)"_s,
            "DEBUG Configuration: Partner ID: '', SN: '00:00:00:00:00:00', "
            "supported streams: 'TuneIn default'"_s));
}

TEST(TuneInSettingsOfABareHostTest, ReadTheMacOnlyWithoutAMemberId)
{
    TuneInHost host({"settings"_s, "system"_s});
    CountingWorker network;
    CMRoot()->addWorker("network"_s, &network);
    TuneInSettings settings;

    settings.load();
    EXPECT_EQ(settings.serial(), "ABC"_s);
    EXPECT_EQ(network.asked, 0);

    host.set(VeskSystemMemberIdPath(), QString());
    settings.load();
    EXPECT_EQ(network.asked, 1);
    CMRoot()->removeWorker(&network);
}
