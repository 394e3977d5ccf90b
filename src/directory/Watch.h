// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A timer or a stream's source with a callback, which is never called after stop(). Lives on the
/// thread whose default main context runs it; the callback may destroy it.
#pragma once

#include <functional>
#include <gio/gio.h>

namespace directory {

class Watch {
public:
    using Call = std::function<void()>;

    Watch() = default;
    ~Watch() { stop(); }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    /// Fires once.
    void onTime(unsigned milliseconds, Call call);
    /// Fires repeatedly; takes over the reference to the source.
    void onStream(GSource *source, Call call);
    void stop();
    bool running() const { return m_source != nullptr; }

private:
    void attach(GSource *source, GSourceFunc function, Call call);

    GSource *m_source = nullptr;
};

} // namespace directory
