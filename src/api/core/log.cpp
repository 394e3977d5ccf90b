// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/log.h"

#include "api/core/TrString.h"
#include "api/core/qtversions.h"

#include <QLocale>
#include <QMap>
#include <QStringList>

#include <cstring>

namespace {

/// The length in bytes of the control character at \a at (C0, DEL, or C1 in UTF-8); 0 when there is
/// none.
int controlLength(const char *at, const char *end)
{
    const auto c = static_cast<unsigned char>(*at);
    if (c < 0x20 || c == 0x7F)
        return 1;
    if (c != 0xC2 || end - at < 2)
        return 0;
    const auto next = static_cast<unsigned char>(at[1]);
    return next >= 0x80 && next < 0xA0 ? 2 : 0;
}

void writeControl(std::ostream &out, unsigned char c)
{
    static constexpr char Digits[] = "0123456789abcdef";
    switch (c) {
    case '\n':
        out.write("\\n", 2);
        return;
    case '\r':
        out.write("\\r", 2);
        return;
    case '\t':
        out.write("\\t", 2);
        return;
    default:
        const char escape[] = {'\\', 'x', Digits[c >> 4], Digits[c & 15]};
        out.write(escape, sizeof escape);
    }
}

/// Writes UTF-8 with control characters escaped.
std::ostream &writeLine(std::ostream &out, const char *data, int size)
{
    const char *const end = data + size;
    const char *plain = data;
    for (const char *at = data; at != end;) {
        const int length = controlLength(at, end);
        if (!length) {
            ++at;
            continue;
        }
        out.write(plain, at - plain);
        at += length;
        plain = at;
        writeControl(out, static_cast<unsigned char>(at[-1]));
    }
    return out.write(plain, end - plain);
}

void writeEntry(std::ostream &out, const QString &key, const QVariant &value)
{
    out << key << ": ";
    if (veskIsSecretKey(key))
        out << "***";
    else
        out << value;
}

void writeMap(std::ostream &out, const QVariantMap &map)
{
    out << '{';
    const char *separator = "";
    for (auto it = map.begin(); it != map.end(); ++it) {
        out << separator;
        writeEntry(out, it.key(), it.value());
        separator = ", ";
    }
    out << '}';
}

template <class List>
void writeList(std::ostream &out, const List &list)
{
    out << '[';
    const char *separator = "";
    for (const auto &value : list) {
        out << separator << value;
        separator = ", ";
    }
    out << ']';
}

/// Values of types other than Qt's own.
void writeOther(std::ostream &out, const QVariant &value)
{
    const int type = value.userType();
    if (type == qMetaTypeId<TrString>())
        out << value.value<TrString>();
    else if (veskHasConverter(type, qMetaTypeId<VeskLogText>()))
        out << value.value<VeskLogText>().text;
    else if (veskHasConverter(type, QMetaType::QVariantHash))
        out << value.toHash();
    else if (value.canConvert<QString>())
        out << value.toString();
    else
        out << '<' << value.typeName() << '>';
}

thread_local int expectedErrors = 0;

} // namespace

VeskExpectedErrors::VeskExpectedErrors()
{
    ++expectedErrors;
}

VeskExpectedErrors::~VeskExpectedErrors()
{
    --expectedErrors;
}

void veskWriteLog(const log4cplus::Logger &logger, log4cplus::LogLevel level,
    const std::string &text, const char *file, int line, const char *function)
{
    if (level == log4cplus::ERROR_LOG_LEVEL && expectedErrors > 0) {
        level = log4cplus::DEBUG_LOG_LEVEL;
        if (!logger.isEnabledFor(level))
            return;
    }
    logger.forcedLog(level, text, veskLogSourceName(file).c_str(), line, function);
}

std::string veskLogSourceName(const char *file)
{
    std::string name = file ? file : "";
    for (auto at = name.find("src/"); at != std::string::npos; at = name.find("src/", at + 1)) {
        if (at == 0 || name[at - 1] == '/') {
            name.erase(0, at + 4);
            break;
        }
    }
    const auto slash = name.rfind('/');
    const auto dot = name.rfind('.');
    if (dot != std::string::npos && (slash == std::string::npos || dot > slash))
        name.erase(dot);
    return name;
}

QString dbglog_scopedFunction(const char *signature, const char *loggerName)
{
    Q_UNUSED(loggerName)
    return QString::fromUtf8(signature);
}

std::ostream &operator<<(std::ostream &out, const QString &text)
{
    return text.isEmpty() ? out : out << text.toUtf8();
}

std::ostream &operator<<(std::ostream &out, const QByteArray &bytes)
{
    return writeLine(out, bytes.constData(), bytes.size());
}

std::ostream &operator<<(std::ostream &out, const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return out << "null";
    case QMetaType::QString:
        return out << *static_cast<const QString *>(value.constData());
    case QMetaType::QByteArray:
        return out << *static_cast<const QByteArray *>(value.constData());
    case QMetaType::Double:
    case QMetaType::Float:
        return out << QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QVariantHash:
        return out << *static_cast<const QVariantHash *>(value.constData());
    case QMetaType::QVariantMap:
        writeMap(out, *static_cast<const QVariantMap *>(value.constData()));
        return out;
    case QMetaType::QVariantList:
        writeList(out, *static_cast<const QVariantList *>(value.constData()));
        return out;
    case QMetaType::QStringList:
        writeList(out, *static_cast<const QStringList *>(value.constData()));
        return out;
    default:
        writeOther(out, value);
        return out;
    }
}

std::ostream &operator<<(std::ostream &out, const QVariantHash &hash)
{
    QVariantMap sorted;
    for (auto it = hash.begin(); it != hash.end(); ++it)
        sorted.insert(it.key(), it.value());
    writeMap(out, sorted);
    return out;
}

std::ostream &operator<<(std::ostream &out, const QMap<QString, QString> &map)
{
    out << "QMap(";
    for (auto it = map.begin(); it != map.end(); ++it) {
        out << '(' << it.key() << ", ";
        if (veskIsSecretKey(it.key()))
            out << "***";
        else
            out << it.value();
        out << ')';
    }
    return out << ')';
}

bool veskIsSecretKey(const QString &key)
{
    static const QLatin1String names[] = {QLatin1String("password"), QLatin1String("session"),
        QLatin1String("sessionid"), QLatin1String("session_id"), QLatin1String("token")};
    for (const QLatin1String &name : names) {
        if (key.size() == name.size() && key.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}
