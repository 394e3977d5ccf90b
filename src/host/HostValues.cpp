#include "host/HostValues.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "host/player/StreamFormats.h"

#include <QStringList>

namespace {

TrString title(const char *text)
{
    return TrString("Host", text);
}

} // namespace

const QVector<HostValueDefinition> &hostValueDefinitions()
{
    static const QVector<HostValueDefinition> definitions {
        {VeskTuneInPartnerIdPath(), VeskValue::fromString(QString()), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "TuneIn partner id"))},
        {VeskTuneInBrowseIndexUrlPath(), VeskValue::fromString(QString()), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Address of the TuneIn start page"))},
        {VeskTuneInSupportedStreamsPath(), VeskValue::fromString(decodableFormats()),
            CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Stream formats to ask TuneIn for"))},
        {VeskTuneInEnabledFixItWizardPath(), VeskValue::fromBool(true), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Offer to report stations that do not play"))},
        {VeskChildElementsInSingleListPath(), VeskValue::fromBool(true), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Show the parts of a screen in one list"))},
        {VeskUILanguagePath(), VeskValue::fromString(QStringLiteral("en-US")),
            CMValuesWorker::Writable, title(QT_TRANSLATE_NOOP("Host", "Language"))},
        {hostLocalAddressesPath(), VeskValue::fromBool(false), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Fetch streams and pictures from the home network"))},
        {VeskSystemMemberIdPath(), VeskValue::fromString(QString()), CMValuesWorker::ReadOnly,
            title(QT_TRANSLATE_NOOP("Host", "Id of this device"))},
        {VeskNetworkStateEthernetMAC(), VeskValue::fromString(QString()), CMValuesWorker::ReadOnly,
            title(QT_TRANSLATE_NOOP("Host", "Address of the network adapter"))},
        {VeskNetworkStateConnected(), VeskValue::fromBool(false), CMValuesWorker::ReadOnly,
            title(QT_TRANSLATE_NOOP("Host", "Connected to the network"))},
    };
    return definitions;
}

const HostValueDefinition *findHostValue(const CMPath &path)
{
    for (const HostValueDefinition &definition : hostValueDefinitions()) {
        if (definition.path == path)
            return &definition;
    }
    return nullptr;
}

const CMPath &hostLocalAddressesPath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("network/localAddresses"));
    return path;
}

const QStringList &hostValuePrefixes()
{
    static const QStringList prefixes {
        QStringLiteral("settings"), QStringLiteral("system"), QStringLiteral("network")};
    return prefixes;
}

void defineHostValues(CMValuesWorker *values)
{
    for (const HostValueDefinition &definition : hostValueDefinitions())
        values->define(definition.path, definition.initial, definition.access, definition.title);
}

QVariant plainValue(const VeskValue &value)
{
    return value.value(VeskValueType::toString(value.type()));
}
