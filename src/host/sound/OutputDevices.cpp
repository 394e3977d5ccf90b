// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/OutputDevices.h"

#include "media/GstHandles.h"

namespace {

/// Of a hostile or broken sound system.
constexpr int MaxDevices = 100;
constexpr int MaxName = 200;

QString taken(gchar *text)
{
    const QString result = QString::fromUtf8(text);
    g_free(text);
    return result;
}

/// By which the sound system knows the device; empty if it does not say.
QString idOf(GstDevice *device, AudioOutputSpec::Kind kind)
{
    gchar *id = nullptr;
    if (kind == AudioOutputSpec::PipeWire) {
        if (GstStructure *properties = gst_device_get_properties(device)) {
            id = g_strdup(gst_structure_get_string(properties, "node.name"));
            gst_structure_free(properties);
        }
    } else if (g_object_class_find_property(G_OBJECT_GET_CLASS(device), "internal-name")) {
        g_object_get(device, "internal-name", &id, nullptr);
    }
    return taken(id);
}

void addFrom(const char *provider, AudioOutputSpec::Kind kind, QVector<OutputDevice> &devices)
{
    GstDeviceProvider *asked = gst_device_provider_factory_get_by_name(provider);
    if (!asked)
        return;
    // Started: PulseAudio's provider loses its connection's memory each time it lists devices
    // without that.
    const bool isStarted = gst_device_provider_start(asked);
    GList *found = isStarted ? gst_device_provider_get_devices(asked) : nullptr;
    for (GList *each = found; each; each = each->next) {
        auto *device = GST_DEVICE(each->data);
        AudioOutputSpec spec {kind};
        spec.device = idOf(device, kind);
        // What it writes and reads has to be the same.
        const auto read = AudioOutputSpec::parse(spec.text());
        if (gst_device_has_classes(device, "Audio/Sink") && !spec.device.isEmpty() && read
            && *read == spec && devices.size() < MaxDevices)
            devices.append({spec, taken(gst_device_get_display_name(device)).left(MaxName)});
        gst_object_unref(device);
    }
    g_list_free(found);
    if (isStarted)
        gst_device_provider_stop(asked);
    gst_object_unref(asked);
}

} // namespace

QVector<OutputDevice> outputDevices()
{
    startGStreamer();
    QVector<OutputDevice> devices;
    addFrom("pulsedeviceprovider", AudioOutputSpec::Pulse, devices);
    if (devices.isEmpty())
        addFrom("pipewiredeviceprovider", AudioOutputSpec::PipeWire, devices);
    addFrom("alsadeviceprovider", AudioOutputSpec::Alsa, devices);
    return devices;
}
