// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"
#include "api/values/VeskList.h"

/// The head of a directory answer. Numbers and booleans read as their text.
class VESK_API VeskTuneInHead : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskTuneInHead() = default;

    /// "200" is success.
    QString status() const;
    QString title() const;
    QString fault() const;
    QString faultCode() const;
};

/// One element of a directory answer: an outline, stream, station, show or topic. Accessors read
/// the answer's JSON keys; numbers and booleans read as their text, anything else as empty.
class VESK_API VeskTuneInBodyElement : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskTuneInBodyElement() = default;
    VeskTuneInBodyElement(const VeskHash &hash)
        : VeskHash(hash)
    {
    }

    QString element() const;
    QString type() const;
    QString text() const;
    QString subtext() const;
    /// Key "URL", as outlines carry it.
    QString url() const;
    /// Key "url", as streams carry it.
    QString urlAlternative() const;
    QString key() const;
    QString guideId() const;
    QString genreId() const;
    QString stationId() const;
    QString image() const;
    QString item() const;
    QString isPreset() const;
    QString isDefault() const;
    QString bitrate() const;
    QString playlist_type() const;
    QString accountId() const;
    QString userName() const;
    QString firstName() const;
    QString lastName() const;
    QString email() const;
    QString sessionId() const;
    /// A single object in place of a list reads as a list of one.
    VeskList<VeskTuneInBodyElement> children() const;

    void setElement(const QString &element);
    void setKey(const QString &key);
    void setText(const QString &text);
    void setType(const QString &type);
    void setUrl(const QString &url);
};

/// A whole directory answer: "head" and "body". Prints with passwords and session ids as "***".
class VESK_API VeskTuneInResponse : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskTuneInResponse() = default;
    VeskTuneInResponse(const VeskHash &hash)
        : VeskHash(hash)
    {
    }

    VeskTuneInHead head() const;
    /// Empty when there is none; a single object in place of a list reads as a list of one.
    VeskList<VeskTuneInBodyElement> body() const;
};
