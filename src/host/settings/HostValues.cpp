// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/HostValues.h"

#include "api/values/VeskValuePaths.h"
#include "host/player/StreamFormats.h"
#include "host/sound/Outputs.h"
#include "host/sound/PlayerVolume.h"
#include "plugin/supervision/PluginDescriptor.h"

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

HostValueRule languageRule()
{
    return {&isLanguage,
        title(QT_TRANSLATE_NOOP("Host", "a language tag, such as \"de-DE\" or \"en\""))};
}

HostValueRule choiceRule(const QStringList &choices)
{
    return {[choices](const VeskValue &value) { return choices.contains(textOf(value)); },
        TrString(QStringLiteral("Host"),
            QString::fromLatin1(QT_TRANSLATE_NOOP("Host", "one of: %1")), QString(), -1,
            {TrArg(choices.join(QStringLiteral(", ")))})};
}

TrString title(const char *text, const QVector<TrArg> &args)
{
    return TrString(QStringLiteral("Host"), QString::fromLatin1(text), QString(), -1, args);
}

/// What numbers within bounds are.
TrString whatBoundsTake(const SettingDeclaration &setting)
{
    const auto number = [](double value) { return TrArg(QString::number(value)); };
    if (setting.least && setting.most) {
        return title(QT_TRANSLATE_NOOP("Host", "a number from %1 to %2"),
            {number(*setting.least), number(*setting.most)});
    }
    if (setting.least)
        return title(QT_TRANSLATE_NOOP("Host", "a number from %1"), {number(*setting.least)});
    return title(QT_TRANSLATE_NOOP("Host", "a number up to %1"), {number(*setting.most)});
}

HostValueRule pauseBufferRule()
{
    constexpr int Most = 60;
    return {[](const VeskValue &value) { return value.int_() >= 0 && value.int_() <= Most; },
        title(QT_TRANSLATE_NOOP("Host", "a number from %1 to %2"),
            {TrArg(QString::number(0)), TrArg(QString::number(Most))})};
}

/// Without a rule of its own, a setting takes what its type takes.
HostValueRule ruleOf(const SettingDeclaration &setting)
{
    const TrArg choices(setting.choices.join(QStringLiteral(", ")));
    HostValueRule rule {[setting](const VeskValue &value) { return setting.takes(value); }};
    if (setting.form == SettingDeclaration::Formats)
        rule.what = title(QT_TRANSLATE_NOOP("Host",
                              "formats separated by commas, without blanks, out of: %1; or empty"),
            {choices});
    else if (setting.form == SettingDeclaration::Address)
        rule.what = title(
            QT_TRANSLATE_NOOP("Host", "an address that begins with http:// or https://, or empty"));
    else if (!setting.choices.isEmpty())
        rule.what = title(QT_TRANSLATE_NOOP("Host", "one of: %1"), {choices});
    else if (setting.least || setting.most)
        rule.what = whatBoundsTake(setting);
    else
        return {};
    return rule;
}

HostValueGroup groupOf(SettingDeclaration::Shown shown)
{
    switch (shown) {
    case SettingDeclaration::Browsing:
        return HostValueGroup::Browsing;
    case SettingDeclaration::Advanced:
        return HostValueGroup::Advanced;
    case SettingDeclaration::Never:
        break;
    }
    return HostValueGroup::None;
}

HostValueDefinition definitionOf(const SettingDeclaration &setting, const QString &context)
{
    const auto text = [&context](const QString &source) {
        return source.isEmpty() ? TrString() : TrString(context, source);
    };
    const VeskValue initial = setting.isInitiallyPlayerFormats
        ? VeskValue::fromString(decodableFormats())
        : setting.initial;
    return {setting.path, initial, CMValuesWorker::Writable, text(setting.title),
        groupOf(setting.shown), text(setting.help), ruleOf(setting)};
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

HostValueRule volumeRule()
{
    const auto number = [](int value) { return TrArg(QString::number(value)); };
    return {[](const VeskValue &value) {
                return value.int_() >= 0 && value.int_() <= PlayerVolume::Loudest;
            },
        title(QT_TRANSLATE_NOOP("Host", "a number from %1 to %2"),
            {number(0), number(PlayerVolume::Loudest)})};
}

HostValueRule outputRule()
{
    return {[](const VeskValue &value) {
                const auto spec = AudioOutputSpec::parse(textOf(value));
                return spec && spec->isForClients();
            },
        title(QT_TRANSLATE_NOOP(
            "Host", "auto, null, jack, or a device: alsa:DEVICE, pulse:NAME, pipewire:NAME"))};
}

} // namespace

HostValues::HostValues()
    : m_definitions {
        {VeskUILanguagePath(), VeskValue::fromString(QStringLiteral("en-US")),
            CMValuesWorker::Writable, title(QT_TRANSLATE_NOOP("Host", "Language")),
            HostValueGroup::General,
            title(QT_TRANSLATE_NOOP("Host",
                "Of everything that is shown, and of the lists that services answer with.")),
            languageRule()},
        {playerSeamlessPath(), VeskValue::fromBool(true), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Change stations without a gap")),
            HostValueGroup::General,
            title(QT_TRANSLATE_NOOP(
                "Host", "The station that plays is heard until the next one has sound."))},
        {playerEvennessPath(), VeskValue::fromBool(true), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Play everything equally loud")),
            HostValueGroup::General,
            title(QT_TRANSLATE_NOOP("Host",
                "Loud stations are turned down and quiet ones up, slowly and without "
                "distortion."))},
        {playerVolumePath(), VeskValue::fromInt(PlayerVolume::Loudest), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Volume")), HostValueGroup::None, TrString(),
            volumeRule()},
        {playerMutePath(), VeskValue::fromBool(false), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Mute"))},
        {playerPauseBufferPath(), VeskValue::fromInt(0), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Keep a paused station for (minutes)")),
            HostValueGroup::General,
            title(QT_TRANSLATE_NOOP("Host",
                "It goes on where it was paused. After that time it is joined live again; with 0 "
                "at "
                "once.")),
            pauseBufferRule()},
        {hostResumePath(), VeskValue::fromString(QStringLiteral("always")),
            CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Go on playing after a start")),
            HostValueGroup::General,
            title(QT_TRANSLATE_NOOP("Host",
                "With what played last: \"always\", \"crash\" (only if the device ended by "
                "surprise), "
                "or \"never\".")),
            choiceRule(
                {QStringLiteral("always"), QStringLiteral("crash"), QStringLiteral("never")})},
        {playerOutputPath(), VeskValue::fromString(AudioOutputSpec().text()),
            CMValuesWorker::Writable, title(QT_TRANSLATE_NOOP("Host", "Sound output")),
            HostValueGroup::General,
            title(QT_TRANSLATE_NOOP("Host",
                "auto is the machine's own; what --audio says counts until another one is "
                "chosen.")),
            outputRule()},
        {VeskChildElementsInSingleListPath(), VeskValue::fromBool(true), CMValuesWorker::Writable,
            title(QT_TRANSLATE_NOOP("Host", "Show the parts of a screen in one list")),
            HostValueGroup::Browsing,
            title(QT_TRANSLATE_NOOP(
                "Host", "Otherwise each part is a folder of its own, which is opened first."))},
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
    }
{
    const auto isBehind
        = [](const HostValueDefinition &each) { return each.path == hostLocalAddressesPath(); };
    m_afterPlugins = static_cast<int>(
        std::find_if(m_definitions.begin(), m_definitions.end(), isBehind) - m_definitions.begin());
}

Result<void, QString> HostValues::add(const PluginDescriptor &descriptor)
{
    for (const SettingDeclaration &setting : descriptor.settings) {
        if (find(setting.path)) {
            return failure(
                QStringLiteral("there is a setting %1 already").arg(setting.path.toEncoded()));
        }
    }
    for (const SettingDeclaration &setting : descriptor.settings)
        m_definitions.insert(m_afterPlugins++, definitionOf(setting, descriptor.context));
    return {};
}

const HostValueDefinition *HostValues::find(const CMPath &path) const
{
    for (const HostValueDefinition &definition : m_definitions) {
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

const CMPath &playerPauseBufferPath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("player/pauseBuffer"));
    return path;
}

const CMPath &hostLocalAddressesPath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("network/localAddresses"));
    return path;
}

const CMPath &hostResumePath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("player/resume"));
    return path;
}

QList<CMPath> HostValues::in(HostValueGroup group) const
{
    QList<CMPath> paths;
    for (const HostValueDefinition &definition : m_definitions) {
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

void HostValues::defineIn(CMValuesWorker *values) const
{
    for (const HostValueDefinition &definition : m_definitions) {
        values->define(definition.path, definition.initial, definition.access, definition.title);
        values->describe(definition.path, definition.description);
        values->setCheck(
            definition.path, [definition](const QVariant &sent, const VeskValue &value) {
                return checkHostValue(definition, givenValue(sent), value);
            });
    }
}

QVariant plainValue(const VeskValue &value)
{
    return value.value(VeskValueType::toString(value.type()));
}
