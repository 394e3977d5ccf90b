// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/SettingDeclaration.h"

#include "api/web/VeskUrl.h"
#include "plugin/supervision/MemberReader.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// The types of settings, in the order of typeNames().
constexpr VeskValueType::Enum Types[] {
    VeskValueType::string_, VeskValueType::bool_, VeskValueType::int_, VeskValueType::double_};

const QStringList &typeNames()
{
    static const QStringList names {QStringLiteral("string"), QStringLiteral("bool"),
        QStringLiteral("int"), QStringLiteral("double")};
    return names;
}

bool isNumber(const QVariant &value)
{
    return value.userType() == QMetaType::LongLong
        || (value.userType() == QMetaType::Double && std::isfinite(value.toDouble()));
}

/// Of the \a type; without a type when \a plain is none of it.
VeskValue typedValue(const QVariant &plain, VeskValueType::Enum type)
{
    VeskValue value;
    const bool isWhole = plain.userType() == QMetaType::LongLong
        && plain.toLongLong() >= std::numeric_limits<int>::min()
        && plain.toLongLong() <= std::numeric_limits<int>::max();
    if (type == VeskValueType::string_ && plain.userType() == QMetaType::QString)
        value.setString(plain.toString());
    else if (type == VeskValueType::bool_ && plain.userType() == QMetaType::Bool)
        value.setBool(plain.toBool());
    else if (type == VeskValueType::int_ && isWhole)
        value.setInt(plain.toInt());
    else if (type == VeskValueType::double_ && isNumber(plain))
        value.setDouble(plain.toDouble());
    return value;
}

bool isAddress(const QString &text)
{
    const VeskUrl url(text);
    const QString scheme = url.scheme().toLower();
    return text.isEmpty()
        || ((scheme == QLatin1String("http") || scheme == QLatin1String("https"))
            && !url.host().isEmpty());
}

std::optional<double> readBound(
    MemberReader &reader, const QString &name, const VeskValueType::Enum type)
{
    if (!reader.has(name))
        return std::nullopt;
    const VeskValue bound = typedValue(reader.value(name), type);
    if (type == VeskValueType::int_ && bound.type() == type)
        return bound.int_();
    if (type == VeskValueType::double_ && bound.type() == type)
        return bound.double_();
    reader.fail(name, QStringLiteral("is no number of the setting's type"));
    return std::nullopt;
}

void readDefault(MemberReader &reader, SettingDeclaration &setting, VeskValueType::Enum type)
{
    const QString name = QStringLiteral("default");
    const QVariant given = reader.value(name);
    if (given.userType() == QMetaType::QVariantHash) {
        MemberReader from(given, name, reader.error());
        from.knowsOnly({QStringLiteral("from")});
        if (from.needed(QStringLiteral("from")) != QLatin1String("playerFormats")
            || setting.form != SettingDeclaration::Formats)
            reader.fail(name, QStringLiteral("cannot come from there"));
        setting.isInitiallyPlayerFormats = true;
        setting.initial.setString(QString());
        return;
    }
    if (type == VeskValueType::string_)
        reader.text(name);
    setting.initial = typedValue(given, type);
    if (setting.initial.type() != type)
        reader.fail(name, QStringLiteral("is missing or of another type"));
    else if (!setting.takes(setting.initial))
        reader.fail(name, QStringLiteral("is what the setting does not take"));
}

} // namespace

SettingDeclaration SettingDeclaration::read(
    const QVariant &entry, const QString &id, QString &error)
{
    SettingDeclaration setting;
    MemberReader naming(entry, QStringLiteral("settings"), error);
    const QString path = naming.needed(QStringLiteral("path"));
    setting.path = CMPath::fromEncoded(path);
    const QString start = id + QLatin1Char('/');
    const QString name = setting.path.base().mid(start.size());
    if (setting.path.prefix() != QLatin1String("settings") || !setting.path.base().startsWith(start)
        || name.isEmpty() || !isPlain(name) || setting.path.hasParams())
        naming.fail(QStringLiteral("\"%1\" is not settings:%2NAME").arg(path, start));

    MemberReader reader(entry, path, error);
    reader.knowsOnly({QStringLiteral("path"), QStringLiteral("type"), QStringLiteral("default"),
        QStringLiteral("title"), QStringLiteral("help"), QStringLiteral("shown"),
        QStringLiteral("choices"), QStringLiteral("min"), QStringLiteral("max"),
        QStringLiteral("form"), QStringLiteral("restart")});
    reader.needed(QStringLiteral("type"));
    const VeskValueType::Enum type = Types[reader.oneOf(QStringLiteral("type"), typeNames())];
    setting.title = reader.needed(QStringLiteral("title"));
    setting.help = reader.text(QStringLiteral("help"));
    if (reader.has(QStringLiteral("shown"))) {
        setting.shown = static_cast<Shown>(reader.oneOf(QStringLiteral("shown"),
            {QStringLiteral("never"), QStringLiteral("browsing"), QStringLiteral("advanced")}));
    }
    setting.restarts = reader.flag(QStringLiteral("restart"));
    setting.choices = reader.texts(QStringLiteral("choices"));
    if (reader.has(QStringLiteral("form"))) {
        const int form = reader.oneOf(
            QStringLiteral("form"), {QStringLiteral("address"), QStringLiteral("formats")});
        setting.form = form == 0 ? Address : Formats;
    }
    setting.least = readBound(reader, QStringLiteral("min"), type);
    setting.most = readBound(reader, QStringLiteral("max"), type);
    if (setting.least && setting.most && *setting.least > *setting.most)
        reader.fail(QStringLiteral("\"min\" is more than \"max\""));
    const bool hasForm = setting.form != Any || !setting.choices.isEmpty();
    if (type != VeskValueType::string_ && hasForm)
        reader.fail(QStringLiteral("\"form\" and \"choices\" are for texts"));
    if ((setting.form == Formats) == setting.choices.isEmpty() && setting.form != Any)
        reader.fail(
            QStringLiteral("\"choices\" are for formats, which need them, not for addresses"));
    readDefault(reader, setting, type);
    return setting;
}

bool SettingDeclaration::takes(const VeskValue &value) const
{
    if (value.type() == VeskValueType::int_ || value.type() == VeskValueType::double_) {
        const double number = value.type() == VeskValueType::int_ ? value.int_() : value.double_();
        return (!least || number >= *least) && (!most || number <= *most);
    }
    if (value.type() != VeskValueType::string_)
        return true;
    const QString text = value.string_();
    if (form == Address)
        return isAddress(text);
    if (choices.isEmpty())
        return true;
    if (form == Any)
        return choices.contains(text);
    const QStringList formats = text.split(QLatin1Char(','));
    return text.isEmpty()
        || std::all_of(formats.begin(), formats.end(),
            [this](const QString &format) { return choices.contains(format); });
}
