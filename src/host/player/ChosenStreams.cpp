// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/ChosenStreams.h"

#include "api/core/log.h"
#include "api/web/VeskJson.h"

#include <QFile>

#include <algorithm>

VESK_LOGGER("Player")

namespace {

const QString &choicesKey()
{
    static const QString key = QStringLiteral("chosenStreams");
    return key;
}

const QString &stationKey()
{
    static const QString key = QStringLiteral("station");
    return key;
}

const QString &streamKey()
{
    static const QString key = QStringLiteral("stream");
    return key;
}

} // namespace

ChosenStreams::ChosenStreams(const QString &folder)
    : m_folder(folder)
    , m_name(folder.isEmpty() ? QString() : folder + QStringLiteral("/streams.json"))
    , m_file(QFile::encodeName(m_name).toStdString(), MaxSize)
{
    if (!m_name.isEmpty())
        read();
}

CMPath ChosenStreams::streamOf(const CMPath &station) const
{
    const auto found = std::find_if(m_choices.begin(), m_choices.end(),
        [&station](const Choice &choice) { return choice.first == station; });
    return found == m_choices.end() ? CMPath() : found->second;
}

void ChosenStreams::remember(const CMPath &station, const CMPath &stream)
{
    const Choice choice(station, stream);
    if (station.isEmpty() || stream.isEmpty() || m_choices.value(0) == choice)
        return;
    m_choices.erase(std::remove_if(m_choices.begin(), m_choices.end(),
                        [&station](const Choice &other) { return other.first == station; }),
        m_choices.end());
    m_choices.prepend(choice);
    m_choices = m_choices.mid(0, MaxStations);
    if (m_name.isEmpty())
        return;
    if (const auto written = write(); !written)
        VESK_WARN(
            "The chosen streams cannot be kept in " << m_name << ": " << written.error().text);
}

void ChosenStreams::read()
{
    m_file.removeLeftovers();
    const auto content = m_file.read();
    if (content && !*content)
        return;
    VeskError error;
    const QByteArray bytes = content ? QByteArray::fromStdString(**content) : QByteArray();
    const QVariant choices = VeskJson::parse(bytes, error).toHash().value(choicesKey());
    if (choices.userType() != QMetaType::QVariantList) {
        const auto aside = m_file.setAside();
        VESK_WARN("The chosen streams in " << m_name << " cannot be read"
                                           << (aside ? "; the file is now " + *aside : "."));
        return;
    }
    const QVariantList list = choices.toList();
    for (const QVariant &entry : list) {
        const QVariantHash choice = entry.toHash();
        const CMPath station = CMPath::fromVariant(choice.value(stationKey()));
        const CMPath stream = CMPath::fromVariant(choice.value(streamKey()));
        if (m_choices.size() < MaxStations && !station.isEmpty() && !stream.isEmpty())
            m_choices.append({station, stream});
    }
}

Result<void, files::Problem> ChosenStreams::write()
{
    QVariantList choices;
    for (const Choice &choice : std::as_const(m_choices)) {
        choices.append(QVariantHash {
            {stationKey(), choice.first.toEncoded()}, {streamKey(), choice.second.toEncoded()}});
    }
    const QByteArray bytes = VeskJson::write(QVariantHash {{choicesKey(), choices}}) + '\n';
    if (auto made = files::KeptFile::makeFolder(QFile::encodeName(m_folder).toStdString()); !made)
        return made;
    return m_file.write(bytes.toStdString());
}
