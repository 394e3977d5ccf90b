// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamFormats.h"

#include "media/Decoders.h"
#include "media/GstHandles.h"
#include "media/NeededPlugins.h"
#include "plugin/runtime/HostFolders.h"

#include <QFile>
#include <QStringList>

namespace {

/// Whether an allowed element of \a kind with these \a caps on its sink pad is installed.
bool hasElement(GstElementFactoryListType kind, const char *caps)
{
    GList *all = gst_element_factory_list_get_elements(kind, GST_RANK_MARGINAL);
    const GstPtr<GstCaps> wanted(gst_caps_from_string(caps));
    GList *fitting = gst_element_factory_list_filter(all, wanted.get(), GST_PAD_SINK, FALSE);
    bool found = false;
    for (GList *at = fitting; at; at = at->next)
        found |= isAllowedDecoder(GST_ELEMENT_FACTORY(at->data));
    gst_plugin_feature_list_free(fitting);
    gst_plugin_feature_list_free(all);
    return found;
}

bool decodes(const char *caps)
{
    return hasElement(GST_ELEMENT_FACTORY_TYPE_DECODER, caps);
}

bool unpacks(const char *caps)
{
    return hasElement(GST_ELEMENT_FACTORY_TYPE_DEMUXER, caps);
}

} // namespace

bool useRadioPluginsOnly()
{
    const QString cache = HostFolders::cache();
    return !cache.isEmpty()
        && useNeededPluginsOnly(
            QFile::encodeName(cache + QStringLiteral("/gstreamer")).toStdString());
}

QString decodableFormats()
{
    startGStreamer();
    QStringList formats;
    const auto add = [&formats](const char *name, bool decodable) {
        if (decodable)
            formats.append(QString::fromLatin1(name));
    };
    const bool ogg = unpacks("application/ogg");
    const bool aac = decodes("audio/mpeg, mpegversion=(int)4");
    add("mp3", decodes("audio/mpeg, mpegversion=(int)1, layer=(int)3"));
    add("aac", aac);
    add("ogg", ogg && decodes("audio/x-vorbis"));
    add("opus", ogg && decodes("audio/x-opus"));
    add("flac", decodes("audio/x-flac"));
    add("hls", aac && unpacks("video/mpegts"));
    return formats.join(QLatin1Char(','));
}
