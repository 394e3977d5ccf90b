// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/RowText.h"

#include "api/values/VeskMediaData.h"
#include "api/values/VeskPlayLogicData.h"
#include "api/values/VeskValue.h"
#include "api/web/VeskJson.h"
#include "ctl/HostSession.h"

#include <algorithm>

namespace {

constexpr int IndexWidth = 4;
/// Number, blank, mark, blank.
constexpr int HeadWidth = IndexWidth + 3;
constexpr int Gap = 2;
/// Below this width there is too little space for two columns.
constexpr int MinColumns = 60;

struct Kind {
    int type;
    const char *mark;
    /// For programs; not translated.
    const char *name;
};

constexpr Kind Kinds[] {
    {VeskRolesType::container, ">", "folder"},
    {VeskRolesType::header, "#", "heading"},
    {VeskRolesType::audio, "\u266a", "audio"},
    {VeskRolesType::value, "=", "value"},
    {VeskRolesType::query, "?", "search"},
    {VeskRolesType::activate, "!", "action"},
};

Kind kindOf(int type)
{
    const auto *const kind = std::find_if(std::begin(Kinds), std::end(Kinds),
        [type](const Kind &candidate) { return candidate.type == type; });
    return kind == std::end(Kinds) ? Kind {type, " ", "text"} : *kind;
}

QString markOf(const RowText &row)
{
    if (row.played == VeskPlayLogicState::paused)
        return QStringLiteral("\u2016");
    return row.played != 0 ? QStringLiteral("\u25b6") : QString::fromUtf8(kindOf(row.type).mark);
}

/// The path that opens the row: of a query the screen of hits, with a placeholder for the text.
QString openingPath(const VeskRoles &row)
{
    if (row.type() == VeskRolesType::query && !row.queryPath().isEmpty()) {
        CMPath path = row.queryPath();
        path.addParam(row.query(), QStringLiteral("TEXT"));
        return path.toEncoded();
    }
    return row.type() == VeskRolesType::header ? QString() : row.path().toEncoded();
}

QString printable(const QVariant &value)
{
    return printableText(plainText(value));
}

/// Not translated.
QString stateName(int state)
{
    if (state == VeskPlayLogicState::stopped)
        return {};
    return VeskPlayLogicState::toString(static_cast<VeskPlayLogicState::Enum>(state));
}

} // namespace

int playedState(const CMPath &path, int type, const QVariantHash &player)
{
    const CMPath playing = CMPath::fromVariant(player.value(QStringLiteral("path")));
    if (path.isEmpty() || playing.isEmpty() || type != VeskRolesType::audio)
        return 0;
    // A stream that was chosen names the path of its row in a parameter.
    const QString named = playing.param(QStringLiteral("veskMatchingPath"));
    const bool isIt = path == playing || path.toEncoded() == named;
    return isIt ? player.value(QStringLiteral("state")).toInt() : 0;
}

QString playerWord(int state)
{
    switch (state) {
    case VeskPlayLogicState::stopped:
        return ctlText("stopped");
    case VeskPlayLogicState::transitioning:
        // The state lasts until the stream is connected.
        return ctlText("connecting");
    case VeskPlayLogicState::playing:
        return ctlText("playing");
    case VeskPlayLogicState::paused:
        return ctlText("paused");
    default:
        return QString::number(state);
    }
}

const QStringList &rowTextRoles()
{
    static const QStringList roles {VeskRoles::Type(), VeskRoles::Title(), VeskRoles::Description(),
        VeskRoles::Path(), VeskRoles::Query(), VeskRoles::QueryPath(), VeskRoles::Value(),
        VeskRoles::ContainerType()};
    return roles;
}

RowPrinter::RowPrinter(const CtlPlace &place, const QVariantHash &player, bool paths, int width,
    const TerminalStyle &style)
    : m_place(place)
    , m_player(player)
    , m_paths(paths)
    , m_width(width)
    , m_style(style)
{
}

RowText RowPrinter::text(int index, const VeskRoles &row) const
{
    RowText text {index, row.type(), printable(row[VeskRoles::Title()]),
        printable(row[VeskRoles::Description()]), printableText(openingPath(row)),
        playedState(row.path(), row.type(), m_player), row.mediaData().activeResource().bitRate()};
    if (row.type() == VeskRolesType::value) {
        const QString value = printable(row[VeskRoles::Value()]);
        if (m_width > 0)
            text.title += QStringLiteral(": ") + value;
        else
            text.description = value;
    }
    return text;
}

void RowPrinter::markStream(QList<RowText> &rows) const
{
    const int playing = m_player.value(QStringLiteral("bitrate")).toInt();
    const int state = m_player.value(QStringLiteral("state")).toInt();
    RowText *closest = nullptr;
    // Of equally close ones the first: services list the best streams first.
    int least = playing / 10;
    for (RowText &row : rows) {
        if (row.played != 0)
            return;
        const int off = qAbs(row.bitRate - playing);
        if (off >= least || row.bitRate == 0)
            continue;
        least = off;
        closest = &row;
    }
    if (closest)
        closest->played = state;
}

std::string RowPrinter::lines(const QList<RowText> &rows)
{
    if (m_width > 0 && m_titleWidth < 0 && !rows.isEmpty())
        layOut(rows);
    std::string lines;
    for (const RowText &row : rows)
        lines += m_width > 0 ? terminalLine(row) : fields(row);
    return lines;
}

/// Titles get the width that they need, but leave up to two fifths to descriptions.
void RowPrinter::layOut(const QList<RowText> &rows)
{
    int title = 0;
    int description = 0;
    for (const RowText &row : rows) {
        description = qMax(description, textWidth(row.description));
        if (!row.description.isEmpty())
            title = qMax(title, textWidth(row.title));
    }
    const int available = qMax(1, m_width - HeadWidth);
    if (m_width < MinColumns) {
        m_titleWidth = available;
        m_descriptionWidth = available;
        return;
    }
    const int shared = available - Gap;
    m_titleWidth = qMin(title, shared - qMin(description, shared * 2 / 5));
    m_descriptionWidth = shared - m_titleWidth;
}

std::string RowPrinter::terminalLine(const RowText &row) const
{
    const QString number = QString::number(row.index).rightJustified(IndexWidth);
    const bool described = !row.description.isEmpty();
    const QString title
        = elided(row.title, described ? m_titleWidth : qMax(1, m_width - HeadWidth));
    std::string line = m_style.dim(number) + " " + markOf(row).toStdString() + " "
        + (row.played != 0 ? m_style.bold(title) : title.toStdString());
    const std::string description = m_style.dim(elided(row.description, m_descriptionWidth));
    if (described && m_width < MinColumns)
        line += '\n' + std::string(HeadWidth, ' ') + description;
    else if (described)
        line
            += padded(QString(), m_titleWidth - textWidth(title) + Gap).toStdString() + description;
    line += '\n';
    // Never elided: it is there to be copied.
    if (m_paths && !row.path.isEmpty())
        line += std::string(HeadWidth, ' ') + m_style.dim(shellWord(row.path)) + '\n';
    return line;
}

std::string RowPrinter::fields(const RowText &row) const
{
    QStringList fields {printableText(m_place.row(row.index).toText()),
        QLatin1String(kindOf(row.type).name), row.title, row.description, stateName(row.played)};
    if (m_paths)
        fields.append(row.path);
    return fields.join(QLatin1Char('\t')).toStdString() + '\n';
}

std::string numberedLines(const HostSession &session, const QList<RowText> &rows)
{
    RowPrinter printer({}, {}, false, session.terminal().width, session.style());
    return printer.lines(rows);
}

QVariantHash rowJson(
    const CtlPlace &place, int index, const VeskRoles &row, const QVariantHash &player)
{
    QVariantHash json = row.toHash();
    json.insert(QStringLiteral("row"), index);
    json.insert(QStringLiteral("place"), place.toText());
    const int played = playedState(row.path(), row.type(), player);
    if (played != 0)
        json.insert(QStringLiteral("player"), stateName(played));
    return json;
}

QString plainText(const QVariant &value)
{
    if (value.isNull())
        return {};
    if (value.userType() == QMetaType::QVariantHash) {
        const VeskValue typed(value.toHash());
        const QString key = VeskValueType::toString(typed.type());
        if (!key.isEmpty() && typed.contains(key))
            return plainText(typed[key]);
        return QString::fromUtf8(VeskJson::write(value));
    }
    if (value.userType() == QMetaType::QVariantList)
        return QString::fromUtf8(VeskJson::write(value));
    return value.toString();
}
