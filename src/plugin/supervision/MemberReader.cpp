// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/MemberReader.h"

#include "api/core/qtversions.h"
#include "api/values/CMPath.h"
#include "plugin/supervision/PluginDescriptor.h"

#include <algorithm>

namespace {

constexpr int MaxShown = 40;

/// Null for what is no text; an empty one is not.
QString textOf(const QVariant &value)
{
    const QString text = value.toString();
    const bool isOneLine = std::none_of(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; });
    if (value.userType() != QMetaType::QString || text.size() > PluginDescriptor::MaxText
        || !isOneLine)
        return {};
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

bool isWord(const QString &text)
{
    return std::all_of(text.begin(), text.end(), &isLetterOrDigit);
}

bool isPlain(const QString &text)
{
    const auto isFine = [](QChar c) {
        return isLetterOrDigit(c) || c == QLatin1Char('/') || c == QLatin1Char('.')
            || c == QLatin1Char('-') || c == QLatin1Char('_');
    };
    if (!std::all_of(text.begin(), text.end(), isFine))
        return false;
    const auto segments = veskMid(text, 0).split(QLatin1Char('/'));
    return std::none_of(segments.begin(), segments.end(), [](const VeskStringRef &segment) {
        return segment.isEmpty() || segment.startsWith(QLatin1Char('.'))
            || segment.endsWith(QLatin1Char('.'));
    });
}

MemberReader::MemberReader(const QVariant &object, const QString &what, QString &error)
    : m_members(object.toHash())
    , m_what(what)
    , m_error(error)
{
    if (object.userType() != QMetaType::QVariantHash)
        fail(QStringLiteral("an object is needed"));
}

void MemberReader::knowsOnly(const QStringList &names)
{
    for (auto it = m_members.constBegin(); it != m_members.constEnd(); ++it) {
        if (!names.contains(it.key()))
            fail(QStringLiteral("there is no \"%1\"").arg(it.key().left(MaxShown)));
    }
}

QString MemberReader::text(const QString &name)
{
    if (!has(name))
        return {};
    const QString text = textOf(value(name));
    if (text.isNull())
        fail(name, QStringLiteral("is no text"));
    return text;
}

QString MemberReader::needed(const QString &name)
{
    const QString text = this->text(name);
    if (text.isEmpty())
        fail(name, QStringLiteral("is missing"));
    return text;
}

int MemberReader::oneOf(const QString &name, const QStringList &names)
{
    if (!has(name))
        return 0;
    const int index = names.indexOf(text(name));
    if (index < 0)
        fail(name, QStringLiteral("is none of ") + names.join(QStringLiteral(", ")));
    return std::max(0, index);
}

bool MemberReader::flag(const QString &name)
{
    const QVariant flag = value(name);
    if (has(name) && flag.userType() != QMetaType::Bool)
        fail(name, QStringLiteral("is neither true nor false"));
    return flag.toBool();
}

QStringList MemberReader::texts(const QString &name, bool words)
{
    QStringList texts;
    for (const QVariant &entry : list(name)) {
        const QString text = textOf(entry);
        if (text.isEmpty() || (words && !isWord(text)))
            fail(name,
                QStringLiteral("holds what is no %1").arg(QLatin1String(words ? "word" : "text")));
        texts.append(text);
    }
    return texts;
}

QVariantList MemberReader::list(const QString &name)
{
    if (!has(name))
        return {};
    const QVariant value = m_members.value(name);
    const QVariantList list = value.toList();
    if (value.userType() != QMetaType::QVariantList || list.size() > PluginDescriptor::MaxEntries) {
        fail(name, QStringLiteral("is no list of at most %1").arg(PluginDescriptor::MaxEntries));
        return {};
    }
    return list;
}

QString MemberReader::pathBelowRoot(const QString &name)
{
    const QString text = this->text(name);
    if (has(name) && CMPath::fromEncoded(QStringLiteral("x:") + text).base().isEmpty())
        fail(name, QStringLiteral("is no path below the plug-in's root"));
    return text;
}

void MemberReader::fail(const QString &error)
{
    if (m_error.isEmpty())
        m_error = m_what.isEmpty() ? error : m_what + QStringLiteral(": ") + error;
}

void MemberReader::fail(const QString &name, const QString &problem)
{
    fail(QStringLiteral("\"%1\" %2").arg(name, problem));
}
