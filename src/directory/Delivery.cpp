// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Delivery.h"

#include <algorithm>
#include <libsoup/soup.h>

namespace directory {

namespace {

constexpr unsigned TrickleMilliseconds = 50;

} // namespace

std::string headOf(const Answer &answer)
{
    std::string head = "HTTP/1.1 " + std::to_string(answer.status) + ' '
        + soup_status_get_phrase(static_cast<guint>(answer.status)) + "\r\n";
    head += "Content-Type: " + answer.contentType + "\r\n";
    for (const auto &header : answer.headers)
        head += header.first + ": " + header.second + "\r\n";
    return head + "Connection: close\r\n";
}

RawDelivery::RawDelivery(GIOStream *stream, const Answer &answer, const Delivery &delivery,
    bool withBody, std::function<void()> done)
    : m_bytes(headOf(answer) + "Content-Length: " + std::to_string(answer.body.size()) + "\r\n\r\n")
    , m_head(m_bytes.size())
    , m_delivery(delivery)
    , m_done(std::move(done))
    , m_wire(stream, [this] { finish(); })
{
    if (withBody)
        m_bytes += answer.body;
    m_total = m_bytes.size();
    if (delivery.bodyBytes)
        m_total = std::min(m_total, m_head + *delivery.bodyBytes);
    if (delivery.end == Delivery::End::Reset) {
        m_total = 0;
        m_wire.resetAtEnd();
    }
}

void RawDelivery::start()
{
    m_timer.onTime(static_cast<unsigned>(m_delivery.delaySeconds) * 1000, [this] { begin(); });
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
    m_wire.ignoreRoom();
    while (m_sent < allowed()) {
        const std::ptrdiff_t count
            = m_wire.write(std::string_view(m_bytes).substr(m_sent, allowed() - m_sent));
        if (count < 0)
            return finish();
        if (count == 0)
            return m_wire.onRoom([this] { write(); });
        m_sent += static_cast<std::size_t>(count);
    }
    if (m_sent < m_total)
        return m_timer.onTime(TrickleMilliseconds, [this] { write(); });
    end();
}

void RawDelivery::end()
{
    if (m_delivery.end == Delivery::End::Hold)
        m_timer.onTime(MaxHoldSeconds * 1000, [this] { finish(); });
    else
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
