// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/TappedStream.h"

namespace directory {

namespace {

struct TapInput {
    GFilterInputStream parent;
    Tap *tap;
    bool brokenOff;
};
struct TapInputClass {
    GFilterInputStreamClass parent;
};
struct TapStream {
    GIOStream parent;
    GIOStream *base;
    GInputStream *input;
    GSocket *socket;
};
struct TapStreamClass {
    GIOStreamClass parent;
};

void tap_input_pollable_init(GPollableInputStreamInterface *interface);

G_DEFINE_TYPE_WITH_CODE(TapInput, tap_input, G_TYPE_FILTER_INPUT_STREAM,
    G_IMPLEMENT_INTERFACE(G_TYPE_POLLABLE_INPUT_STREAM, tap_input_pollable_init))
G_DEFINE_TYPE(TapStream, tap_stream, G_TYPE_IO_STREAM)

TapInput *asInput(gpointer object)
{
    return static_cast<TapInput *>(object);
}
TapStream *asStream(gpointer object)
{
    return static_cast<TapStream *>(object);
}

GInputStream *baseOf(gpointer input)
{
    return g_filter_input_stream_get_base_stream(&asInput(input)->parent);
}

gssize shown(gpointer input, const void *buffer, gssize count)
{
    if (count > 0)
        asInput(input)->tap->read(
            {static_cast<const char *>(buffer), static_cast<std::size_t>(count)});
    return count;
}

gssize readBlocking(
    GInputStream *input, void *buffer, gsize count, GCancellable *cancellable, GError **error)
{
    return shown(
        input, buffer, g_input_stream_read(baseOf(input), buffer, count, cancellable, error));
}

gssize readNonblocking(GPollableInputStream *input, void *buffer, gsize count, GError **error)
{
    if (asInput(input)->brokenOff)
        return 0;
    GError *failure = nullptr;
    const gssize got = shown(input, buffer,
        g_pollable_input_stream_read_nonblocking(
            G_POLLABLE_INPUT_STREAM(baseOf(input)), buffer, count, nullptr, &failure));
    const bool waits = failure && g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK);
    if (got <= 0 && !waits && count > 0 && asInput(input)->tap->breaksOff()) {
        g_clear_error(&failure);
        asInput(input)->brokenOff = true;
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
    G_INPUT_STREAM_CLASS(type)->read_fn = readBlocking;
}

void tap_stream_init(TapStream *) { }

void disposeStream(GObject *object)
{
    // The parent's dispose closes the stream, which still needs the base.
    G_OBJECT_CLASS(tap_stream_parent_class)->dispose(object);
    g_clear_object(&asStream(object)->input);
    g_clear_object(&asStream(object)->base);
    g_clear_object(&asStream(object)->socket);
}

gboolean closeStream(GIOStream *stream, GCancellable *cancellable, GError **error)
{
    return !asStream(stream)->base || g_io_stream_close(asStream(stream)->base, cancellable, error);
}

void tap_stream_class_init(TapStreamClass *type)
{
    G_OBJECT_CLASS(type)->dispose = disposeStream;
    G_IO_STREAM_CLASS(type)->get_input_stream
        = [](GIOStream *stream) { return asStream(stream)->input; };
    G_IO_STREAM_CLASS(type)->get_output_stream
        = [](GIOStream *stream) { return g_io_stream_get_output_stream(asStream(stream)->base); };
    G_IO_STREAM_CLASS(type)->close_fn = closeStream;
}

} // namespace

GIOStream *tappedStream(GIOStream *base, GSocket *socket, Tap tap)
{
    auto *input = asInput(g_object_new(tap_input_get_type(), "base-stream",
        g_io_stream_get_input_stream(base), "close-base-stream", FALSE, nullptr));
    input->tap = new Tap(std::move(tap));
    auto *stream = asStream(g_object_new(tap_stream_get_type(), nullptr));
    stream->base = static_cast<GIOStream *>(g_object_ref(base));
    stream->input = G_INPUT_STREAM(input);
    stream->socket = static_cast<GSocket *>(g_object_ref(socket));
    return &stream->parent;
}

GSocket *socketOf(GIOStream *stream)
{
    if (G_TYPE_CHECK_INSTANCE_TYPE(stream, tap_stream_get_type()))
        return asStream(stream)->socket;
    if (!g_object_class_find_property(G_OBJECT_GET_CLASS(stream), "base-iostream"))
        return nullptr;
    GIOStream *base = nullptr;
    g_object_get(stream, "base-iostream", &base, nullptr);
    GSocket *socket = base ? socketOf(base) : nullptr;
    g_clear_object(&base); // the wrapper keeps it
    return socket;
}

} // namespace directory
