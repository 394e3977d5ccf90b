// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/SoundSink.h"

#include "host/sound/RawSink.h"
#include "media/GstHandles.h"

#include <gst/audio/streamvolume.h>

namespace {

/// How much a sound device holds, and in which pieces it takes it, in microseconds. A pause is
/// heard after what the device holds, and each piece wakes a thread.
constexpr gint64 DeviceBuffer = 150000;
constexpr gint64 DevicePiece = 50000;

/// Adds an element to the bin; null when there is no such element on this machine.
GstElement *add(GstBin *bin, const char *factory)
{
    GstElement *element = gst_element_factory_make(factory, nullptr);
    if (element)
        gst_bin_add(bin, element);
    return element;
}

void setDeviceBuffer(GstBin *, GstElement *sink, gpointer)
{
    GObjectClass *type = G_OBJECT_GET_CLASS(sink);
    if (g_object_class_find_property(type, "buffer-time")
        && g_object_class_find_property(type, "latency-time")) {
        g_object_set(sink, "buffer-time", DeviceBuffer, "latency-time", DevicePiece, nullptr);
    }
}

GstElement *automaticSink()
{
    GstElement *sink = gst_element_factory_make("autoaudiosink", nullptr);
    if (sink)
        g_signal_connect(sink, "element-added", G_CALLBACK(setDeviceBuffer), nullptr);
    return sink;
}

/// What has been heard is always in the file.
GstElement *fileSink(const QString &file)
{
    GstElement *bin = gst_bin_new(nullptr);
    GstElement *filter = add(GST_BIN(bin), "capsfilter");
    GstElement *encoder = add(GST_BIN(bin), "wavenc");
    GstElement *sink = add(GST_BIN(bin), "filesink");
    if (!filter || !encoder || !sink || !gst_element_link_many(filter, encoder, sink, nullptr)) {
        gst_object_unref(gst_object_ref_sink(bin));
        return nullptr;
    }
    const GstPtr<GstCaps> caps(
        gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", nullptr));
    g_object_set(filter, "caps", caps.get(), nullptr);
    constexpr int Unbuffered = 2;
    g_object_set(sink, "async", FALSE, "sync", FALSE, "buffer-mode", Unbuffered, "location",
        file.toUtf8().constData(), nullptr);
    const GstPtr<GstPad> pad(gst_element_get_static_pad(filter, "sink"));
    gst_element_add_pad(bin, gst_ghost_pad_new("sink", pad.get()));
    return bin;
}

/// The device of that name in the element's property, or the default one.
GstElement *deviceSink(const char *factory, const char *property, const QString &device)
{
    GstElement *sink = gst_element_factory_make(factory, nullptr);
    if (!sink)
        return nullptr;
    setDeviceBuffer(nullptr, sink, nullptr);
    if (!device.isEmpty())
        g_object_set(sink, property, device.toUtf8().constData(), nullptr);
    // What mixers show.
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(sink), "client-name"))
        g_object_set(sink, "client-name", "Vesk", nullptr);
    return sink;
}

GstElement *elementFor(const AudioOutputSpec &spec)
{
    switch (spec.kind) {
    case AudioOutputSpec::Auto:
        return automaticSink();
    case AudioOutputSpec::Null:
        return gst_element_factory_make("fakesink", nullptr);
    case AudioOutputSpec::Wav:
        return fileSink(spec.file);
    case AudioOutputSpec::Alsa:
        return deviceSink("alsasink", "device", spec.device);
    case AudioOutputSpec::Pulse:
        return deviceSink("pulsesink", "device", spec.device);
    case AudioOutputSpec::PipeWire:
        return deviceSink("pipewiresink", "target-object", spec.device);
    case AudioOutputSpec::Jack:
        return deviceSink("jackaudiosink", nullptr, {});
    case AudioOutputSpec::Pipe:
    case AudioOutputSpec::Tcp:
        return makeRawSink(spec);
    }
    return nullptr;
}

/// The package of Debian that is missing.
const char *packageFor(AudioOutputSpec::Kind kind)
{
    switch (kind) {
    case AudioOutputSpec::Alsa:
        return "gstreamer1.0-alsa";
    case AudioOutputSpec::Pulse:
        return "gstreamer1.0-pulseaudio";
    case AudioOutputSpec::PipeWire:
        return "gstreamer1.0-pipewire";
    case AudioOutputSpec::Jack:
        return "gstreamer1.0-jack";
    default:
        return "gstreamer1.0-plugins-good";
    }
}

} // namespace

Result<SoundSink, TrString> makeSoundSink(const AudioOutputSpec &spec)
{
    SoundSink sink;
    sink.element = elementFor(spec);
    if (!sink.element) {
        return failure(TrString(QStringLiteral("Player"),
            QString::fromLatin1(QT_TRANSLATE_NOOP(
                "Player", "This device cannot play to \"%1\": the package %2 is not installed.")),
            QString(), -1,
            {TrArg(spec.text()), TrArg(QString::fromLatin1(packageFor(spec.kind)))}));
    }
    sink.isFile = spec.kind == AudioOutputSpec::Wav;
    sink.takesAll = spec.kind == AudioOutputSpec::Null || spec.kind == AudioOutputSpec::Wav;
    if (GST_IS_STREAM_VOLUME(sink.element))
        sink.deviceVolume = sink.element;
    if (spec.kind == AudioOutputSpec::Pipe || spec.kind == AudioOutputSpec::Tcp)
        sink.fixed = {RawRate, RawChannels};
    return sink;
}
