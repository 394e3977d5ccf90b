// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/web/HttpClient.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TestAuthority.h"

#include <gtest/gtest.h>

#include <functional>

/// Runs the calling thread's event loop until one exchange has ended. \a start gets the completion
/// function. Fails the test when that is not called within twenty seconds, is called from within
/// \a start, or twice.
HttpClientResult waitForExchange(const std::function<void(HttpClient::Function)> &start);

HttpClientResult fetch(
    HttpClient &client, const VeskUrl &url, const HttpClientOptions &options = {});
HttpClientResult send(HttpClient &client, const VeskUrl &url, const QByteArray &body);

HttpClientOptions withTimeout(int milliseconds);
HttpClientOptions withLimit(int bytes);

/// A response of code 200.
ScriptedServer::Response answerWith(
    const QByteArray &body, const ScriptedServer::Headers &headers = {});
ScriptedServer::Response redirectTo(const QByteArray &location, int code = 302);
/// Sends exactly \a bytes, which include the status line, and closes the connection.
ScriptedServer::Response rawAnswer(const QByteArray &bytes);
/// A handler that gives every request \a response.
ScriptedServer::Handler always(const ScriptedServer::Response &response);

/// "http://127.0.0.1:PORT" and \a rest.
VeskUrl urlOf(const ScriptedServer &server, const char *rest);

/// \a data as Content-Encoding "gzip" and "deflate" carry it.
QByteArray gzip(const QByteArray &data);
QByteArray deflate(const QByteArray &data);
