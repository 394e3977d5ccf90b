// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/MeteredStream.h"

// GObject's way to write classes: the macros define the functions that are declared here.
namespace {

struct MeteredInput {
    GFilterInputStream parent;
    guint64 allowance;
};
struct MeteredInputClass {
    GFilterInputStreamClass parent;
};
struct MeteredOutput {
    GFilterOutputStream parent;
    guint64 bytes;
};
struct MeteredOutputClass {
    GFilterOutputStreamClass parent;
};

void pollableInputInit(gpointer interface, gpointer);
void pollableOutputInit(gpointer interface, gpointer);

G_DEFINE_TYPE_WITH_CODE(MeteredInput, metered_input, G_TYPE_FILTER_INPUT_STREAM,
    G_IMPLEMENT_INTERFACE(G_TYPE_POLLABLE_INPUT_STREAM, pollableInputInit))
G_DEFINE_TYPE_WITH_CODE(MeteredOutput, metered_output, G_TYPE_FILTER_OUTPUT_STREAM,
    G_IMPLEMENT_INTERFACE(G_TYPE_POLLABLE_OUTPUT_STREAM, pollableOutputInit))

template <class T>
T *self(gpointer stream)
{
    return static_cast<T *>(stream);
}

GPollableInputStream *baseOf(GPollableInputStream *stream)
{
    return G_POLLABLE_INPUT_STREAM(
        g_filter_input_stream_get_base_stream(G_FILTER_INPUT_STREAM(stream)));
}

GPollableOutputStream *baseOf(GPollableOutputStream *stream)
{
    return G_POLLABLE_OUTPUT_STREAM(
        g_filter_output_stream_get_base_stream(G_FILTER_OUTPUT_STREAM(stream)));
}

/// Reads through \a read as much as \a stream may.
template <class Read>
gssize readAllowed(gpointer stream, gsize size, GError **error, const Read &read)
{
    auto *input = self<MeteredInput>(stream);
    if (input->allowance == 0) {
        g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_MESSAGE_TOO_LARGE, "too much was sent");
        return -1;
    }
    const gssize bytes
        = read(static_cast<gsize>(MIN(static_cast<guint64>(size), input->allowance)));
    if (bytes > 0)
        input->allowance -= static_cast<guint64>(bytes);
    return bytes;
}

gssize countWritten(gpointer stream, gssize bytes)
{
    if (bytes > 0)
        self<MeteredOutput>(stream)->bytes += static_cast<guint64>(bytes);
    return bytes;
}

/// A source that is ready when \a base is, and is dispatched for the stream above it.
GSource *sourceOver(GObject *stream, GSource *base, GCancellable *cancellable)
{
    GSource *source = g_pollable_source_new_full(stream, base, cancellable);
    g_source_unref(base);
    return source;
}

/// Closing does nothing here, so it needs no thread. GIO's default uses one, which might drop the
/// last reference to the stream; but the callback for its end belongs to the main thread.
void closeAtOnce(
    gpointer stream, GCancellable *cancellable, GAsyncReadyCallback callback, gpointer data)
{
    GTask *task = g_task_new(stream, cancellable, callback, data);
    g_task_return_boolean(task, TRUE);
    g_object_unref(task);
}

gboolean isClosed(GAsyncResult *result, GError **error)
{
    return g_task_propagate_boolean(G_TASK(result), error);
}

void metered_input_init(MeteredInput *input)
{
    input->allowance = G_MAXUINT64;
}

void metered_input_class_init(MeteredInputClass *type)
{
    G_INPUT_STREAM_CLASS(type)->close_async
        = [](GInputStream *stream, int, GCancellable *cancellable, GAsyncReadyCallback callback,
              gpointer data) { closeAtOnce(stream, cancellable, callback, data); };
    G_INPUT_STREAM_CLASS(type)->close_finish
        = [](GInputStream *, GAsyncResult *result, GError **error) {
              return isClosed(result, error);
          };
    G_INPUT_STREAM_CLASS(type)->read_fn = [](GInputStream *stream, void *buffer, gsize size,
                                              GCancellable *cancellable, GError **error) {
        GInputStream *base = g_filter_input_stream_get_base_stream(G_FILTER_INPUT_STREAM(stream));
        return readAllowed(stream, size, error, [&](gsize allowed) {
            return g_input_stream_read(base, buffer, allowed, cancellable, error);
        });
    };
}

void pollableInputInit(gpointer interface, gpointer)
{
    auto *type = static_cast<GPollableInputStreamInterface *>(interface);
    type->can_poll = [](GPollableInputStream *stream) {
        return g_pollable_input_stream_can_poll(baseOf(stream));
    };
    type->is_readable = [](GPollableInputStream *stream) {
        return g_pollable_input_stream_is_readable(baseOf(stream));
    };
    type->create_source = [](GPollableInputStream *stream, GCancellable *cancellable) {
        return sourceOver(G_OBJECT(stream),
            g_pollable_input_stream_create_source(baseOf(stream), nullptr), cancellable);
    };
    type->read_nonblocking
        = [](GPollableInputStream *stream, void *buffer, gsize size, GError **error) {
              return readAllowed(stream, size, error, [&](gsize allowed) {
                  return g_pollable_input_stream_read_nonblocking(
                      baseOf(stream), buffer, allowed, nullptr, error);
              });
          };
}

void metered_output_init(MeteredOutput *) { }

void metered_output_class_init(MeteredOutputClass *type)
{
    G_OUTPUT_STREAM_CLASS(type)->close_async
        = [](GOutputStream *stream, int, GCancellable *cancellable, GAsyncReadyCallback callback,
              gpointer data) { closeAtOnce(stream, cancellable, callback, data); };
    G_OUTPUT_STREAM_CLASS(type)->close_finish
        = [](GOutputStream *, GAsyncResult *result, GError **error) {
              return isClosed(result, error);
          };
    G_OUTPUT_STREAM_CLASS(type)->write_fn = [](GOutputStream *stream, const void *buffer,
                                                gsize size, GCancellable *cancellable,
                                                GError **error) {
        GOutputStream *base
            = g_filter_output_stream_get_base_stream(G_FILTER_OUTPUT_STREAM(stream));
        return countWritten(stream, g_output_stream_write(base, buffer, size, cancellable, error));
    };
}

void pollableOutputInit(gpointer interface, gpointer)
{
    auto *type = static_cast<GPollableOutputStreamInterface *>(interface);
    type->can_poll = [](GPollableOutputStream *stream) {
        return g_pollable_output_stream_can_poll(baseOf(stream));
    };
    type->is_writable = [](GPollableOutputStream *stream) {
        return g_pollable_output_stream_is_writable(baseOf(stream));
    };
    type->create_source = [](GPollableOutputStream *stream, GCancellable *cancellable) {
        return sourceOver(G_OBJECT(stream),
            g_pollable_output_stream_create_source(baseOf(stream), nullptr), cancellable);
    };
    type->write_nonblocking
        = [](GPollableOutputStream *stream, const void *buffer, gsize size, GError **error) {
              return countWritten(stream,
                  g_pollable_output_stream_write_nonblocking(
                      baseOf(stream), buffer, size, nullptr, error));
          };
}

} // namespace

GIOStream *meteredStreamNew(GIOStream *base)
{
    auto *input = G_INPUT_STREAM(g_object_new(metered_input_get_type(), "base-stream",
        g_io_stream_get_input_stream(base), "close-base-stream", FALSE, nullptr));
    auto *output = G_OUTPUT_STREAM(g_object_new(metered_output_get_type(), "base-stream",
        g_io_stream_get_output_stream(base), "close-base-stream", FALSE, nullptr));
    GIOStream *stream = g_simple_io_stream_new(input, output);
    g_object_unref(input);
    g_object_unref(output);
    // The socket belongs to the base stream as a whole: it lives as long as this one does.
    g_object_set_data_full(G_OBJECT(stream), "base", g_object_ref(base), [](gpointer object) {
        g_io_stream_close(G_IO_STREAM(object), nullptr, nullptr);
        g_object_unref(object);
    });
    return stream;
}

guint64 meteredStreamBytesWritten(GIOStream *stream)
{
    return self<MeteredOutput>(g_io_stream_get_output_stream(stream))->bytes;
}

guint64 meteredStreamReadAllowance(GIOStream *stream)
{
    return self<MeteredInput>(g_io_stream_get_input_stream(stream))->allowance;
}

void meteredStreamSetReadAllowance(GIOStream *stream, guint64 bytes)
{
    self<MeteredInput>(g_io_stream_get_input_stream(stream))->allowance = bytes;
}
