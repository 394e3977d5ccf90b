#include "host/player/GstHandles.h"

#include <mutex>

void startGStreamer()
{
    static std::once_flag once;
    // The list of plug-ins is made in a process of its own: they are many, and not all are sound.
    std::call_once(once, [] { gst_init(nullptr, nullptr); });
}

QString gstErrorText(GstMessage *message)
{
    GError *error = nullptr;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_WARNING)
        gst_message_parse_warning(message, &error, nullptr);
    else
        gst_message_parse_error(message, &error, nullptr);
    const QString text = error ? QString::fromUtf8(error->message) : QString();
    g_clear_error(&error);
    return text;
}
