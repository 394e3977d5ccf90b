// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskHash.h"
#include "api/values/VeskList.h"

/// One way to get at the audio of an item. Hash entries are named like the accessors.
class VESK_API VeskResource : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskResource() = default;

    QString uri() const;
    QString mimeType() const;
    /// In bit/s; 0 when it is not known.
    int bitRate() const;

    void setUri(const QString &uri);
    void setMimeType(const QString &mimeType);
    void setBitRate(int bitsPerSecond);
};

class VeskRoles;

/// What the player must know about an item beside its audio: whose it is, what to run before it
/// plays, where to report. Paths are kept in their text form. Hash entries are named like the
/// accessors.
class VESK_API VeskMetaData : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskMetaData() = default;

    QString serviceID() const;
    QString genre() const;
    /// Where the player sends the item's roles before it plays it.
    CMPath prePlayPath() const;
    /// The context menu of the item while it plays.
    CMPath contentPlayContextPath() const;
    /// Where the player reports what it does with the item.
    CMPath playbackStateChangePath() const;
    /// Roles by which a row is recognised as the one that plays.
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

/// The playable side of a row: its meta data ("metaData") and resources ("resources"), best first.
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
    /// The resource that plays: the first. Empty when there is none.
    VeskResource activeResource() const;

    void setMetaData(const VeskMetaData &metaData);
    void setResources(const VeskList<VeskResource> &resources);
};
