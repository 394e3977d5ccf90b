#include "api/values/CMPath.h"

#include "api/core/log.h"
#include "api/core/percent.h"

#include <QHash>
#include <QStringList>

#include <algorithm>
#include <ostream>
#include <sstream>

namespace {

constexpr int MaxEncodedSize = 64 * 1024;

[[maybe_unused]] const bool registered = [] {
    qRegisterMetaType<CMPath>("CMPath");
    QMetaType::registerComparators<CMPath>();
    QMetaType::registerConverter<CMPath, QString>(&CMPath::toEncoded);
    QMetaType::registerConverter<CMPath, VeskLogText>([](const CMPath &path) {
        std::ostringstream out;
        out << path;
        return VeskLogText {out.str()};
    });
    return true;
}();

/// Where the prefix of \a text ends, -1 when it has none.
int prefixEnd(const QString &text)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    for (int i = 0; i < colon; ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('/') || c == QLatin1Char('?') || c == QLatin1Char('&')
            || c == QLatin1Char('='))
            return -1;
    }
    return colon > 0 ? colon : -1;
}

bool readParam(const QString &entry, CMPath::Params &params)
{
    const int equals = entry.indexOf(QLatin1Char('='));
    if (equals < 0)
        return false;
    bool keyOk = false;
    bool valueOk = false;
    const QString key = veskPercentDecode(entry.left(equals), &keyOk);
    const QString value = veskPercentDecode(entry.mid(equals + 1), &valueOk);
    if (!keyOk || !valueOk || params.contains(key))
        return false;
    params.insert(key, value);
    return true;
}

bool readParams(const QString &text, CMPath::Params &params)
{
    const QStringList entries = text.split(QLatin1Char('&'));
    return std::all_of(entries.begin(), entries.end(),
        [&params](const QString &entry) { return readParam(entry, params); });
}

/// The text form of a path that is not empty; with \a masked, "***" in place of secrets.
QString encode(const CMPath &path, bool masked)
{
    int size = path.prefix().size() + path.base().size() + 2;
    for (auto it = path.params().begin(); it != path.params().end(); ++it)
        size += it.key().size() + it.value().size() + 2;

    QString out;
    // A bit more than the plain text, so that a few escapes do not make it grow again.
    out.reserve(size + size / 4);
    veskAppendPercentEncoded(out, path.prefix());
    out += QLatin1Char(':');
    veskAppendPercentEncoded(out, path.base(), "/");
    QLatin1Char separator('?');
    for (auto it = path.params().begin(); it != path.params().end(); ++it) {
        out += separator;
        separator = QLatin1Char('&');
        veskAppendPercentEncoded(out, it.key());
        out += QLatin1Char('=');
        if (masked && veskIsSecretKey(it.key()))
            out += QLatin1String("***");
        else
            veskAppendPercentEncoded(out, it.value());
    }
    return out;
}

} // namespace

CMPath::CMPath(const QString &prefix, const QString &base, const Params &params)
{
    if (prefix.isEmpty())
        return;
    m_prefix = prefix;
    m_base = base;
    m_params = params;
}

CMPath CMPath::fromEncoded(const QString &text)
{
    if (text.size() > MaxEncodedSize)
        return CMPath();
    const int colon = prefixEnd(text);
    if (colon < 0)
        return CMPath();

    bool prefixOk = false;
    bool baseOk = false;
    const int question = text.indexOf(QLatin1Char('?'), colon);
    const int baseEnd = question < 0 ? text.size() : question;
    CMPath path;
    path.m_prefix = veskPercentDecode(text.left(colon), &prefixOk);
    path.m_base = veskPercentDecode(text.mid(colon + 1, baseEnd - colon - 1), &baseOk);
    if (!prefixOk || !baseOk)
        return CMPath();
    if (question >= 0 && !readParams(text.mid(question + 1), path.m_params))
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

bool CMPath::equals(const CMPath &other, int mode) const
{
    return m_prefix == other.m_prefix && m_base == other.m_base
        && (mode == IgnoreParams || m_params == other.m_params);
}

bool CMPath::startsWith(const CMPath &start) const
{
    if (m_prefix != start.m_prefix || !m_base.startsWith(start.m_base))
        return false;
    const int size = start.m_base.size();
    const bool below = size == 0 || m_base.size() == size || m_base.at(size) == QLatin1Char('/')
        || start.m_base.endsWith(QLatin1Char('/'));
    return below
        && std::all_of(start.m_params.keyValueBegin(), start.m_params.keyValueEnd(),
            [this](const std::pair<QString, QString> &param) {
                const auto it = m_params.constFind(param.first);
                return it != m_params.constEnd() && it.value() == param.second;
            });
}

bool CMPath::operator<(const CMPath &other) const
{
    if (const int order = m_prefix.compare(other.m_prefix))
        return order < 0;
    if (const int order = m_base.compare(other.m_base))
        return order < 0;
    return std::lexicographical_compare(m_params.keyValueBegin(), m_params.keyValueEnd(),
        other.m_params.keyValueBegin(), other.m_params.keyValueEnd());
}

CMPath operator+(const CMPath &path, const QString &text)
{
    return CMPath(path.prefix(), path.base() + text, path.params());
}

uint qHash(const CMPath &path, uint seed)
{
    seed = qHash(path.prefix(), seed);
    seed = qHash(path.base(), seed);
    for (auto it = path.params().begin(); it != path.params().end(); ++it) {
        seed = qHash(it.key(), seed);
        seed = qHash(it.value(), seed);
    }
    return seed;
}

std::ostream &operator<<(std::ostream &out, const CMPath &path)
{
    return path.isEmpty() ? out : out << encode(path, true);
}
