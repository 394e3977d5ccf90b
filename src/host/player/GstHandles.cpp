#include "host/player/GstHandles.h"

#include <mutex>

void startGStreamer()
{
    static std::once_flag once;
    std::call_once(once, [] {
        // Signals and the fork for the list of plug-ins are the program's own business.
        gst_registry_fork_set_enabled(FALSE);
        gst_init(nullptr, nullptr);
    });
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
