#include "directory/Delivery.h"

#include "directory/TappedStream.h"

#include <algorithm>
#include <array>
#include <libsoup/soup.h>
#include <sys/socket.h>

namespace directory {

namespace {

constexpr unsigned trickleMilliseconds = 50;

std::string headOf(const Answer &answer)
{
    std::string head = "HTTP/1.1 " + std::to_string(answer.status) + ' '
        + soup_status_get_phrase(static_cast<guint>(answer.status)) + "\r\n";
    head += "Content-Type: " + answer.contentType + "\r\n";
    head += "Content-Length: " + std::to_string(answer.body.size()) + "\r\n";
    for (const auto &header : answer.headers)
        head += header.first + ": " + header.second + "\r\n";
    return head + "Connection: close\r\n\r\n";
}

} // namespace

void RawDelivery::Watch::attach(
    GSource *source, GSourceFunc function, RawDelivery *owner, Step step)
{
    stop();
    m_source = source;
    g_source_set_callback(source, function, new Call {owner, step},
        [](gpointer data) { delete static_cast<Call *>(data); });
    g_source_attach(source, g_main_context_get_thread_default());
}

void RawDelivery::Watch::onTime(unsigned milliseconds, RawDelivery *owner, Step step)
{
    const GSourceFunc fire = [](gpointer data) -> gboolean {
        const Call call = *static_cast<Call *>(data);
        (call.owner->*call.step)();
        return G_SOURCE_REMOVE;
    };
    attach(g_timeout_source_new(milliseconds), fire, owner, step);
}

void RawDelivery::Watch::onStream(GSource *source, RawDelivery *owner, Step step)
{
    const GPollableSourceFunc fire = [](GObject *, gpointer data) -> gboolean {
        const Call call = *static_cast<Call *>(data);
        (call.owner->*call.step)();
        return G_SOURCE_CONTINUE;
    };
    attach(source, G_SOURCE_FUNC(fire), owner, step);
}

void RawDelivery::Watch::stop()
{
    if (!m_source)
        return;
    g_source_destroy(m_source);
    g_source_unref(m_source);
    m_source = nullptr;
}

RawDelivery::RawDelivery(GIOStream *stream, const Answer &answer, const Delivery &delivery,
    bool withBody, std::function<void()> done)
    : m_stream(stream)
    , m_bytes(headOf(answer))
    , m_head(m_bytes.size())
    , m_delivery(delivery)
    , m_done(std::move(done))
{
    if (withBody)
        m_bytes += answer.body;
    m_total = m_bytes.size();
    if (delivery.bodyBytes)
        m_total = std::min(m_total, m_head + *delivery.bodyBytes);
    if (delivery.end == Delivery::End::Reset)
        m_total = 0;
}

RawDelivery::~RawDelivery()
{
    m_timer.stop();
    m_output.stop();
    m_input.stop();
    // The socket itself, because a TLS stream's own end would wait for room for its farewell.
    if (GSocket *socket = socketOf(m_stream)) {
        if (m_delivery.end == Delivery::End::Reset) {
            const linger atOnce {1, 0};
            setsockopt(g_socket_get_fd(socket), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        }
        g_socket_close(socket, nullptr);
    }
    g_object_unref(m_stream);
}

void RawDelivery::start()
{
    if (GSocket *socket = socketOf(m_stream))
        g_socket_set_timeout(socket, 0);
    watchForHangup();
    m_timer.onTime(
        static_cast<unsigned>(m_delivery.delaySeconds) * 1000, this, &RawDelivery::begin);
}

void RawDelivery::begin()
{
    m_started = g_get_monotonic_time();
    write();
}

std::size_t RawDelivery::allowed() const
{
    if (m_delivery.bytesPerSecond == 0)
        return m_total;
    const auto elapsed = static_cast<std::uint64_t>(g_get_monotonic_time() - m_started);
    const auto earned = static_cast<std::uint64_t>(m_delivery.bytesPerSecond) * elapsed / 1000000;
    return std::min(m_total, m_head + static_cast<std::size_t>(earned));
}

void RawDelivery::write()
{
    m_output.stop();
    auto *output = G_POLLABLE_OUTPUT_STREAM(g_io_stream_get_output_stream(m_stream));
    while (m_sent < allowed()) {
        GError *error = nullptr;
        const gssize count = g_pollable_output_stream_write_nonblocking(
            output, m_bytes.data() + m_sent, allowed() - m_sent, nullptr, &error);
        if (count > 0) {
            m_sent += static_cast<std::size_t>(count);
            continue;
        }
        const bool full = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK);
        g_clear_error(&error);
        if (!full)
            return finish();
        return m_output.onStream(
            g_pollable_output_stream_create_source(output, nullptr), this, &RawDelivery::write);
    }
    if (m_sent < m_total)
        return m_timer.onTime(trickleMilliseconds, this, &RawDelivery::write);
    end();
}

void RawDelivery::end()
{
    if (m_delivery.end == Delivery::End::Hold)
        m_timer.onTime(maxHoldSeconds * 1000, this, &RawDelivery::finish);
    else
        finish();
}

void RawDelivery::watchForHangup()
{
    auto *input = G_POLLABLE_INPUT_STREAM(g_io_stream_get_input_stream(m_stream));
    m_input.onStream(
        g_pollable_input_stream_create_source(input, nullptr), this, &RawDelivery::readOn);
}

void RawDelivery::readOn()
{
    auto *input = G_POLLABLE_INPUT_STREAM(g_io_stream_get_input_stream(m_stream));
    std::array<char, 4096> buffer;
    GError *error = nullptr;
    const gssize count = g_pollable_input_stream_read_nonblocking(
        input, buffer.data(), buffer.size(), nullptr, &error);
    const bool waiting = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK);
    g_clear_error(&error);
    if (count <= 0 && !waiting)
        finish();
}

void RawDelivery::finish()
{
    const std::function<void()> done = std::move(m_done);
    m_done = nullptr;
    if (done)
        done(); // destroys this object
}

} // namespace directory
