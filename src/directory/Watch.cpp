// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Watch.h"

namespace directory {

void Watch::attach(GSource *source, GSourceFunc function, Call call)
{
    stop();
    m_source = source;
    g_source_set_callback(source, function, new Call(std::move(call)),
        [](gpointer data) { delete static_cast<Call *>(data); });
    g_source_attach(source, g_main_context_get_thread_default());
}

void Watch::onTime(unsigned milliseconds, Call call)
{
    const GSourceFunc fire = [](gpointer data) -> gboolean {
        const Call copy = *static_cast<Call *>(data);
        copy();
        return G_SOURCE_REMOVE;
    };
    attach(g_timeout_source_new(milliseconds), fire, std::move(call));
}

void Watch::onStream(GSource *source, Call call)
{
    const GPollableSourceFunc fire = [](GObject *, gpointer data) -> gboolean {
        const Call copy = *static_cast<Call *>(data);
        copy();
        return G_SOURCE_CONTINUE;
    };
    attach(source, G_SOURCE_FUNC(fire), std::move(call));
}

void Watch::stop()
{
    if (!m_source)
        return;
    g_source_destroy(m_source);
    g_source_unref(m_source);
    m_source = nullptr;
}

} // namespace directory
