#include "tests/system/Product.h"

#include "api/web/VeskJson.h"

#include <QFile>
#include <QUrl>

#include <curl/curl.h>

namespace {

constexpr int patienceMs = 60000;

QString program(const char *name)
{
    return QStringLiteral(VESK_BIN_DIR "/") + QString::fromLatin1(name);
}

/// The address in the line with which a program says that it is up; empty when it does not.
QString readyAddress(QProcess &process)
{
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(patienceMs))
            return QString();
    }
    const QString line = QString::fromUtf8(process.readLine()).trimmed();
    return line.section(QStringLiteral(" ready at "), 1);
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
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, long(patienceMs));
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &answer);
    curl_easy_perform(curl);
    curl_slist_free_all(headers);
    curl_easy_cleanup(curl);
    return answer;
}

} // namespace

Outcome runProgram(const QString &name, const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(VESK_BIN_DIR "/") + name, arguments);
    process.closeWriteChannel();
    Outcome outcome;
    if (process.waitForFinished(patienceMs) && process.exitStatus() == QProcess::NormalExit)
        outcome.code = process.exitCode();
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.err = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

Product::Product(const QStringList &hostArguments)
    : m_hostArguments(hostArguments)
{
    m_directory.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_directory.start(program("tunein-directory"),
        {QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"), QStringLiteral("--request-log"),
            m_folder.filePath(QStringLiteral("requests"))});
    m_directoryAddress = readyAddress(m_directory).section(QLatin1Char('/'), 2, 2);
    startHost();
}

Product::~Product()
{
    if (m_host.state() != QProcess::NotRunning)
        stopHost();
    m_directory.terminate();
    m_directory.waitForFinished(patienceMs);
}

QString Product::stateDir() const
{
    return m_folder.filePath(QStringLiteral("state"));
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
        QStringLiteral("--log-level"),
        QStringLiteral("error"),
    };
    m_host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_host.start(program("vesk-host"), arguments + m_hostArguments);
    m_hostUrl = readyAddress(m_host);
    return isUp();
}

int Product::stopHost()
{
    m_host.terminate();
    m_hostUrl.clear();
    if (!m_host.waitForFinished(patienceMs) || m_host.exitStatus() != QProcess::NormalExit)
        return -1;
    return m_host.exitCode();
}

Outcome Product::ctl(const QStringList &arguments) const
{
    return runProgram(
        QStringLiteral("veskctl"), QStringList {QStringLiteral("--host"), m_hostUrl} + arguments);
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

QStringList Product::requestLog() const
{
    QFile file(m_folder.filePath(QStringLiteral("requests")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
