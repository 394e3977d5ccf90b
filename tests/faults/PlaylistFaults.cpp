// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Fault.h"

using namespace script;

namespace {

Script healthy()
{
    return {head(), live(media::mp3())};
}

/// A playlist at "/", a good stream at "/good".
Site listing(const QByteArray &text, const char *type = "audio/x-mpegurl")
{
    return {{{"/", {{answer(200, text, type)}}}, {"/good", {healthy()}}}};
}

Site withPage(Site site, const QByteArray &path, const Script &script)
{
    site.pages[path] = {script};
    return site;
}

} // namespace

std::vector<Fault> playlistFaults()
{
    return {
        {"a playlist in itself", told("never lead").within(5), 40,
            [] { return listing("#EXTM3U\nhttp://radio.test/\n"); }, true},
        {"playlists six deep", told("never lead").within(5), 40,
            [] {
                Site site = listing("http://radio.test/1\n");
                for (int i = 1; i <= 6; ++i) {
                    const QByteArray next = i < 6 ? QByteArray::number(i + 1) : QByteArray("good");
                    site = withPage(std::move(site), "/" + QByteArray::number(i),
                        {answer(200, "http://radio.test/" + next + "\n")});
                }
                return site;
            }},
        {"a playlist of 10,000 dead entries", told(".").connecting(51), 40,
            [] {
                QByteArray list;
                for (int i = 0; i < 10000; ++i)
                    list += "http://radio.test/gone/" + QByteArray::number(i) + "\n";
                return listing(list);
            }},
        {"a playlist whose first entry says nothing", sounds().within(6), 15,
            [] {
                return withPage(listing("http://radio.test/silent\nhttp://radio.test/good\n"),
                    "/silent", {stall()});
            }},
        {"a playlist whose first entry sends only a head", sounds().within(6), 15,
            [] {
                return withPage(listing("http://radio.test/silent\nhttp://radio.test/good\n"),
                    "/silent", {head(), stall()});
            }},
        {"a playlist whose first three entries say nothing", sounds().within(14), 25,
            [] {
                Site site = listing("http://radio.test/a\nhttp://radio.test/b\n"
                                    "http://radio.test/c\nhttp://radio.test/good\n");
                for (const char *path : {"/a", "/b", "/c"})
                    site = withPage(std::move(site), path, {stall()});
                return site;
            }},
        {"a playlist whose first entry refuses", sounds().within(3), 8,
            [] { return listing("http://refused.test/\nhttp://radio.test/good\n"); }, true},
        {"a playlist whose first entry is a web page", sounds().within(3), 8,
            [] {
                return withPage(listing("http://radio.test/page\nhttp://radio.test/good\n"),
                    "/page", {answer(200, "<html><body>Hello</body></html>", "text/html")});
            }},
        {"a PLS file with everything wrong", sounds().within(3), 8,
            [] {
                return listing("numberofentries=99\nTitle1=x\n file7 = http://radio.test/good \n"
                               "Length1=\nFile=\nVersion",
                    "audio/x-scpls");
            },
            true},
        {"an XSPF file that ends in a tag", sounds().within(3), 8,
            [] {
                return listing("<?xml version='1.0'?><playlist><trackList><track><location>"
                               "http://radio.test/good</location></track><track><locat",
                    "application/xspf+xml");
            }},
        {"an ASX file that is no XML", sounds().within(3), 8,
            [] {
                return listing("<ASX VERSION=3><TITLE>A & B<entry><REF HREF=\"http://radio.test/"
                               "good\"><entry>",
                    "video/x-ms-asf");
            }},
        {"a playlist with files and other protocols before the stream", sounds().within(3), 8,
            [] {
                return listing("#EXTM3U\nfile:///etc/passwd\nudp://239.0.0.1:5000\n"
                               "rtsp://radio.test/x\nhttp://radio.test/good\n");
            }},
        {"a playlist with nothing but files", told("no stream|no longer|404"), 40,
            [] { return listing("#EXTM3U\nfile:///etc/passwd\nfile:///etc/hostname\n"); }},
        {"an empty playlist", told("no stream|nothing"), 40, [] { return listing("#EXTM3U\n"); }},
        {"a playlist that trickles", sounds().within(15), 25,
            [] {
                return Site {
                    {{"/",
                         {{head("audio/x-mpegurl"),
                             [](Line &line) {
                                 const QByteArray list = "http://radio.test/good\n";
                                 for (const char character : list) {
                                     if (!line.send(QByteArray(1, character)) || !line.wait(0.2))
                                         return false;
                                 }
                                 return true;
                             }}}},
                        {"/good", {healthy()}}}};
            }},
        {"the stream behind a playlist moves", sounds(), 20,
            [] {
                return Site {{{"/",
                                  {{answer(200, "http://radio.test/old\n")},
                                      {answer(200, "http://radio.test/good\n")}}},
                    {"/old", {{head(), live(media::mp3(), 8), close()}, {answer(404)}}},
                    {"/good", {healthy()}}}};
            },
            true},
    };
}
