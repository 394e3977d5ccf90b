// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"
#include "api/values/VeskList.h"

/// The head of a directory's response. Numbers and booleans read as text.
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

/// An element of a directory's response: an outline, stream, station, show or topic. The accessors
/// read the response's JSON keys; numbers and booleans read as text, anything else as empty.
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
    /// Key "URL", which outlines have.
    QString url() const;
    /// Key "url", which streams have.
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
    /// A single object instead of a list reads as a list with that one element.
    VeskList<VeskTuneInBodyElement> children() const;

    void setElement(const QString &element);
    void setKey(const QString &key);
    void setText(const QString &text);
    void setType(const QString &type);
    void setUrl(const QString &url);
};

/// A directory's whole response: "head" and "body". Printed with passwords and session ids as
/// "***".
class VESK_API VeskTuneInResponse : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskTuneInResponse() = default;
    VeskTuneInResponse(const VeskHash &hash)
        : VeskHash(hash)
    {
    }

    VeskTuneInHead head() const;
    /// Empty when there is none; a single object instead of a list reads as a list with that one
    /// element.
    VeskList<VeskTuneInBodyElement> body() const;
};
