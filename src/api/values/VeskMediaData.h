// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskHash.h"
#include "api/values/VeskList.h"

/// One source of an item's audio. Hash entries are named like the accessors.
class VESK_API VeskResource : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskResource() = default;

    QString uri() const;
    QString mimeType() const;
    /// In bit/s; 0 when unknown.
    int bitRate() const;

    void setUri(const QString &uri);
    void setMimeType(const QString &mimeType);
    void setBitRate(int bitsPerSecond);
};

class VeskRoles;

/// What the player needs to know about an item besides its audio: the service it belongs to, the
/// request to make before playback, the path to report to. Paths are stored in their text form.
/// Hash entries are named like the accessors.
class VESK_API VeskMetaData : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskMetaData() = default;

    QString serviceID() const;
    QString genre() const;
    /// The path to which the player sends the item's roles before playback.
    CMPath prePlayPath() const;
    /// The context menu of the item during playback.
    CMPath contentPlayContextPath() const;
    /// The path to which the player reports state changes of the item.
    CMPath playbackStateChangePath() const;
    /// Roles that identify the row that is playing.
    VeskList<VeskRoles> matchingMediaRoles() const;
    bool live() const;
    bool alternativeStreams() const;

    void setServiceID(const QString &id);
    void setGenre(const QString &genre);
    void setPrePlayPath(const CMPath &path);
    void setPrePlayPath(const QString &encodedPath);
    void setContentPlayContextPath(const CMPath &path);
    void setContentPlayContextPath(const QString &encodedPath);
    void setPlaybackStateChangePath(const CMPath &path);
    void setMatchingMediaRoles(const VeskList<VeskRoles> &roles);
    void setLive(bool live);
    void setAlternativeStreams(bool alternatives);
};

/// The playable part of a row: its metadata ("metaData") and resources ("resources"), best first.
class VESK_API VeskMediaData : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskMediaData() = default;
    VeskMediaData(const VeskHash &hash)
        : VeskHash(hash)
    {
    }

    VeskMetaData metaData() const;
    VeskList<VeskResource> resources() const;
    /// The resource to play: the first one. Empty when there is none.
    VeskResource activeResource() const;

    void setMetaData(const VeskMetaData &metaData);
    void setResources(const VeskList<VeskResource> &resources);
};
