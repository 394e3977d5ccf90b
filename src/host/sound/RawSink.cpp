// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/RawSink.h"

#include "api/core/vesk.h"
#include "host/sound/RawPlace.h"
#include "host/sound/SinkHealth.h"
#include "media/GstHandles.h"

#include <QFile>

#include <memory>

namespace {

/// What belongs to the bin, on its streaming thread.
struct Link {
    std::unique_ptr<RawPlace> place;
    bool isServer;
    QString name;
    GstElement *bin; ///< lives longer
    /// What was told last.
    RawPlace::Health health = RawPlace::Health::Fine;

    void tell(RawPlace::Health now);
    const char *text(RawPlace::Health now) const;
};

const char *Link::text(RawPlace::Health now) const
{
    switch (now) {
    case RawPlace::Health::Fine:
    case RawPlace::Health::Opening:
        break;
    case RawPlace::Health::Absent:
        return isServer ? QT_TRANSLATE_NOOP("Player", "The sound server %1 cannot be reached.")
                        : QT_TRANSLATE_NOOP("Player", "Nobody reads the sound from %1.");
    case RawPlace::Health::Slow:
        return QT_TRANSLATE_NOOP("Player", "%1 takes the sound too slowly; some of it is lost.");
    case RawPlace::Health::Unusable:
        return QT_TRANSLATE_NOOP("Player", "Sound cannot be written to %1: %2");
    }
    return nullptr;
}

void Link::tell(RawPlace::Health now)
{
    if (now == health || now == RawPlace::Health::Opening)
        return;
    health = now;
    postSinkHealth(bin, text(now), name,
        now == RawPlace::Health::Unusable ? QString::fromStdString(place->reason()) : QString());
}

void onBuffer(GstElement *, GstBuffer *buffer, GstPad *, gpointer self)
{
    auto *link = static_cast<Link *>(self);
    GstMapInfo map;
    if (!gst_buffer_map(buffer, &map, GST_MAP_READ))
        return;
    link->tell(link->place->write(reinterpret_cast<const char *>(map.data), map.size));
    gst_buffer_unmap(buffer, &map);
}

void destroyLink(gpointer link)
{
    delete static_cast<Link *>(link);
}

GstElement *add(GstElement *bin, const char *factory)
{
    GstElement *element = gst_element_factory_make(factory, nullptr);
    VESK_ASSERT(element);
    gst_bin_add(GST_BIN(bin), element);
    return element;
}

} // namespace

GstElement *makeRawSink(const AudioOutputSpec &spec)
{
    GstElement *bin = gst_bin_new(nullptr);
    GstElement *filter = add(bin, "capsfilter");
    GstElement *sink = add(bin, "fakesink");
    const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE",
        "layout", G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, RawRate, "channels", G_TYPE_INT,
        RawChannels, nullptr));
    g_object_set(filter, "caps", caps.get(), nullptr);
    // Handed over when they are due.
    g_object_set(sink, "sync", TRUE, "signal-handoffs", TRUE, nullptr);
    VESK_ASSERT(gst_element_link(filter, sink));
    const GstPtr<GstPad> pad(gst_element_get_static_pad(filter, "sink"));
    gst_element_add_pad(bin, gst_ghost_pad_new("sink", pad.get()));

    const bool isServer = spec.kind == AudioOutputSpec::Tcp;
    std::unique_ptr<RawPlace> place;
    if (isServer)
        place = std::make_unique<RawServer>(spec.host.toStdString(), spec.port);
    else
        place = std::make_unique<RawFifo>(QFile::encodeName(spec.file).toStdString());
    const QString name = isServer ? spec.text().mid(QStringLiteral("tcp:").size()) : spec.file;
    auto *link = new Link {std::move(place), isServer, name, bin};
    g_object_set_data_full(G_OBJECT(sink), "vesk-link", link, &destroyLink);
    g_signal_connect(sink, "handoff", G_CALLBACK(&onBuffer), link);
    return bin;
}
