// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "media/NeededPlugins.h"

#include <cstdlib>
#include <string>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// Those that have the allowed decoders and their parsers (Decoders.cpp), the elements that the
/// host and the decoder process name, and the sinks that autoaudiosink may choose.
constexpr const char *Needed[]
    = {"alsa", "apetag", "app", "audioconvert", "audioparsers", "audioresample", "autodetect",
        "coreelements", "faad", "fdkaac", "flac", "id3demux", "isomp4", "jack", "libav", "mad",
        "mpegtsdemux", "mpg123", "ogg", "openal", "opus", "opusparse", "oss4", "ossaudio",
        "pipewire", "playback", "pulseaudio", "typefindfunctions", "volume", "vorbis", "wavenc"};

constexpr const char *SystemPath = "GST_PLUGIN_SYSTEM_PATH_1_0";
constexpr const char *Registry = "GST_REGISTRY_1_0";

/// Names without a version are read, too, where one with it is not set.
bool isDecided()
{
    for (const char *name :
        {SystemPath, "GST_PLUGIN_SYSTEM_PATH", Registry, "GST_REGISTRY", "GST_REGISTRY_DISABLE"}) {
        if (std::getenv(name))
            return true;
    }
    return false;
}

/// Makes \a link lead to \a target, whether or not that exists. Another process may do the same.
bool makeLink(const fs::path &link, const fs::path &target)
{
    std::error_code error;
    if (fs::read_symlink(link, error) == target)
        return true;
    fs::remove(link, error);
    fs::create_symlink(target, link, error);
    return !error || fs::read_symlink(link, error) == target;
}

} // namespace

bool useNeededPluginsOnly(const fs::path &folder)
{
    if (isDecided())
        return true;
    const fs::path installed = VESK_GSTREAMER_PLUGINS;
    const fs::path links = folder / "plugins";
    std::error_code error;
    // On a machine that has them elsewhere the links would lead nowhere.
    if (!fs::exists(installed / "libgstcoreelements.so", error))
        return false;
    fs::create_directories(links, error);
    if (error)
        return false;
    fs::permissions(folder, fs::perms::owner_all, error);
    for (const char *name : Needed) {
        const std::string file = std::string("libgst") + name + ".so";
        if (!makeLink(links / file, installed / file))
            return false;
    }
    ::setenv(SystemPath, links.c_str(), 1);
    ::setenv(Registry, (folder / "registry.bin").c_str(), 1);
    return true;
}
