// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInResponse.h"
#include "api/web/VeskJson.h"
#include "fuzz/fuzzing.h"

#include <sstream>

// The body of a directory's response: parsed, read through all accessors of the response model,
// printed, then written and parsed again.

namespace {

/// The number of characters in all texts of an element and its children.
qint64 readElement(const VeskTuneInBodyElement &element, int depth)
{
    FUZZ_REQUIRE(depth <= VeskJson::MaxDepth);
    qint64 size = 0;
    for (const QString &text : {element.element(), element.type(), element.text(),
             element.subtext(), element.url(), element.urlAlternative(), element.key(),
             element.guideId(), element.genreId(), element.stationId(), element.image(),
             element.item(), element.isPreset(), element.isDefault(), element.bitrate(),
             element.playlist_type(), element.accountId(), element.userName(), element.firstName(),
             element.lastName(), element.email(), element.sessionId()})
        size += text.size();
    const VeskList<VeskTuneInBodyElement> children = element.children();
    for (int i = 0; i < children.size(); ++i)
        size += readElement(children.at(i), depth + 1);
    return size;
}

void readResponse(const VeskTuneInResponse &response)
{
    const VeskTuneInHead head = response.head();
    qint64 size = head.status().size() + head.title().size() + head.fault().size()
        + head.faultCode().size();
    const VeskList<VeskTuneInBodyElement> body = response.body();
    for (int i = 0; i < body.size(); ++i)
        size += readElement(body.at(i), 1);
    std::ostringstream out;
    out << response;
    FUZZ_REQUIRE(size >= 0 && !out.str().empty());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray json(reinterpret_cast<const char *>(data), static_cast<int>(size));
    VeskError error;
    unsigned int position = 0;
    const QVariant value = VeskJson::parse(json, error, &position);
    if (!error.isEmpty()) {
        FUZZ_REQUIRE(!value.isValid() && position <= size && !error.message().isEmpty());
        return 0;
    }
    readResponse(VeskTuneInResponse(value.toHash()));

    const QByteArray written = VeskJson::write(value);
    const QVariant again = VeskJson::parse(written, error);
    FUZZ_REQUIRE(error.isEmpty());
    FUZZ_REQUIRE(VeskJson::write(again) == written);
    return 0;
}
