// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/HostValues.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/VeskUrl.h"
#include "host/player/StreamFormats.h"

#include <QLocale>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace {

TrString title(const char *text)
{
    return TrString("Host", text);
}

QString textOf(const VeskValue &value)
{
    return value.value(VeskValueType::toString(VeskValueType::string_)).toString();
}

/// A tag (BCP 47) whose language there is, with whatever region.
bool isLanguage(const VeskValue &value)
{
    static const QRegularExpression tag(
        QStringLiteral("\\A([A-Za-z]{2,3})([-_][A-Za-z0-9]{1,8}){0,8}\\z"));
    const QRegularExpressionMatch match = tag.match(textOf(value));
    return match.hasMatch() && QLocale(match.captured(1)).language() != QLocale::C;
}

/// Those that TuneIn's documentation lists, and others that it takes all the same.
const QStringList &formatNames()
{
    static const QStringList names
        = QStringLiteral("aac,am,dab,flac,flash,fm,hd,hls,html,mp3,ogg,opus,qt,real,sat,wma,wmpro,"
                         "wmvideo,wmvoice,*")
              .split(QLatin1Char(','));
    return names;
}

bool areFormats(const VeskValue &value)
{
    const QString text = textOf(value);
    const QStringList formats = text.split(QLatin1Char(','));
    return text.isEmpty() || std::all_of(formats.begin(), formats.end(), [](const QString &format) {
        return formatNames().contains(format);
    });
}

bool isWebAddress(const VeskValue &value)
{
    const VeskUrl url(textOf(value));
    const QString scheme = url.scheme().toLower();
    return textOf(value).isEmpty()
        || ((scheme == QLatin1String("http") || scheme == QLatin1String("https"))
            && !url.host().isEmpty());
}

HostValueRule languageRule()
{
    return {&isLanguage,
        title(QT_TRANSLATE_NOOP("Host", "a language tag, such as \"de-DE\" or \"en\""))};
}

HostValueRule formatsRule()
{
    return {&areFormats,
        TrString(QStringLiteral("Host"),
            QString::fromLatin1(QT_TRANSLATE_NOOP(
                "Host", "formats separated by commas, without blanks, out of: %1; or empty")),
            QString(), -1, {TrArg(formatNames().join(QStringLiteral(", ")))})};
}

HostValueRule addressRule()
{
    return {&isWebAddress,
        title(QT_TRANSLATE_NOOP(
            "Host", "an address that begins with http:// or https://, or empty"))};
}

/// What a setting without a rule of its own takes.
TrString whatTypeTakes(VeskValueType::Enum type)
{
    switch (type) {
    case VeskValueType::bool_:
        return title(QT_TRANSLATE_NOOP("Host", "true or false"));
    case VeskValueType::int_:
        return title(QT_TRANSLATE_NOOP("Host", "a whole number"));
    case VeskValueType::double_:
        return title(QT_TRANSLATE_NOOP("Host", "a number"));
    default:
        return TrString(QStringLiteral("Host"),
            QString::fromLatin1(
                QT_TRANSLATE_NOOP("Host", "a text of one line and at most %1 characters")),
            QString(), -1, {TrArg(QString::number(MaxHostText))});
    }
}

/// Without line ends and the like.
bool isOneLine(const QString &text)
{
    return text.size() <= MaxHostText && std::none_of(text.begin(), text.end(), [](QChar c) {
        return c.category() == QChar::Other_Control;
    });
}

/// The value alone, if a client has sent it with its type.
QVariant givenValue(const QVariant &sent)
{
    const VeskValue value {VeskHash(sent.toHash())};
    return value.type() == VeskValueType::none ? sent : plainValue(value);
}

/// Short enough for a sentence, and without control characters.
QString shown(const QVariant &given)
{
    constexpr int Longest = 40;
    QString text = given.canConvert<QString>() ? given.toString() : QStringLiteral("...");
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control)
            c = QChar::ReplacementCharacter;
    }
    return text.size() <= Longest ? text : text.left(Longest) + QStringLiteral("...");
}

} // namespace

const QVector<HostValueDefinition> &hostValueDefinitions()
{
    static const QVector<HostValueDefinition> definitions {
        {VeskUILanguagePath(), VeskValue::fromString(QStringLiteral("en-US")),
            CMValuesWorker::Writable, title(QT_TRANSLATE_NOOP("Host", "Language")),
            HostValueGroup::General,
            title(QT_TRANSLATE_NOOP("Host",
                "Of everything that is shown, and of the lists that services answer with.")),
            languageRule()},
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
            title(QT_TRANSLATE_NOOP("Host", "Left empty, it is TuneIn's own.")), addressRule()},
        {VeskTuneInSupportedStreamsPath(), VeskValue::fromString(decodableFormats()),
            CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Stream formats to ask TuneIn for")),
            HostValueGroup::Advanced,
            title(QT_TRANSLATE_NOOP(
                "Host", "Separated by commas. Stations are offered in these formats only.")),
            formatsRule()},
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

CMError checkHostValue(
    const HostValueDefinition &definition, const QVariant &given, const VeskValue &value)
{
    const bool isText = definition.initial.type() == VeskValueType::string_;
    const HostValueRule &rule = definition.rule;
    const bool isOfType
        = value.type() == definition.initial.type() && (!isText || isOneLine(textOf(value)));
    if (isOfType && (!rule.takes || rule.takes(value)))
        return {};
    const TrString what = rule.takes ? rule.what : whatTypeTakes(definition.initial.type());
    return CMError(TrString(QStringLiteral("Host"),
        QString::fromLatin1(
            QT_TRANSLATE_NOOP("Host", "The setting \"%1\" cannot be \"%2\": it is %3.")),
        QString(), -1,
        {TrArg(definition.title.toString()), TrArg(shown(given)), TrArg(what.toString())}));
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
        values->setCheck(
            definition.path, [&definition](const QVariant &sent, const VeskValue &value) {
                return checkHostValue(definition, givenValue(sent), value);
            });
    }
}

QVariant plainValue(const VeskValue &value)
{
    return value.value(VeskValueType::toString(value.type()));
}
