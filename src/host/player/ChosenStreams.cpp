#include "host/player/ChosenStreams.h"

#include "api/core/log.h"
#include "api/web/VeskJson.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

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
    , m_file(folder.isEmpty() ? QString() : folder + QStringLiteral("/streams.json"))
{
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
    if (!m_file.isEmpty() && !write())
        VESK_WARN("The chosen streams cannot be kept in " << m_file);
}

void ChosenStreams::read()
{
    QFile file(m_file);
    // What is no regular file could block, or never end.
    if (m_file.isEmpty() || !QFileInfo(m_file).isFile() || !file.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = file.read(MaxSize + 1);
    VeskError error;
    const QVariant content = bytes.size() > MaxSize ? QVariant() : VeskJson::parse(bytes, error);
    const QVariantList choices = content.toHash().value(choicesKey()).toList();
    for (const QVariant &entry : choices) {
        const QVariantHash choice = entry.toHash();
        const CMPath station = CMPath::fromVariant(choice.value(stationKey()));
        const CMPath stream = CMPath::fromVariant(choice.value(streamKey()));
        if (m_choices.size() < MaxStations && !station.isEmpty() && !stream.isEmpty())
            m_choices.append({station, stream});
    }
    if (choices.isEmpty())
        VESK_WARN("There are no chosen streams in " << m_file);
}

bool ChosenStreams::write() const
{
    QVariantList choices;
    for (const Choice &choice : m_choices) {
        choices.append(QVariantHash {
            {stationKey(), choice.first.toEncoded()}, {streamKey(), choice.second.toEncoded()}});
    }
    const QByteArray bytes = VeskJson::write(QVariantHash {{choicesKey(), choices}}) + '\n';
    QSaveFile file(m_file);
    // commit() alone does not see that a full disk took nothing.
    return QDir().mkpath(m_folder) && file.open(QIODevice::WriteOnly)
        && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)
        && file.write(bytes) == bytes.size() && file.flush() && file.commit();
}
