// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskMediaData.h"

#include "api/values/VeskRoles.h"

namespace {

namespace keys {
VESK_KEY(uri, "uri")
VESK_KEY(mimeType, "mimeType")
VESK_KEY(bitRate, "bitRate")

VESK_KEY(serviceID, "serviceID")
VESK_KEY(genre, "genre")
VESK_KEY(prePlayPath, "prePlayPath")
VESK_KEY(contentPlayContextPath, "contentPlayContextPath")
VESK_KEY(playbackStateChangePath, "playbackStateChangePath")
VESK_KEY(matchingMediaRoles, "matchingMediaRoles")
VESK_KEY(live, "live")
VESK_KEY(alternativeStreams, "alternativeStreams")

VESK_KEY(metaData, "metaData")
VESK_KEY(resources, "resources")
} // namespace keys

} // namespace

QString VeskResource::uri() const
{
    return text(keys::uri());
}

QString VeskResource::mimeType() const
{
    return text(keys::mimeType());
}

int VeskResource::bitRate() const
{
    return number(keys::bitRate());
}

void VeskResource::setUri(const QString &uri)
{
    insert(keys::uri(), uri);
}

void VeskResource::setMimeType(const QString &mimeType)
{
    insert(keys::mimeType(), mimeType);
}

void VeskResource::setBitRate(int bitsPerSecond)
{
    insert(keys::bitRate(), bitsPerSecond);
}

QString VeskMetaData::serviceID() const
{
    return text(keys::serviceID());
}

QString VeskMetaData::genre() const
{
    return text(keys::genre());
}

CMPath VeskMetaData::prePlayPath() const
{
    return CMPath::fromVariant(value(keys::prePlayPath()));
}

CMPath VeskMetaData::contentPlayContextPath() const
{
    return CMPath::fromVariant(value(keys::contentPlayContextPath()));
}

CMPath VeskMetaData::playbackStateChangePath() const
{
    return CMPath::fromVariant(value(keys::playbackStateChangePath()));
}

VeskList<VeskRoles> VeskMetaData::matchingMediaRoles() const
{
    return list(keys::matchingMediaRoles());
}

bool VeskMetaData::live() const
{
    return flag(keys::live());
}

bool VeskMetaData::alternativeStreams() const
{
    return flag(keys::alternativeStreams());
}

void VeskMetaData::setServiceID(const QString &id)
{
    insert(keys::serviceID(), id);
}

void VeskMetaData::setGenre(const QString &genre)
{
    insert(keys::genre(), genre);
}

void VeskMetaData::setPrePlayPath(const CMPath &path)
{
    setPrePlayPath(path.toEncoded());
}

void VeskMetaData::setPrePlayPath(const QString &encodedPath)
{
    insert(keys::prePlayPath(), encodedPath);
}

void VeskMetaData::setContentPlayContextPath(const CMPath &path)
{
    setContentPlayContextPath(path.toEncoded());
}

void VeskMetaData::setContentPlayContextPath(const QString &encodedPath)
{
    insert(keys::contentPlayContextPath(), encodedPath);
}

void VeskMetaData::setPlaybackStateChangePath(const CMPath &path)
{
    insert(keys::playbackStateChangePath(), path.toEncoded());
}

void VeskMetaData::setMatchingMediaRoles(const VeskList<VeskRoles> &roles)
{
    insert(keys::matchingMediaRoles(), roles);
}

void VeskMetaData::setLive(bool live)
{
    insert(keys::live(), live);
}

void VeskMetaData::setAlternativeStreams(bool alternatives)
{
    insert(keys::alternativeStreams(), alternatives);
}

VeskMetaData VeskMediaData::metaData() const
{
    return hash(keys::metaData());
}

VeskList<VeskResource> VeskMediaData::resources() const
{
    return list(keys::resources());
}

VeskResource VeskMediaData::activeResource() const
{
    const VeskList<VeskResource> all = resources();
    return all.isEmpty() ? VeskResource() : all.first();
}

void VeskMediaData::setMetaData(const VeskMetaData &metaData)
{
    insert(keys::metaData(), metaData);
}

void VeskMediaData::setResources(const VeskList<VeskResource> &resources)
{
    insert(keys::resources(), resources);
}
