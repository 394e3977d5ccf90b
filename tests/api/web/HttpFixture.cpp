// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/api/web/HttpFixture.h"

#include <QEventLoop>
#include <QTimer>

#include <memory>

HttpClientResult waitForExchange(const std::function<void(HttpClient::Function)> &start)
{
    struct State {
        int calls = 0;
        bool started = false;
        HttpClientResult result;
        QEventLoop loop;
    };
    // Shared with the completion function, which outlives this call when the wait times out.
    const auto state = std::make_shared<State>();
    start([state](const HttpClientResult &result) {
        EXPECT_TRUE(state->started) << "completed while it was being started";
        EXPECT_EQ(++state->calls, 1);
        state->result = result;
        state->loop.quit();
    });
    state->started = true;
    QTimer::singleShot(20000, &state->loop, &QEventLoop::quit);
    if (state->calls == 0)
        state->loop.exec();
    EXPECT_EQ(state->calls, 1);
    return state->result;
}

HttpClientResult fetch(HttpClient &client, const VeskUrl &url, const HttpClientOptions &options)
{
    return waitForExchange(
        [&](HttpClient::Function done) { client.get(url, options, std::move(done)); });
}

HttpClientResult send(HttpClient &client, const VeskUrl &url, const QByteArray &body)
{
    return waitForExchange([&](HttpClient::Function done) {
        client.post(url, body, HttpClientOptions(), std::move(done));
    });
}

HttpClientOptions withTimeout(int milliseconds)
{
    HttpClientOptions options;
    options.setTimeoutMs(milliseconds);
    return options;
}

HttpClientOptions withLimit(int bytes)
{
    HttpClientOptions options;
    options.setReadSizeLimit(bytes);
    return options;
}

ScriptedServer::Response answerWith(const QByteArray &body, const ScriptedServer::Headers &headers)
{
    ScriptedServer::Response response;
    response.body = body;
    response.headers = headers;
    return response;
}

ScriptedServer::Response redirectTo(const QByteArray &location, int code)
{
    ScriptedServer::Response response = answerWith("moved", {{"Location", location}});
    response.code = code;
    return response;
}

ScriptedServer::Response rawAnswer(const QByteArray &bytes)
{
    ScriptedServer::Response response = answerWith(bytes);
    response.end = ScriptedServer::End::Raw;
    return response;
}

ScriptedServer::Handler always(const ScriptedServer::Response &response)
{
    return [response](const ScriptedServer::Request &) { return response; };
}

VeskUrl urlOf(const ScriptedServer &server, const char *rest)
{
    return VeskUrl::fromEncoded("http://127.0.0.1:" + QByteArray::number(server.port()) + rest);
}

QByteArray deflate(const QByteArray &data)
{
    // qCompress() prefixes four bytes of size to the zlib format, which is HTTP's "deflate" (RFC
    // 9110, section 8.4.1.2).
    return qCompress(data).mid(4);
}

QByteArray gzip(const QByteArray &data)
{
    quint32 crc = ~0u;
    for (const char c : data) {
        crc ^= static_cast<uchar>(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0);
    }
    const auto littleEndian = [](quint32 number) {
        QByteArray bytes;
        for (int i = 0; i < 4; ++i)
            bytes.append(static_cast<char>(number >> 8 * i));
        return bytes;
    };
    const QByteArray zlib = deflate(data);
    return QByteArray("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10) + zlib.mid(2, zlib.size() - 6)
        + littleEndian(~crc) + littleEndian(static_cast<quint32>(data.size()));
}
