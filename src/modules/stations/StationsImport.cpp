// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsImport.h"

#include "modules/stations/StationsFormats.h"
#include "modules/stations/StationsScreens.h"

#include <algorithm>
#include <optional>

namespace {

QString key(const char *name)
{
    return QString::fromLatin1(name);
}

CMError error(const char *text)
{
    return CMError(stationsTr(text));
}

/// Nothing for what is no base64 or too much of it.
std::optional<QByteArray> decoded(const QVariant &data)
{
    constexpr int MaxCharacters = (StationsImport::MaxPartBytes + 2) / 3 * 4;
    if (data.userType() != QMetaType::QString || data.toString().size() > MaxCharacters)
        return std::nullopt;
    const auto result = QByteArray::fromBase64Encoding(
        data.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!result)
        return std::nullopt;
    return *result;
}

} // namespace

StationsImport::StationsImport(StationsList *list, QObject *parent)
    : QObject(parent)
    , m_list(list)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &StationsImport::forgetAbandoned);
}

StationsImport::Uploads::iterator StationsImport::find(const QString &id)
{
    return std::find_if(m_uploads.begin(), m_uploads.end(),
        [&id](const Upload &upload) { return upload.id == id; });
}

void StationsImport::forgetAbandoned()
{
    const Clock::time_point now = Clock::now();
    m_uploads.erase(
        std::remove_if(m_uploads.begin(), m_uploads.end(),
            [this, now](const Upload &upload) { return now - upload.last >= m_forgetAfter; }),
        m_uploads.end());
    // So that what is left is forgotten, too.
    if (!m_uploads.empty())
        m_timer.start(m_forgetAfter + std::chrono::milliseconds(1));
}

void StationsImport::take(const CMSetDataRequest &request)
{
    forgetAbandoned();
    const QVariantHash part = request.value().toHash();
    const QString id = part.value(key("id")).toString();
    const auto bytes = decoded(part.value(key("data")));
    const CMError failure = bytes
        ? append(part, *bytes)
        : error(QT_TRANSLATE_NOOP("Stations", "The part of the file cannot be read."));
    const auto upload = find(id);
    if (!failure.isEmpty()) {
        if (upload != m_uploads.end())
            m_uploads.erase(upload);
        return request.reply().setError(failure);
    }
    if (upload->next < upload->parts) {
        m_timer.start(m_forgetAfter + std::chrono::milliseconds(1));
        return request.reply().setValue(QVariant());
    }
    const QByteArray whole = std::move(upload->bytes);
    m_uploads.erase(upload);
    finish(whole, request.reply());
}

CMError StationsImport::append(const QVariantHash &part, const QByteArray &bytes)
{
    const QString id = part.value(key("id")).toString();
    bool isNumbered = false;
    const int number = part.value(key("part")).toInt(&isNumbered);
    const int parts = part.value(key("parts")).toInt();
    if (!isNumbered || id.isEmpty() || id.size() > MaxIdLength || parts < 1 || parts > MaxParts)
        return error(QT_TRANSLATE_NOOP("Stations", "The part of the file cannot be read."));
    auto upload = find(id);
    if (number == 0) {
        if (upload != m_uploads.end())
            m_uploads.erase(upload);
        if (m_uploads.size() >= MaxUploads) {
            return error(QT_TRANSLATE_NOOP(
                "Stations", "Other files are being imported. Please try again in a minute."));
        }
        upload = m_uploads.insert(m_uploads.end(), {id, parts});
    } else if (upload == m_uploads.end() || number != upload->next || parts != upload->parts) {
        return error(
            QT_TRANSLATE_NOOP("Stations", "The file did not arrive completely. Please try again."));
    }
    if (upload->bytes.size() + bytes.size() > StationsLimits::Bytes)
        return error(QT_TRANSLATE_NOOP("Stations", "The file is larger than 1 MiB."));
    upload->bytes.append(bytes);
    upload->last = Clock::now();
    ++upload->next;
    return {};
}

void StationsImport::finish(const QByteArray &bytes, const CMReply<QVariant> &reply)
{
    const StationsFile file = readStations(bytes);
    if (!file.error.isEmpty())
        return reply.setError(CMError(file.error));
    m_list->merge(file.entries,
        [reply, skipped = file.skippedCount(), why = stationsSkipped(file)](
            const CMError &error, int added, int known) {
            if (!error.isEmpty())
                return reply.setError(error);
            reply.setValue(QVariantHash {{key("added"), added}, {key("known"), known},
                {key("skipped"), skipped}, {key("message"), why}});
        });
}
