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
        {VeskUILanguagePath(), VeskValue::fromString(QStringLiteral("en-US")),
            CMValuesWorker::Writable, title(QT_TRANSLATE_NOOP("Host", "Language")),
            HostValueGroup::General,
            title(QT_TRANSLATE_NOOP("Host",
                "Of everything that is shown, and of the lists that services answer with."))},
        {VeskChildElementsInSingleListPath(), VeskValue::fromBool(true), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Show the parts of a screen in one list")),
            HostValueGroup::Browsing,
            title(QT_TRANSLATE_NOOP(
                "Host", "Otherwise each part is a folder of its own, which is opened first."))},
        {VeskTuneInEnabledFixItWizardPath(), VeskValue::fromBool(true), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Offer to report stations that do not play")),
            HostValueGroup::Browsing,
            title(QT_TRANSLATE_NOOP(
                "Host", "The menu of what plays then has an entry that reports the problem."))},
        {VeskTuneInPartnerIdPath(), VeskValue::fromString(QString()), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "TuneIn partner id")), HostValueGroup::Advanced,
            title(QT_TRANSLATE_NOOP("Host",
                "By which TuneIn knows the maker of this device. Without one it may refuse to "
                "answer."))},
        {VeskTuneInBrowseIndexUrlPath(), VeskValue::fromString(QString()), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Address of the TuneIn start page")),
            HostValueGroup::Advanced,
            title(QT_TRANSLATE_NOOP("Host", "Left empty, it is TuneIn's own."))},
        {VeskTuneInSupportedStreamsPath(), VeskValue::fromString(decodableFormats()),
            CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Stream formats to ask TuneIn for")),
            HostValueGroup::Advanced,
            title(QT_TRANSLATE_NOOP(
                "Host", "Separated by commas. Stations are offered in these formats only."))},
        {hostLocalAddressesPath(), VeskValue::fromBool(false), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Fetch streams and pictures from the home network")),
            HostValueGroup::Advanced,
            title(QT_TRANSLATE_NOOP("Host",
                "For stations and pictures on a server at home. Otherwise a service on the "
                "internet cannot lead this device to addresses in the house."))},
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

QList<CMPath> hostValuesIn(HostValueGroup group)
{
    QList<CMPath> paths;
    for (const HostValueDefinition &definition : hostValueDefinitions()) {
        if (definition.group == group)
            paths.append(definition.path);
    }
    return paths;
}

const QStringList &hostValuePrefixes()
{
    static const QStringList prefixes {
        QStringLiteral("settings"), QStringLiteral("system"), QStringLiteral("network")};
    return prefixes;
}

void defineHostValues(CMValuesWorker *values)
{
    for (const HostValueDefinition &definition : hostValueDefinitions()) {
        values->define(definition.path, definition.initial, definition.access, definition.title);
        values->describe(definition.path, definition.description);
    }
}

QVariant plainValue(const VeskValue &value)
{
    return value.value(VeskValueType::toString(value.type()));
}
