// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "media/GstHandles.h"

#include <mutex>

void startGStreamer()
{
    static std::once_flag once;
    // gst_init() scans plug-ins in a child process by default, so that a crashing plug-in does no
    // harm.
    std::call_once(once, [] { gst_init(nullptr, nullptr); });
}

std::string gstMessageText(GstMessage *message)
{
    GError *error = nullptr;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_WARNING)
        gst_message_parse_warning(message, &error, nullptr);
    else
        gst_message_parse_error(message, &error, nullptr);
    const std::string text = error ? error->message : "";
    g_clear_error(&error);
    return text;
}
