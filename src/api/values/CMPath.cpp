// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMPath.h"

#include "api/core/log.h"
#include "api/core/percent.h"
#include "api/core/qtversions.h"

#include <QHash>
#include <QStringView>

#include <algorithm>
#include <ostream>
#include <sstream>

namespace {

constexpr int MaxEncodedSize = 64 * 1024;
/// Reserved by the first addParam(); enough for most paths, so that adding parameters one by one
/// does not reallocate.
constexpr int UsualParams = 8;

[[maybe_unused]] const bool Registered = [] {
    qRegisterMetaType<CMPath>("CMPath");
    veskRegisterOrder<CMPath>();
    QMetaType::registerConverter<CMPath, QString>(&CMPath::toEncoded);
    QMetaType::registerConverter<CMPath, VeskLogText>([](const CMPath &path) {
        std::ostringstream out;
        out << path;
        return VeskLogText {out.str()};
    });
    return true;
}();

/// The index of the ":" after the prefix of \a text; -1 when there is no prefix.
int prefixEnd(QStringView text)
{
    for (int i = 0; i < text.size(); ++i) {
        switch (text.at(i).unicode()) {
        case ':':
            return i > 0 ? i : -1;
        case '/':
        case '?':
        case '&':
        case '=':
            return -1;
        default:
            break;
        }
    }
    return -1;
}

/// The position of the parameter \a key, or where to insert it.
template <class List>
auto lowerBound(List &params, const QString &key)
{
    const auto isBefore = [](const QPair<QString, QString> &param, const QString &name) {
        return param.first < name;
    };
    // Parameters mostly arrive in ascending order.
    if (params.isEmpty() || params.last().first < key)
        return params.end();
    return std::lower_bound(params.begin(), params.end(), key, isBefore);
}

/// Inserts a parameter; false when the key already exists.
bool insertNew(CMPath::ParamList &params, const QString &key, const QString &value)
{
    const auto it = lowerBound(params, key);
    if (it != params.end() && it->first == key)
        return false;
    params.insert(it, {key, value});
    return true;
}

bool readParam(QStringView entry, CMPath::ParamList &params)
{
    const auto equals = entry.indexOf(QLatin1Char('='));
    if (equals < 0)
        return false;
    const auto key = veskPercentDecode(entry.left(equals));
    const auto value = veskPercentDecode(entry.mid(equals + 1));
    return key && value && insertNew(params, *key, *value);
}

bool readParams(QStringView text, CMPath::ParamList &params)
{
    for (;;) {
        const auto end = text.indexOf(QLatin1Char('&'));
        if (!readParam(end < 0 ? text : text.left(end), params))
            return false;
        if (end < 0)
            return true;
        text = text.mid(end + 1);
    }
}

/// The text form of a non-empty path. With \a masked, the values of secret parameters become "***".
QString encode(const CMPath &path, bool masked)
{
    VeskPercentBuffer out;
    out.append(path.prefix());
    out.append(':');
    out.append(path.base(), "/");
    char separator = '?';
    for (const auto &param : path.paramList()) {
        out.append(separator);
        separator = '&';
        out.append(param.first);
        out.append('=');
        if (masked && veskIsSecretKey(param.first))
            out.append(QStringLiteral("***"), "*");
        else
            out.append(param.second);
    }
    return out.toString();
}

} // namespace

CMPath::CMPath(const QString &prefix, const QString &base, const Params &params)
{
    if (prefix.isEmpty())
        return;
    m_prefix = prefix;
    m_base = base;
    m_params.reserve(params.size());
    for (auto it = params.begin(); it != params.end(); ++it)
        m_params.append({it.key(), it.value()});
}

CMPath CMPath::fromEncoded(const QString &encoded)
{
    const QStringView text(encoded);
    if (text.size() > MaxEncodedSize)
        return CMPath();
    const int colon = prefixEnd(text);
    if (colon < 0)
        return CMPath();

    const QStringView rest = text.mid(colon + 1);
    const auto question = rest.indexOf(QLatin1Char('?'));
    const auto prefix = veskPercentDecode(text.left(colon));
    const auto base = veskPercentDecode(question < 0 ? rest : rest.left(question));
    if (!prefix || !base)
        return CMPath();
    CMPath path;
    path.m_prefix = *prefix;
    path.m_base = *base;
    if (question >= 0 && !readParams(rest.mid(question + 1), path.m_params))
        return CMPath();
    return path;
}

CMPath CMPath::fromVariant(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<CMPath>())
        return value.value<CMPath>();
    return value.userType() == QMetaType::QString ? fromEncoded(value.toString()) : CMPath();
}

QString CMPath::toEncoded() const
{
    return isEmpty() ? QString() : encode(*this, false);
}

CMPath::Params CMPath::params() const
{
    Params params;
    for (const auto &param : m_params)
        params.insert(params.cend(), param.first, param.second);
    return params;
}

bool CMPath::hasParam(const QString &key) const
{
    const auto it = lowerBound(m_params, key);
    return it != m_params.end() && it->first == key;
}

QString CMPath::param(const QString &key) const
{
    const auto it = lowerBound(m_params, key);
    return it != m_params.end() && it->first == key ? it->second : QString();
}

void CMPath::addParam(const QString &key, const QString &value)
{
    if (isEmpty())
        return;
    if (m_params.capacity() == 0)
        m_params.reserve(UsualParams);
    const auto it = lowerBound(m_params, key);
    if (it != m_params.end() && it->first == key)
        it->second = value;
    else
        m_params.insert(it, {key, value});
}

void CMPath::removeParam(const QString &key)
{
    const auto it = lowerBound(m_params, key);
    if (it != m_params.end() && it->first == key)
        m_params.erase(it);
}

bool CMPath::equals(const CMPath &other, int mode) const
{
    return m_prefix == other.m_prefix && m_base == other.m_base
        && (mode == IgnoreParams || m_params == other.m_params);
}

bool CMPath::startsWith(const CMPath &start) const
{
    // Not QString::startsWith(), which tells null strings from empty ones.
    const int size = start.m_base.size();
    if (m_prefix != start.m_prefix || veskMid(m_base, 0, size) != start.m_base)
        return false;
    const bool below = size == 0 || m_base.size() == size || m_base.at(size) == QLatin1Char('/')
        || start.m_base.endsWith(QLatin1Char('/'));
    return below
        && std::includes(
            m_params.begin(), m_params.end(), start.m_params.begin(), start.m_params.end());
}

bool CMPath::operator<(const CMPath &other) const
{
    if (const int order = m_prefix.compare(other.m_prefix))
        return order < 0;
    if (const int order = m_base.compare(other.m_base))
        return order < 0;
    return m_params < other.m_params;
}

CMPath operator+(const CMPath &path, const QString &text)
{
    if (path.isEmpty())
        return path;
    CMPath longer(path);
    longer.m_base += text;
    return longer;
}

uint qHash(const CMPath &path, uint seed)
{
    seed = qHash(path.prefix(), seed);
    seed = qHash(path.base(), seed);
    for (const auto &param : path.paramList()) {
        seed = qHash(param.first, seed);
        seed = qHash(param.second, seed);
    }
    return seed;
}

std::ostream &operator<<(std::ostream &out, const CMPath &path)
{
    return path.isEmpty() ? out : out << encode(path, true);
}
