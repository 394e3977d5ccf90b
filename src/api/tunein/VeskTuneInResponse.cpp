// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInResponse.h"

namespace {

namespace keys {
VESK_KEY(head, "head")
VESK_KEY(body, "body")

VESK_KEY(status, "status")
VESK_KEY(title, "title")
VESK_KEY(fault, "fault")
VESK_KEY(faultCode, "fault_code")

VESK_KEY(element, "element")
VESK_KEY(type, "type")
VESK_KEY(text, "text")
VESK_KEY(subtext, "subtext")
VESK_KEY(url, "URL")
VESK_KEY(urlAlternative, "url")
VESK_KEY(key, "key")
VESK_KEY(guideId, "guide_id")
VESK_KEY(genreId, "genre_id")
VESK_KEY(stationId, "station_id")
VESK_KEY(image, "image")
VESK_KEY(item, "item")
VESK_KEY(isPreset, "is_preset")
VESK_KEY(isDefault, "is_default")
VESK_KEY(bitrate, "bitrate")
VESK_KEY(playlist_type, "playlist_type")
VESK_KEY(accountId, "account_id")
VESK_KEY(userName, "user_name")
VESK_KEY(firstName, "first_name")
VESK_KEY(lastName, "last_name")
VESK_KEY(email, "email")
VESK_KEY(sessionId, "session_id")
VESK_KEY(children, "children")
} // namespace keys

} // namespace

QString VeskTuneInHead::status() const
{
    return text(keys::status());
}

QString VeskTuneInHead::title() const
{
    return text(keys::title());
}

QString VeskTuneInHead::fault() const
{
    return text(keys::fault());
}

QString VeskTuneInHead::faultCode() const
{
    return text(keys::faultCode());
}

QString VeskTuneInBodyElement::element() const
{
    return VeskHash::text(keys::element());
}

QString VeskTuneInBodyElement::type() const
{
    return VeskHash::text(keys::type());
}

QString VeskTuneInBodyElement::text() const
{
    return VeskHash::text(keys::text());
}

QString VeskTuneInBodyElement::subtext() const
{
    return VeskHash::text(keys::subtext());
}

QString VeskTuneInBodyElement::url() const
{
    return VeskHash::text(keys::url());
}

QString VeskTuneInBodyElement::urlAlternative() const
{
    return VeskHash::text(keys::urlAlternative());
}

QString VeskTuneInBodyElement::key() const
{
    return VeskHash::text(keys::key());
}

QString VeskTuneInBodyElement::guideId() const
{
    return VeskHash::text(keys::guideId());
}

QString VeskTuneInBodyElement::genreId() const
{
    return VeskHash::text(keys::genreId());
}

QString VeskTuneInBodyElement::stationId() const
{
    return VeskHash::text(keys::stationId());
}

QString VeskTuneInBodyElement::image() const
{
    return VeskHash::text(keys::image());
}

QString VeskTuneInBodyElement::item() const
{
    return VeskHash::text(keys::item());
}

QString VeskTuneInBodyElement::isPreset() const
{
    return VeskHash::text(keys::isPreset());
}

QString VeskTuneInBodyElement::isDefault() const
{
    return VeskHash::text(keys::isDefault());
}

QString VeskTuneInBodyElement::bitrate() const
{
    return VeskHash::text(keys::bitrate());
}

QString VeskTuneInBodyElement::playlist_type() const
{
    return VeskHash::text(keys::playlist_type());
}

QString VeskTuneInBodyElement::accountId() const
{
    return VeskHash::text(keys::accountId());
}

QString VeskTuneInBodyElement::userName() const
{
    return VeskHash::text(keys::userName());
}

QString VeskTuneInBodyElement::firstName() const
{
    return VeskHash::text(keys::firstName());
}

QString VeskTuneInBodyElement::lastName() const
{
    return VeskHash::text(keys::lastName());
}

QString VeskTuneInBodyElement::email() const
{
    return VeskHash::text(keys::email());
}

QString VeskTuneInBodyElement::sessionId() const
{
    return VeskHash::text(keys::sessionId());
}

VeskList<VeskTuneInBodyElement> VeskTuneInBodyElement::children() const
{
    return list(keys::children());
}

void VeskTuneInBodyElement::setElement(const QString &element)
{
    insert(keys::element(), element);
}

void VeskTuneInBodyElement::setKey(const QString &key)
{
    insert(keys::key(), key);
}

void VeskTuneInBodyElement::setText(const QString &text)
{
    insert(keys::text(), text);
}

void VeskTuneInBodyElement::setType(const QString &type)
{
    insert(keys::type(), type);
}

void VeskTuneInBodyElement::setUrl(const QString &url)
{
    insert(keys::url(), url);
}

VeskTuneInHead VeskTuneInResponse::head() const
{
    return hash(keys::head());
}

VeskList<VeskTuneInBodyElement> VeskTuneInResponse::body() const
{
    return list(keys::body());
}
