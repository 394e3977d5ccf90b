// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/KnownHosts.h"

#include "api/web/VeskJson.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace {

constexpr std::size_t MaxSize = 1024 * 1024;

const QString HostsMember = QStringLiteral("hosts");
const QString TokenMember = QStringLiteral("token");
const QString KeyMember = QStringLiteral("key");
const QString FingerprintMember = QStringLiteral("fingerprint");

bool isWhole(const QString &text, const char *pattern)
{
    const QRegularExpression wanted(
        QRegularExpression::anchoredPattern(QString::fromLatin1(pattern)));
    return wanted.match(text).hasMatch();
}

QString inWords(const files::Problem &problem)
{
    return QString::fromStdString(problem.text);
}

} // namespace

bool HostAccess::isToken(const QByteArray &text)
{
    return isWhole(QString::fromLatin1(text), "[A-Za-z0-9_-]{43}");
}

KnownHosts::KnownHosts(const QString &file)
    : m_name(QFile::encodeName(file).toStdString())
    , m_file(m_name, MaxSize)
    , m_lock(m_file.name() + ".lock")
{
}

Result<HostAccess, QString> KnownHosts::find(const QString &host) const
{
    const auto hosts = read();
    if (!hosts)
        return failure(hosts.error());
    if (!hosts->contains(host))
        return HostAccess();
    const QVariantHash entry = hosts->value(host).toHash();
    const HostAccess access {entry.value(TokenMember).toString().toLatin1(),
        entry.value(KeyMember).toString(), entry.value(FingerprintMember).toString()};
    // A key that cannot be read must not become "any certificate will do".
    if (!HostAccess::isToken(access.token)
        || !(access.key.isEmpty() || isWhole(access.key, "[0-9a-f]{64}"))) {
        return failure(
            QStringLiteral("%1 is damaged at %2").arg(QString::fromStdString(m_name), host));
    }
    return access;
}

Result<void, QString> KnownHosts::prepare()
{
    if (m_name.empty())
        return failure(QStringLiteral("neither XDG_CONFIG_HOME nor HOME is a folder"));
    const QString folder = QString::fromStdString(m_name).section(QLatin1Char('/'), 0, -2);
    if (const auto made = files::KeptFile::makeFolder(QFile::encodeName(folder).toStdString());
        !made)
        return failure(inWords(made.error()));
    if (const auto locked = m_lock.take(); !locked)
        return failure(inWords(locked.error()));
    if (const auto readable = read(); !readable)
        return failure(readable.error());
    return {};
}

Result<void, QString> KnownHosts::keep(const QString &host, const HostAccess &access)
{
    if (const auto prepared = prepare(); !prepared)
        return prepared;
    auto hosts = read();
    if (!hosts)
        return failure(hosts.error());
    QVariantHash entry {{TokenMember, QString::fromLatin1(access.token)}};
    if (!access.key.isEmpty()) {
        entry.insert(KeyMember, access.key);
        entry.insert(FingerprintMember, access.fingerprint);
    }
    hosts->insert(host, entry);
    return write(*hosts);
}

Result<void, QString> KnownHosts::forget(const QString &host)
{
    if (const auto prepared = prepare(); !prepared)
        return prepared;
    auto hosts = read();
    if (!hosts)
        return failure(hosts.error());
    if (hosts->remove(host) == 0)
        return {};
    return write(*hosts);
}

Result<QVariantHash, QString> KnownHosts::read() const
{
    if (m_name.empty())
        return QVariantHash();
    const QString name = QString::fromStdString(m_name);
    const auto content = m_file.read();
    if (!content)
        return failure(QStringLiteral("%1: %2").arg(name, inWords(content.error())));
    if (!*content)
        return QVariantHash();
    VeskError error;
    const QVariant hosts
        = VeskJson::parse(QByteArray::fromStdString(**content), error).toHash().value(HostsMember);
    if (hosts.userType() != QMetaType::QVariantHash)
        return failure(QStringLiteral("%1 is damaged").arg(name));
    return hosts.toHash();
}

Result<void, QString> KnownHosts::write(const QVariantHash &hosts)
{
    const QByteArray bytes = VeskJson::write(QVariantHash {{HostsMember, hosts}});
    const auto written = m_file.write(bytes.toStdString());
    if (!written)
        return failure(
            QStringLiteral("%1: %2").arg(QString::fromStdString(m_name), inWords(written.error())));
    return {};
}

QString knownHostsFile()
{
    QString parent = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!QDir::isAbsolutePath(parent) && !qEnvironmentVariableIsEmpty("HOME"))
        parent = qEnvironmentVariable("HOME") + QStringLiteral("/.config");
    return QDir::isAbsolutePath(parent) ? parent + QStringLiteral("/vesk/hosts.json") : QString();
}
