// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "media/Decoders.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 25> AllowedElements {// source
    "appsrc",
    // demuxers of tags and containers
    "apedemux", "id3demux", "oggdemux", "qtdemux", "tsdemux", "tsparse",
    // parsers
    "aacparse", "flacparse", "mpegaudioparse", "oggparse", "opusparse", "vorbisparse",
    // decoders
    "avdec_aac", "avdec_aac_latm", "avdec_mp3", "avdec_mp3float", "faad", "fdkaacdec", "flacdec",
    "mad", "mpg123audiodec", "opusdec", "vorbisdec",
    // autoplugging
    "decodebin"};

constexpr std::array<std::string_view, 11> AllowedTypes {"application/ogg", "application/x-3gp",
    "application/x-apetag", "application/x-id3v1", "application/x-id3v2", "audio/aac", "audio/mpeg",
    "audio/x-flac", "audio/x-m4a", "video/mpegts", "video/quicktime"};

template <class Names>
bool contains(const Names &names, const char *name)
{
    return std::find(names.begin(), names.end(), std::string_view(name)) != names.end();
}

/// Whether an element parses or fetches media data by itself; converters and sinks do not.
bool interpretsStreams(GstElementFactory *factory)
{
    constexpr GstElementFactoryListType Kinds = GST_ELEMENT_FACTORY_TYPE_DECODER
        | GST_ELEMENT_FACTORY_TYPE_DEMUXER | GST_ELEMENT_FACTORY_TYPE_PARSER
        | GST_ELEMENT_FACTORY_TYPE_DEPAYLOADER | GST_ELEMENT_FACTORY_TYPE_DECRYPTOR
        | GST_ELEMENT_FACTORY_TYPE_SRC;
    return gst_element_factory_list_is_type(factory, Kinds);
}

/// Removes the features of \a type for which \a keep returns false from the registry.
template <class Keep>
void removeFeatures(GType type, Keep keep)
{
    GstRegistry *registry = gst_registry_get();
    GList *features = gst_registry_get_feature_list(registry, type);
    for (GList *at = features; at; at = at->next) {
        auto *feature = GST_PLUGIN_FEATURE(at->data);
        if (!keep(feature))
            gst_registry_remove_feature(registry, feature);
    }
    gst_plugin_feature_list_free(features);
}

} // namespace

bool isAllowedDecoder(GstElementFactory *factory)
{
    return contains(AllowedElements, GST_OBJECT_NAME(factory));
}

void keepAllowedDecodersOnly()
{
    removeFeatures(GST_TYPE_ELEMENT_FACTORY, [](GstPluginFeature *feature) {
        GstElementFactory *factory = GST_ELEMENT_FACTORY(feature);
        return isAllowedDecoder(factory) || !interpretsStreams(factory);
    });
    removeFeatures(GST_TYPE_TYPE_FIND_FACTORY,
        [](GstPluginFeature *finder) { return contains(AllowedTypes, GST_OBJECT_NAME(finder)); });
}
