// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Wire.h"

#include "directory/TappedStream.h"

#include <array>
#include <sys/socket.h>

namespace directory {

namespace {

bool wouldBlock(GError *error)
{
    const bool result = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK);
    g_clear_error(&error);
    return result;
}

} // namespace

void reset(GSocket *socket)
{
    const linger atOnce {1, 0};
    setsockopt(g_socket_get_fd(socket), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    g_socket_close(socket, nullptr);
}

Wire::Wire(GIOStream *stream, Watch::Call gone)
    : m_stream(stream)
    , m_gone(std::move(gone))
{
    if (GSocket *socket = socketOf(m_stream))
        g_socket_set_timeout(socket, 0);
    auto *input = G_POLLABLE_INPUT_STREAM(g_io_stream_get_input_stream(m_stream));
    m_input.onStream(g_pollable_input_stream_create_source(input, nullptr), [this] { readOn(); });
}

Wire::~Wire()
{
    m_output.stop();
    m_input.stop();
    // The socket itself: closing a TLS stream would block until close_notify can be written.
    if (GSocket *socket = socketOf(m_stream)) {
        if (m_reset)
            reset(socket);
        else
            g_socket_close(socket, nullptr);
    }
    g_object_unref(m_stream);
}

std::ptrdiff_t Wire::write(std::string_view bytes)
{
    auto *output = G_POLLABLE_OUTPUT_STREAM(g_io_stream_get_output_stream(m_stream));
    GError *error = nullptr;
    const gssize count = g_pollable_output_stream_write_nonblocking(
        output, bytes.data(), bytes.size(), nullptr, &error);
    if (count > 0)
        return count;
    return wouldBlock(error) ? 0 : -1;
}

void Wire::onRoom(Watch::Call call)
{
    auto *output = G_POLLABLE_OUTPUT_STREAM(g_io_stream_get_output_stream(m_stream));
    m_output.onStream(g_pollable_output_stream_create_source(output, nullptr), std::move(call));
}

void Wire::boundSendBuffer(int bytes)
{
    if (GSocket *socket = socketOf(m_stream))
        g_socket_set_option(socket, SOL_SOCKET, SO_SNDBUF, bytes, nullptr);
}

void Wire::readOn()
{
    auto *input = G_POLLABLE_INPUT_STREAM(g_io_stream_get_input_stream(m_stream));
    std::array<char, 4096> buffer;
    GError *error = nullptr;
    const gssize count = g_pollable_input_stream_read_nonblocking(
        input, buffer.data(), buffer.size(), nullptr, &error);
    if (count > 0 || wouldBlock(error))
        return;
    const Watch::Call gone = m_gone;
    gone();
}

} // namespace directory
