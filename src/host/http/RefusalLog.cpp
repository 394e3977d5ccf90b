// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/RefusalLog.h"

#include "api/core/ThreadCheck.h"

#include <utility>

namespace {

constexpr char OtherKinds[] = "other refusals";

} // namespace

RefusalLog::RefusalLog(Write write, int milliseconds, QObject *parent)
    : QObject(parent)
    , m_write(std::move(write))
    , m_milliseconds(milliseconds)
{
}

RefusalLog::~RefusalLog()
{
    for (auto &entry : m_kinds)
        writeCount(entry.first, entry.second);
}

void RefusalLog::log(const QByteArray &line, int times)
{
    VESK_ASSERT_OWN_THREAD();
    const bool isKnown = m_kinds.count(line) > 0 || m_kinds.size() < MaxKinds;
    const QByteArray kindLine = isKnown ? line : QByteArray(OtherKinds);
    Kind &kind = kindOf(kindLine);
    if (kind.second.isActive()) {
        kind.suppressed += times;
        return;
    }
    kind.suppressed += times - 1;
    kind.second.start();
    m_write(kindLine);
}

RefusalLog::Kind &RefusalLog::kindOf(const QByteArray &line)
{
    const auto added = m_kinds.try_emplace(line);
    Kind &kind = added.first->second;
    if (added.second) {
        kind.second.setSingleShot(true);
        kind.second.setInterval(m_milliseconds);
        connect(&kind.second, &QTimer::timeout, this, [this, line, &kind] {
            if (kind.suppressed == 0)
                return;
            writeCount(line, kind);
            kind.second.start();
        });
    }
    return kind;
}

void RefusalLog::writeCount(const QByteArray &line, Kind &kind)
{
    const int count = std::exchange(kind.suppressed, 0);
    if (count > 0)
        m_write(line + " (" + QByteArray::number(count) + " more times)");
}
