// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/mpris/MprisProperties.h"

#include "host/mpris/Mpris.h"

#include <QUrl>

namespace {

GVariant *newText(const QString &text)
{
    // One line, and nothing before which a C string would end.
    QString line = text;
    for (QChar &character : line) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char(' ');
    }
    line = line.simplified();
    if (line.size() > Mpris::MaxText) {
        const bool isHalf = line.at(Mpris::MaxText - 1).isHighSurrogate();
        line.truncate(Mpris::MaxText - (isHalf ? 1 : 0));
    }
    const QByteArray utf8 = line.toUtf8();
    return g_variant_new_string(
        g_utf8_validate(utf8.constData(), utf8.size(), nullptr) ? utf8.constData() : "");
}

GVariant *newTexts(const QString &text)
{
    GVariant *const only = newText(text);
    return g_variant_new_array(G_VARIANT_TYPE_STRING, &only, 1);
}

/// Empty if a desktop is not to fetch it.
QByteArray pictureAddress(const QString &address)
{
    const QUrl url(address.left(Mpris::MaxAddress + 1));
    const bool isWeb
        = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!url.isValid() || !isWeb || url.host().isEmpty())
        return {};
    const QByteArray encoded = url.toEncoded();
    return encoded.size() <= Mpris::MaxAddress ? encoded : QByteArray();
}

void add(GVariantBuilder &metadata, const char *name, GVariant *value)
{
    g_variant_builder_add(&metadata, "{sv}", name, value);
}

/// Without a track it is empty.
GVariant *newMetadata(const MprisTrack &track)
{
    GVariantBuilder metadata;
    g_variant_builder_init(&metadata, G_VARIANT_TYPE_VARDICT);
    if (track.number == 0)
        return g_variant_builder_end(&metadata);
    add(metadata, "mpris:trackid",
        g_variant_new_object_path(mprisTrackPath(track.number).constData()));
    if (track.length.count() > 0)
        add(metadata, "mpris:length", g_variant_new_int64(track.length.count()));
    if (const QByteArray picture = pictureAddress(track.artUrl); !picture.isEmpty())
        add(metadata, "mpris:artUrl", g_variant_new_string(picture.constData()));
    add(metadata, "xesam:title", newText(track.title));
    if (!track.artist.isEmpty())
        add(metadata, "xesam:artist", newTexts(track.artist));
    if (!track.album.isEmpty())
        add(metadata, "xesam:album", newText(track.album));
    return g_variant_builder_end(&metadata);
}

const char *statusName(MprisState::Status status)
{
    switch (status) {
    case MprisState::Playing:
        return "Playing";
    case MprisState::Paused:
        return "Paused";
    case MprisState::Stopped:
        break;
    }
    return "Stopped";
}

} // namespace

QByteArray mprisTrackPath(quint64 number)
{
    if (number == 0)
        return "/org/mpris/MediaPlayer2/TrackList/NoTrack";
    return "/org/vesk/play/" + QByteArray::number(number);
}

MprisProperties mprisProperties(const MprisState &state)
{
    MprisProperties properties;
    const auto add = [&](const char *name, GVariant *value) {
        properties.emplace_back(name, MprisValue(g_variant_ref_sink(value)));
    };
    add("PlaybackStatus", g_variant_new_string(statusName(state.status)));
    add("Metadata", newMetadata(state.track));
    add("Volume", g_variant_new_double(state.volume));
    add("CanGoNext", g_variant_new_boolean(state.canGoNext));
    add("CanGoPrevious", g_variant_new_boolean(state.canGoPrevious));
    add("CanPlay", g_variant_new_boolean(state.canPlay));
    add("CanPause", g_variant_new_boolean(state.canPause));
    add("CanSeek", g_variant_new_boolean(state.canSeek));
    return properties;
}
