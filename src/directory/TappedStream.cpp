// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/TappedStream.h"

namespace directory {

namespace {

constexpr char BaseKey[] = "vesk-base";
constexpr char SocketKey[] = "vesk-socket";

struct TapInput {
    GFilterInputStream parent;
    Tap *tap;
    bool brokenOff;
};
struct TapInputClass {
    GFilterInputStreamClass parent;
};
// NOLINTNEXTLINE(readability-identifier-naming): as GObject names what its macros declare
void tap_input_pollable_init(GPollableInputStreamInterface *interface);

G_DEFINE_TYPE_WITH_CODE(TapInput, tap_input, G_TYPE_FILTER_INPUT_STREAM,
    G_IMPLEMENT_INTERFACE(G_TYPE_POLLABLE_INPUT_STREAM, tap_input_pollable_init))

TapInput *asInput(gpointer object)
{
    return static_cast<TapInput *>(object);
}

GInputStream *baseOf(gpointer input)
{
    return g_filter_input_stream_get_base_stream(&asInput(input)->parent);
}

/// The only way in which libsoup's server reads.
gssize readNonblocking(GPollableInputStream *input, void *buffer, gsize count, GError **error)
{
    TapInput *self = asInput(input);
    if (self->brokenOff)
        return 0;
    GError *failure = nullptr;
    const gssize got = g_pollable_input_stream_read_nonblocking(
        G_POLLABLE_INPUT_STREAM(baseOf(input)), buffer, count, nullptr, &failure);
    if (got > 0)
        self->tap->read({static_cast<const char *>(buffer), static_cast<std::size_t>(got)});
    const bool waits = failure && g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK);
    if (got <= 0 && !waits && count > 0 && self->tap->breaksOff()) {
        g_clear_error(&failure);
        self->brokenOff = true;
        *static_cast<char *>(buffer) = ' ';
        return 1;
    }
    if (failure)
        g_propagate_error(error, failure);
    return got;
}

gboolean canPoll(GPollableInputStream *input)
{
    return g_pollable_input_stream_can_poll(G_POLLABLE_INPUT_STREAM(baseOf(input)));
}

gboolean isReadable(GPollableInputStream *input)
{
    return g_pollable_input_stream_is_readable(G_POLLABLE_INPUT_STREAM(baseOf(input)));
}

GSource *createSource(GPollableInputStream *input, GCancellable *cancellable)
{
    GSource *below = g_pollable_input_stream_create_source(
        G_POLLABLE_INPUT_STREAM(baseOf(input)), cancellable);
    GSource *source = g_pollable_source_new_full(input, below, cancellable);
    g_source_unref(below);
    return source;
}

// NOLINTNEXTLINE(readability-identifier-naming): as GObject names what its macros declare
void tap_input_pollable_init(GPollableInputStreamInterface *interface)
{
    interface->can_poll = canPoll;
    interface->is_readable = isReadable;
    interface->create_source = createSource;
    interface->read_nonblocking = readNonblocking;
}

void tap_input_init(TapInput *) { }

void finalizeInput(GObject *object)
{
    delete asInput(object)->tap;
    G_OBJECT_CLASS(tap_input_parent_class)->finalize(object);
}

void tap_input_class_init(TapInputClass *type)
{
    G_OBJECT_CLASS(type)->finalize = finalizeInput;
}

} // namespace

GIOStream *tappedStream(GIOStream *base, GSocket *socket, Tap tap)
{
    auto *input = asInput(g_object_new(tap_input_get_type(), "base-stream",
        g_io_stream_get_input_stream(base), "close-base-stream", FALSE, nullptr));
    input->tap = new Tap(std::move(tap));
    GIOStream *stream
        = g_simple_io_stream_new(G_INPUT_STREAM(input), g_io_stream_get_output_stream(base));
    g_object_unref(input);
    // A stream's end closes it, so the base ends with this one.
    g_object_set_data_full(G_OBJECT(stream), BaseKey, g_object_ref(base), g_object_unref);
    g_object_set_data_full(G_OBJECT(stream), SocketKey, g_object_ref(socket), g_object_unref);
    return stream;
}

GSocket *socketOf(GIOStream *stream)
{
    if (void *socket = g_object_get_data(G_OBJECT(stream), SocketKey))
        return G_SOCKET(socket);
    if (!g_object_class_find_property(G_OBJECT_GET_CLASS(stream), "base-iostream"))
        return nullptr;
    GIOStream *base = nullptr;
    g_object_get(stream, "base-iostream", &base, nullptr);
    GSocket *socket = base ? socketOf(base) : nullptr;
    g_clear_object(&base); // the wrapper keeps it
    return socket;
}

} // namespace directory
