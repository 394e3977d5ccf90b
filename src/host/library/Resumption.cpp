// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/Resumption.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/library/Database.h"
#include "host/library/KeptRow.h"
#include "host/library/Sql.h"
#include "host/player/PlayLogic.h"

#include <QPointer>

#include <algorithm>

VESK_LOGGER("Host.Library")

namespace {

using Outcome = Result<QVariant, QString>;

Outcome outcomeOf(const Result<void, QString> &result)
{
    if (!result)
        return failure(result.error());
    return QVariant();
}

void tell(const Outcome &outcome)
{
    if (!outcome)
        VESK_WARN("What plays is not noted for the next start: " << outcome.error());
}

} // namespace

Resumption::Resumption(Database *database, PlayLogic *player, QObject *parent)
    : QObject(parent)
    , m_database(database)
    , m_player(player)
    , m_requests(player->requests())
{
    m_retry.setSingleShot(true);
    m_giveUp.setSingleShot(true);
    veskConnect(&m_retry, &QTimer::timeout, this, &Resumption::attempt);
    veskConnect(&m_giveUp, &QTimer::timeout, this, &Resumption::giveUp);
    veskConnect(player, &PlayLogic::heard, this, &Resumption::note);
    // Between two plays the player is stopped for a moment, which means nothing.
    connect(player, &PlayLogic::changed, this, [this] {
        if (m_isFollowing)
            return;
        m_isFollowing = true;
        QMetaObject::invokeMethod(this, &Resumption::follow, Qt::QueuedConnection);
    });
    m_database->run(
        [](sqlite3 *sql) -> Outcome {
            SqlStatement statement(sql, "SELECT row, clean FROM playing");
            if (!statement.next())
                return outcomeOf(statement.result());
            return QVariant(QVariantList {statement.bytes(0), statement.number(1) != 0});
        },
        [self = QPointer<Resumption>(this)](const Outcome &outcome) {
            if (!self)
                return;
            const QVariantList noted = outcome ? outcome->toList() : QVariantList();
            if (noted.isEmpty())
                return self->take({});
            const auto row = KeptRow::fromText(noted.at(0).toByteArray());
            if (!row)
                return self->take({});
            self->take(Noted {*row, noted.at(1).toBool()});
        });
}

Resumption::~Resumption() = default;

Resumption::When Resumption::whenOf(const QString &setting)
{
    if (setting == QLatin1String("never"))
        return When::Never;
    return setting == QLatin1String("crash") ? When::AfterCrash : When::Always;
}

void Resumption::take(const std::optional<Noted> &noted)
{
    m_isRead = true;
    m_before = noted;
    startIfReady();
}

void Resumption::mayStart(When when)
{
    VESK_ASSERT_OWN_THREAD();
    m_when = when;
    startIfReady();
}

void Resumption::startIfReady()
{
    if (!m_isRead || !m_when || !m_before)
        return;
    const bool isWanted
        = m_when == When::Always || (m_when == When::AfterCrash && !m_before->endedCleanly);
    if (!isWanted || m_hasLeft || isOvertaken()) {
        m_before.reset();
        return;
    }
    VESK_INFO("going on with what played: " << m_before->row.title());
    m_giveUp.start(GiveUpTime);
    attempt();
}

/// Whether somebody else has told the player to play or stop something.
bool Resumption::isOvertaken() const
{
    return m_player->requests() != m_requests;
}

void Resumption::attempt()
{
    if (!m_before || isOvertaken())
        return giveUp();
    m_isTrying = true;
    m_player->playRow(m_before->row, [](const CMError &error, const VeskHash &) {
        if (!error.isEmpty())
            VESK_WARN("what played cannot be played: " << error.message());
    });
    m_requests = m_player->requests();
}

void Resumption::networkIsBack()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_retry.isActive())
        m_retry.start(0);
}

void Resumption::giveUp()
{
    m_retry.stop();
    m_giveUp.stop();
    m_before.reset();
    m_isTrying = false;
}

void Resumption::follow()
{
    m_isFollowing = false;
    if (m_hasLeft)
        return;
    const VeskPlayLogicData data = m_player->currentData();
    if (m_before && isOvertaken())
        giveUp();
    const bool isStopped = data.state() == VeskPlayLogicState::stopped;
    const bool hasFailed = isStopped && !data.error().isEmpty();
    if (m_isTrying && hasFailed && !m_retry.isActive()) {
        m_retry.start(m_wait);
        m_wait = std::min<std::chrono::milliseconds>(2 * m_wait, LongestWait);
        return;
    }
    if (data.state() == VeskPlayLogicState::playing)
        return note(m_player->row());
    const bool isOver = data.state() == VeskPlayLogicState::paused || (isStopped && !hasFailed);
    // What failed goes on being noted, but not what was left for it.
    const bool isOther = hasFailed && m_noted != m_player->row().path();
    if (isOver || isOther)
        forget();
}

void Resumption::note(const VeskRoles &row)
{
    if (m_hasLeft || m_noted == row.path())
        return;
    giveUp(); // it has gone on, or something else has
    const auto text = KeptRow::toText(row);
    if (!text)
        return forget();
    m_noted = row.path();
    m_database->run(
        [text = *text](sqlite3 *sql) {
            return outcomeOf(SqlStatement(
                sql, "INSERT OR REPLACE INTO playing (id, row, clean) VALUES (1, ?, 0)")
                                 .bind(text)
                                 .run());
        },
        &tell);
}

/// Nothing is written when nothing is noted, as while the last host's note is still to be used.
void Resumption::forget()
{
    const bool isOvertakenNote = m_noted.isEmpty() && m_isRead && isOvertaken();
    if (m_noted.isEmpty() && !isOvertakenNote)
        return;
    m_noted = {};
    m_requests = m_player->requests();
    m_database->run(
        [](sqlite3 *sql) { return outcomeOf(SqlStatement(sql, "DELETE FROM playing").run()); },
        &tell);
}

void Resumption::leave()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_hasLeft)
        return;
    m_hasLeft = true;
    giveUp();
    m_database->run(
        [](sqlite3 *sql) {
            return outcomeOf(SqlStatement(sql, "UPDATE playing SET clean = 1").run());
        },
        &tell);
}
