#include "ctl/RpcClient.h"

#include "api/web/VeskJson.h"

#include <curl/curl.h>

#include <memory>

namespace {

constexpr long ConnectTimeoutMs = 5000;
/// Longer than the host itself takes before it gives a call up.
constexpr long AnswerTimeoutMs = 90000;

size_t append(char *bytes, size_t size, size_t count, void *into)
{
    auto *answer = static_cast<QByteArray *>(into);
    if (size * count > static_cast<size_t>(RpcClient::MaxAnswer - answer->size()))
        return 0;
    answer->append(bytes, static_cast<int>(size * count));
    return size * count;
}

RpcAnswer readAnswer(const QByteArray &bytes)
{
    VeskError error;
    const QVariantHash answer = VeskJson::parse(bytes, error).toHash();
    if (answer.value(QStringLiteral("jsonrpc")).toString() != QLatin1String("2.0"))
        return {RpcAnswer::NoHost, {}, QStringLiteral("what answers is no vesk-host"), {}, {}, {}};
    if (!answer.contains(QStringLiteral("error")))
        return {RpcAnswer::Result, answer.value(QStringLiteral("result")), {}, {}, {}, {}};
    const QVariantHash failure = answer.value(QStringLiteral("error")).toHash();
    const QVariantHash data = failure.value(QStringLiteral("data")).toHash();
    return {RpcAnswer::Error, {}, failure.value(QStringLiteral("message")).toString(),
        data.value(QStringLiteral("name")).toString(),
        data.value(QStringLiteral("title")).toString(), failure};
}

} // namespace

RpcClient::RpcClient(const QString &host)
    : m_url(host.toUtf8() + "jsonrpc")
{
}

RpcAnswer RpcClient::call(const QString &method, const QVariantHash &params)
{
    const QByteArray body = VeskJson::write(
        QVariantHash {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")}, {QStringLiteral("id"), 1},
            {QStringLiteral("method"), method}, {QStringLiteral("params"), params}});
    QByteArray answer;
    const QString failure = post(body, answer);
    if (!failure.isEmpty())
        return {RpcAnswer::NoHost, {}, failure, {}, {}, {}};
    return readAnswer(answer);
}

QString RpcClient::post(const QByteArray &body, QByteArray &answer)
{
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(
        curl_easy_init(), &curl_easy_cleanup);
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(
        curl_slist_append(nullptr, "Content-Type: application/json"), &curl_slist_free_all);
    curl_easy_setopt(curl.get(), CURLOPT_URL, m_url.constData());
    curl_easy_setopt(curl.get(), CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl.get(), CURLOPT_NOPROXY, "*");
    curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_CONNECTTIMEOUT_MS, ConnectTimeoutMs);
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT_MS, AnswerTimeoutMs);
    curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDS, body.constData());
    curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, &append);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &answer);

    const CURLcode code = curl_easy_perform(curl.get());
    if (code != CURLE_OK)
        return QString::fromUtf8(curl_easy_strerror(code));
    long status = 0;
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
    return status == 200 ? QString() : QStringLiteral("it answers with HTTP code %1").arg(status);
}
