// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The server around a Directory: connections, request bodies, the request log and faults. Lives on
/// one thread, whose default main context must run; everything it is given must outlive it.
#pragma once

#include "directory/AudioDelivery.h"
#include "directory/Delivery.h"
#include "directory/Directory.h"
#include "directory/Listener.h"
#include "directory/RequestLog.h"

#include <libsoup/soup.h>
#include <list>
#include <memory>
#include <vector>

namespace directory {

class HttpServer {
public:
    static constexpr std::size_t MaxRequestBody = 64 * 1024;
    static constexpr std::size_t MaxTarget = 8 * 1024;
    /// Streams that run at a time.
    static constexpr std::size_t MaxStreams = 64;

    /// The log may be null. A connection is closed after idleSeconds without data.
    HttpServer(Directory &directory, Faults &faults, RequestLog *log,
        unsigned idleSeconds = Listener::UsualIdleSeconds);
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    /// Return "127.0.0.1:8080". Throw std::runtime_error.
    std::string listen(const std::string &address);
    std::string listenTls(
        const std::string &address, const std::string &certificate, const std::string &key);

private:
    static void onRequest(SoupServer *, SoupServerMessage *message, const char *path,
        GHashTable *query, gpointer self);
    static void onStarted(SoupServer *, SoupServerMessage *message, gpointer self);
    static void onChunk(SoupServerMessage *message, GBytes *chunk, gpointer body);

    std::string listenWith(const std::string &address, GTlsCertificate *certificate);
    void serve(SoupServerMessage *message);
    void accept(GIOStream *stream, GSocketConnection *connection, bool secure);
    FaultyAnswer answerFor(ApiRequest &request, const std::string &target);
    std::optional<Disturbance> disturbanceAt(const std::string &path);
    Answer changeFaults(const std::string &method, const std::string &body);
    void deliver(SoupServerMessage *message, const Answer &answer, const Delivery &delivery);
    void play(SoupServerMessage *message, const Answer &answer, Delivery delivery,
        const std::string &path);

    Directory &m_directory;
    Faults &m_faults;
    Faults m_othersFaults; ///< of the servers that this one stands in for
    RequestLog *m_log;
    const unsigned m_idleSeconds;
    SoupServer *m_server;
    int m_silence; ///< keeps the library's own listener quiet
    std::vector<std::unique_ptr<Listener>> m_listeners;
    std::list<std::unique_ptr<RawDelivery>> m_deliveries;
    std::list<std::unique_ptr<AudioDelivery>> m_streams;
};

} // namespace directory
