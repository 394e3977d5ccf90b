// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/system/Product.h"

#include "api/web/VeskJson.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>
#include <QUrl>

#include <csignal>
#include <curl/curl.h>

namespace {

constexpr int PatienceMs = 60000;

QString program(const char *name)
{
    return QStringLiteral(VESK_BIN_DIR "/") + QString::fromLatin1(name);
}

/// The address in a program's ready line; empty if none comes.
QString readyAddress(QProcess &process)
{
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(PatienceMs))
            return QString();
    }
    const QString line = QString::fromUtf8(process.readLine()).trimmed();
    return line.section(QStringLiteral(" ready at "), 1);
}

/// The address in the directory's line about TLS, which comes before the ready line.
QString secureAddress(QProcess &directory)
{
    const QString mark = QStringLiteral(" TLS at https://");
    QString said;
    directory.setReadChannel(QProcess::StandardError);
    do {
        said += QString::fromUtf8(directory.readAllStandardError());
    } while (!said.endsWith(QLatin1Char('\n')) && directory.waitForReadyRead(PatienceMs));
    return said.section(mark, 1).section(QLatin1Char('/'), 0, 0);
}

size_t append(char *data, size_t size, size_t count, void *body)
{
    static_cast<QByteArray *>(body)->append(data, static_cast<int>(size * count));
    return size * count;
}

QByteArray exchange(
    const QString &url, const char *method, const QByteArray &body, const char *type)
{
    QByteArray answer;
    CURL *curl = curl_easy_init();
    curl_slist *headers = curl_slist_append(nullptr, type);
    curl_easy_setopt(curl, CURLOPT_URL, url.toUtf8().constData());
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, method);
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, long(body.size()));
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, body.constData());
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, long(PatienceMs));
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &answer);
    curl_easy_perform(curl);
    curl_slist_free_all(headers);
    curl_easy_cleanup(curl);
    return answer;
}

} // namespace

QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Outcome runProgram(const QString &name, const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.start(QStringLiteral(VESK_BIN_DIR "/") + name, arguments);
    process.write(input);
    process.closeWriteChannel();
    Outcome outcome;
    if (process.waitForFinished(PatienceMs) && process.exitStatus() == QProcess::NormalExit)
        outcome.code = process.exitCode();
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.err = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

Product::Product(const QStringList &hostArguments, const DirectoryTls &tls)
    : m_hostArguments(hostArguments)
{
    const bool secure = !tls.certificateFile.isEmpty();
    QStringList arguments {QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
        QStringLiteral("--request-log"), m_folder.filePath(QStringLiteral("requests"))};
    if (secure) {
        arguments += {QStringLiteral("--tls-listen"), QStringLiteral("127.0.0.1:0"),
            QStringLiteral("--cert"), QString::fromLocal8Bit(tls.certificateFile),
            QStringLiteral("--key"), QString::fromLocal8Bit(tls.keyFile)};
    } else {
        m_directory.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }
    m_directory.start(program("tunein-directory"), arguments);
    m_directoryAddress = readyAddress(m_directory).section(QLatin1Char('/'), 2, 2);
    m_hostArguments.replaceInStrings(QStringLiteral("%directory"), m_directoryAddress);
    if (secure) {
        m_hostArguments
            += {QStringLiteral("--ca-file"), tls.authorityFile, QStringLiteral("--connect-to"),
                QStringLiteral("opml.radiotime.com:443:") + secureAddress(m_directory)};
    }
    startHost();
}

Product::~Product()
{
    if (m_host.state() != QProcess::NotRunning)
        stopHost();
    m_directory.terminate();
    m_directory.waitForFinished(PatienceMs);
}

QString Product::stateDir() const
{
    return m_folder.filePath(QStringLiteral("state"));
}

quint16 Product::hostPort() const
{
    return static_cast<quint16>(QUrl(m_hostUrl).port());
}

QString Product::serial() const
{
    const QVariantHash answer = rpc(QStringLiteral("getData"),
        {{QStringLiteral("path"), QStringLiteral("system:memberId")},
            {QStringLiteral("roles"), QStringList {QStringLiteral("value")}}});
    const QVariantHash result = answer.value(QStringLiteral("result")).toHash();
    const QVariant value = result.value(QStringLiteral("values")).toList().value(0);
    return value.toHash().value(QStringLiteral("string_")).toString();
}

bool Product::startHost()
{
    QStringList arguments {
        QStringLiteral("--listen"),
        QStringLiteral("127.0.0.1:0"),
        QStringLiteral("--plugin"),
        QStringLiteral(VESK_PLUGIN),
        QStringLiteral("--connect-to"),
        QStringLiteral("opml.radiotime.com:80:") + m_directoryAddress,
        QStringLiteral("--set"),
        QStringLiteral("network:connected=true"),
        QStringLiteral("--set"),
        QStringLiteral("settings:tunein/partnerId=test"),
        QStringLiteral("--state-dir"),
        stateDir(),
    };
    if (!m_hostArguments.contains(QStringLiteral("--log-level")))
        arguments += {QStringLiteral("--log-level"), QStringLiteral("error")};
    if (qEnvironmentVariableIsSet("VESK_TEST_IN_PROCESS"))
        arguments += QStringLiteral("--in-process");
    m_host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_host.start(program("vesk-host"), arguments + m_hostArguments);
    m_hostUrl = readyAddress(m_host);
    return isUp();
}

int Product::stopHost()
{
    m_host.terminate();
    m_hostUrl.clear();
    if (!m_host.waitForFinished(PatienceMs) || m_host.exitStatus() != QProcess::NormalExit)
        return -1;
    return m_host.exitCode();
}

void Product::killHost() const
{
    ::kill(static_cast<pid_t>(m_host.processId()), SIGKILL);
}

void Product::waitForHostsEnd()
{
    m_host.waitForFinished(PatienceMs);
    m_hostUrl.clear();
}

Outcome Product::ctl(const QStringList &arguments, const QByteArray &input) const
{
    return runProgram(QStringLiteral("veskctl"),
        QStringList {QStringLiteral("--host"), m_hostUrl} + arguments, input);
}

QByteArray Product::post(const QByteArray &body) const
{
    return exchange(
        m_hostUrl + QStringLiteral("jsonrpc"), "POST", body, "Content-Type: application/json");
}

QVariantHash Product::rpc(const QString &method, const QVariantHash &params) const
{
    const QVariantHash request {
        {QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
        {QStringLiteral("id"), 1},
        {QStringLiteral("method"), method},
        {QStringLiteral("params"), params},
    };
    VeskError error;
    return VeskJson::parse(post(VeskJson::write(request)), error).toHash();
}

QVariantList Product::rows(const QString &path, const QStringList &roles, int last) const
{
    QVariantHash params {{QStringLiteral("path"), path}, {QStringLiteral("first"), 0},
        {QStringLiteral("last"), last}};
    if (!roles.isEmpty())
        params.insert(QStringLiteral("roles"), roles);
    return rpc(QStringLiteral("getRows"), params)
        .value(QStringLiteral("result"))
        .toHash()
        .value(QStringLiteral("rows"))
        .toList();
}

void Product::setFault(const QByteArray &fault) const
{
    exchange(QStringLiteral("http://") + m_directoryAddress + QStringLiteral("/_faults"), "POST",
        fault, "Content-Type: text/plain");
}

void Product::clearFaults() const
{
    exchange(QStringLiteral("http://") + m_directoryAddress + QStringLiteral("/_faults"), "DELETE",
        QByteArray(), "Content-Type: text/plain");
}

QVariantHash Product::directory(const QString &target) const
{
    VeskError error;
    return VeskJson::parse(exchange(QStringLiteral("http://") + m_directoryAddress + target, "GET",
                               QByteArray(), "Accept: application/json"),
        error)
        .toHash();
}

QByteArray Product::submitToDirectory(const QString &target, const QByteArray &form) const
{
    return exchange(QStringLiteral("http://") + m_directoryAddress + target, "POST", form,
        "Content-Type: application/x-www-form-urlencoded");
}

bool Product::waitForRequests(const QString &text, int count, int milliseconds) const
{
    const QDeadlineTimer deadline(milliseconds);
    while (requestLog().filter(text).size() < count) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(20);
    }
    return true;
}

QStringList Product::newRequests()
{
    const QStringList all = requestLog();
    const QStringList fresh = all.mid(m_requestsSeen);
    m_requestsSeen = all.size();
    return fresh;
}

QStringList Product::requestLog() const
{
    QFile file(m_folder.filePath(QStringLiteral("requests")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
