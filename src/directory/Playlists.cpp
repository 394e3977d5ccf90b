// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Playlists.h"

namespace directory {

namespace {

std::string escaped(const std::string &text)
{
    std::string out;
    for (const char c : text) {
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '"')
            out += "&quot;";
        else
            out += c;
    }
    return out;
}

std::string m3u(const std::vector<PlaylistEntry> &entries)
{
    std::string text = "#EXTM3U\n";
    for (const PlaylistEntry &entry : entries)
        text += "#EXTINF:-1," + entry.title + '\n' + entry.address + '\n';
    return text;
}

std::string pls(const std::vector<PlaylistEntry> &entries)
{
    std::string text = "[playlist]\nNumberOfEntries=" + std::to_string(entries.size()) + '\n';
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        text.append("File").append(number).append("=").append(entries[i].address);
        text.append("\nTitle").append(number).append("=").append(entries[i].title);
        text.append("\nLength").append(number).append("=-1\n");
    }
    return text + "Version=2\n";
}

std::string asx(const std::vector<PlaylistEntry> &entries)
{
    std::string text = "<ASX version=\"3.0\">\n";
    for (const PlaylistEntry &entry : entries)
        text += "  <Entry>\n    <Title>" + escaped(entry.title) + "</Title>\n    <Ref HREF=\""
            + escaped(entry.address) + "\"/>\n  </Entry>\n";
    return text + "</ASX>\n";
}

std::string xspf(const std::vector<PlaylistEntry> &entries)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\">\n  <trackList>\n";
    for (const PlaylistEntry &entry : entries)
        text += "    <track>\n      <location>" + escaped(entry.address)
            + "</location>\n      <title>" + escaped(entry.title) + "</title>\n    </track>\n";
    return text + "  </trackList>\n</playlist>\n";
}

} // namespace

std::string playlistText(const std::string &kind, const std::vector<PlaylistEntry> &entries)
{
    if (kind == "pls")
        return pls(entries);
    if (kind == "asx")
        return asx(entries);
    return kind == "xspf" ? xspf(entries) : m3u(entries);
}

std::string playlistType(const std::string &kind)
{
    if (kind == "pls")
        return "audio/x-scpls";
    if (kind == "asx")
        return "video/x-ms-asf";
    if (kind == "xspf")
        return "application/xspf+xml";
    return kind == "m3u8" ? "application/vnd.apple.mpegurl" : "audio/x-mpegurl";
}

} // namespace directory
