// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/LibraryMethods.h"

#include "api/core/Language.h"
#include "api/core/vesk.h"
#include "host/library/Library.h"
#include "host/player/PlayLogic.h"
#include "host/player/RowSearch.h"
#include "host/rpc/AddressGate.h"
#include "host/rpc/RpcMethods.h"
#include "host/rpc/RpcParams.h"

#include <QJsonDocument>

#include <utility>

namespace {

JsonRpcError failureOf(const QString &words)
{
    return RpcMethods::toRpcError(CMError(Language::ntr(words)));
}

JsonRpcError rowFailureOf(const CMError &error)
{
    JsonRpcError failure = RpcMethods::toRpcError(error);
    if (error.name() == RowSearch::goneName())
        failure.code = JsonRpcError::RowGone;
    return failure;
}

void failParams(const JsonRpcCallPtr &call, const char *text)
{
    call->fail({JsonRpcError::InvalidParams, QString::fromLatin1(text), {}});
}

Library::Done answerTo(const JsonRpcCallPtr &call)
{
    return [call](const Result<void, QString> &done) {
        if (done)
            call->finish(QVariantHash());
        else
            call->fail(failureOf(done.error()));
    };
}

bool has(const JsonRpcCallPtr &call, const char *name)
{
    return !call->params().value(QString::fromLatin1(name)).isNull();
}

/// From 1; 0 when the call has failed.
int presetNumber(const JsonRpcCallPtr &call)
{
    const QVariant given = call->params().value(QStringLiteral("number"));
    const qlonglong number = given.userType() == QMetaType::LongLong ? given.toLongLong() : 0;
    if (number >= 1 && number <= Library::Presets)
        return int(number);
    failParams(call, "\"number\" is a whole number from 1 to 12.");
    return 0;
}

} // namespace

LibraryMethods::LibraryMethods(
    JsonRpcDispatcher *dispatcher, Library *library, PlayLogic *player, QObject *parent)
    : QObject(parent)
    , m_library(library)
    , m_player(player)
{
    using Method = void (LibraryMethods::*)(const JsonRpcCallPtr &);
    const std::pair<const char *, Method> methods[] {
        {"favorites.add", &LibraryMethods::addFavorite},
        {"favorites.remove", &LibraryMethods::removeFavorite},
        {"favorites.state", &LibraryMethods::tellFavorite},
        {"presets.list", &LibraryMethods::listPresets},
        {"presets.save", &LibraryMethods::savePreset},
        {"presets.play", &LibraryMethods::playPreset},
        {"presets.clear", &LibraryMethods::clearPreset},
        {"recents.clear", &LibraryMethods::clearRecents},
        {"library.export", &LibraryMethods::exportLibrary},
        {"library.import", &LibraryMethods::importLibrary},
    };
    for (const auto &each : methods) {
        dispatcher->addMethod(QString::fromLatin1(each.first),
            [this, method = each.second](const JsonRpcCallPtr &call) { (this->*method)(call); });
    }
    connect(library, &Library::presetsChanged, this,
        [this] { Q_EMIT notification(QStringLiteral("presets.changed"), QVariantHash()); });
}

LibraryMethods::~LibraryMethods() = default;

/// What plays, or is to go on; empty when nothing does.
VeskRoles LibraryMethods::playing() const
{
    return m_player->currentData().state() == VeskPlayLogicState::stopped ? VeskRoles()
                                                                          : m_player->row();
}

void LibraryMethods::withRow(const JsonRpcCallPtr &call, const TakeRow &take)
{
    if (!has(call, "screen") && !has(call, "row") && !has(call, "path")) {
        const VeskRoles row = playing();
        if (!row.isEmpty())
            return take(row);
        return call->fail(RpcMethods::toRpcError(
            CMError(TrString("Player", QT_TRANSLATE_NOOP("Player", "Nothing is playing.")))));
    }
    RpcParams params(call->params());
    const RowAddress address {params.screen(), params.row(), params.rowPath()};
    if (params.failed())
        return call->fail(params.error());
    if (m_gate && !m_gate->mayOpen(address.screen, call->peer()))
        return call->fail(AddressGate::refusal());
    auto *search = new RowSearch({}, this);
    search->start(address, [search, call, take](const CMError &error, const VeskRoles &row) {
        search->deleteLater();
        if (error.isEmpty())
            take(row);
        else
            call->fail(rowFailureOf(error));
    });
}

CMPath LibraryMethods::pathOf(const JsonRpcCallPtr &call) const
{
    if (!has(call, "path")) {
        const CMPath path = playing().path();
        if (path.isEmpty()) {
            call->fail(RpcMethods::toRpcError(
                CMError(TrString("Player", QT_TRANSLATE_NOOP("Player", "Nothing is playing.")))));
        }
        return path;
    }
    RpcParams params(call->params());
    const CMPath path = params.path();
    if (params.failed()) {
        call->fail(params.error());
        return {};
    }
    // Another stream of the row may be the one that sounds, and the state has its path.
    const bool isPlaying = m_player->currentData().trackRoles().path() == path;
    const CMPath row = isPlaying ? playing().path() : CMPath();
    return row.isEmpty() ? path : row;
}

void LibraryMethods::addFavorite(const JsonRpcCallPtr &call)
{
    withRow(call, [this, call](const VeskRoles &row) {
        m_library->addFavorite(row, [call](const Result<qint64, QString> &id) {
            if (id)
                call->finish(QVariantHash {{QStringLiteral("id"), *id}});
            else
                call->fail(failureOf(id.error()));
        });
    });
}

void LibraryMethods::removeFavorite(const JsonRpcCallPtr &call)
{
    if (const CMPath path = pathOf(call); !path.isEmpty())
        m_library->removeFavorite(path, answerTo(call));
}

void LibraryMethods::tellFavorite(const JsonRpcCallPtr &call)
{
    const CMPath path = pathOf(call);
    if (path.isEmpty())
        return;
    m_library->isFavorite(path, [call](const Result<bool, QString> &is) {
        if (is)
            call->finish(QVariantHash {{QStringLiteral("favorite"), *is}});
        else
            call->fail(failureOf(is.error()));
    });
}

void LibraryMethods::listPresets(const JsonRpcCallPtr &call)
{
    m_library->presets([this, call](const Result<QVector<Library::Preset>, QString> &presets) {
        if (!presets)
            return call->fail(failureOf(presets.error()));
        QVariantList list;
        for (const Library::Preset &preset : *presets) {
            if (m_iconSeen && !preset.row.icon().isEmpty())
                m_iconSeen(preset.row.icon());
            list.append(QVariantHash {{QStringLiteral("number"), preset.number},
                {QStringLiteral("title"), preset.row.title().toString()},
                {QStringLiteral("icon"), preset.row.icon()},
                {QStringLiteral("path"), preset.row.path().toEncoded()}});
        }
        call->finish(QVariantHash {{QStringLiteral("presets"), list}});
    });
}

void LibraryMethods::savePreset(const JsonRpcCallPtr &call)
{
    const int number = presetNumber(call);
    if (number == 0)
        return;
    withRow(call, [this, call, number](const VeskRoles &row) {
        m_library->savePreset(number, row, answerTo(call));
    });
}

void LibraryMethods::playPreset(const JsonRpcCallPtr &call)
{
    const int number = presetNumber(call);
    if (number == 0)
        return;
    m_library->preset(number, [this, call](const Result<VeskRoles, QString> &row) {
        if (!row)
            return call->fail(failureOf(row.error()));
        m_player->playRow(*row, [call](const CMError &error, const VeskHash &playId) {
            if (error.isEmpty())
                call->finish(QVariantHash {{QStringLiteral("playId"), playId}});
            else
                call->fail(RpcMethods::toRpcError(error));
        });
    });
}

void LibraryMethods::clearPreset(const JsonRpcCallPtr &call)
{
    if (const int number = presetNumber(call); number != 0)
        m_library->clearPreset(number, answerTo(call));
}

void LibraryMethods::clearRecents(const JsonRpcCallPtr &call)
{
    const QVariant given = call->params().value(QStringLiteral("service"));
    const QString id = given.toString();
    if (!given.isNull() && (given.userType() != QMetaType::QString || id.isEmpty()))
        return failParams(call, "\"service\" is the id of a service.");
    m_library->clearRecents(id, answerTo(call));
}

void LibraryMethods::exportLibrary(const JsonRpcCallPtr &call)
{
    m_library->exportAll([call](const Result<QJsonObject, QString> &library) {
        if (library)
            call->finish(QVariantHash {{QStringLiteral("library"), library->toVariantHash()}});
        else
            call->fail(failureOf(library.error()));
    });
}

void LibraryMethods::importLibrary(const JsonRpcCallPtr &call)
{
    const QVariant library = call->params().value(QStringLiteral("library"));
    if (library.userType() != QMetaType::QVariantHash)
        return failParams(call, "\"library\" is what library.export gives.");
    m_library->importAll(QJsonObject::fromVariantHash(library.toHash()),
        [call](const Result<Library::Imported, QString> &imported) {
            if (!imported)
                return call->fail(failureOf(imported.error()));
            call->finish(QVariantHash {{QStringLiteral("favorites"), imported->favorites},
                {QStringLiteral("presets"), imported->presets}});
        });
}
