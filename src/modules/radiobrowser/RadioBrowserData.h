// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"

#include <QByteArray>
#include <QStringList>
#include <QVariantList>

#include <optional>

/// \file
/// What the directory's answers hold (https://docs.radio-browser.info). Anyone can enter a
/// station, so nothing is trusted: texts are cut and put on one line, addresses have to be http or
/// https, and numbers may come as texts. Values and pure functions, any thread.

/// A station, as /json/stations/search lists it.
class RadioBrowserStation : public VeskHash {
public:
    using VeskHash::VeskHash;
    RadioBrowserStation() = default;

    /// The station's id in its usual form; empty when it is no UUID.
    QString uuid() const;
    QString name() const;
    /// Where its stream is: as the directory resolved it, else as it was entered.
    QString streamUrl() const;
    QString mimeType() const;
    /// In bit/s; 0 when it is not known.
    int bitRate() const;
    QString icon() const;
    /// The first of its tags.
    QStringList tags() const;
    /// What a listener would like to know: "MP3, 128 kbit/s, Germany, jazz".
    QString description() const;

    /// The fields that this class reads, as they are kept: with what is not trusted cut off.
    QVariantHash kept() const;

    /// Whether there is an id to tell it by and a stream to play.
    bool isPlayable() const { return !uuid().isEmpty() && !streamUrl().isEmpty(); }
};

/// A country, language, tag or codec, as /json/countries and its like list them.
class RadioBrowserCategory : public VeskHash {
public:
    using VeskHash::VeskHash;
    RadioBrowserCategory() = default;

    QString name() const;
    /// Two capital letters (ISO 3166-1) for a country; empty for all else.
    QString countryCode() const;
    int stationCount() const;
};

/// The objects in the list that \a json holds, at most \a most; all else in the list stands as an
/// empty object, so that each keeps its place. Nothing when it is no list.
std::optional<QVariantList> radioBrowserEntries(const QByteArray &json, int most);

/// \a text on one line, without control characters, cut at \a longest.
QString radioBrowserText(const QString &text, int longest);
