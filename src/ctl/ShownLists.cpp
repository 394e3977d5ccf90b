// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/ShownLists.h"

#include "api/web/VeskJson.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 KeptMs = qint64(12) * 60 * 60 * 1000;
constexpr qint64 MaxFile = qint64(32) * 1024 * 1024;

qint64 nowMs()
{
    return QDateTime::currentMSecsSinceEpoch();
}

QVector<int> typesIn(const QVariantHash &entry)
{
    QVector<int> types;
    const QVariantList all = entry.value(QStringLiteral("types")).toList();
    for (const QVariant &type : all)
        types.append(type.toInt());
    return types;
}

QVariantList toVariants(const QVector<int> &types)
{
    QVariantList all;
    for (const int type : types)
        all.append(type);
    return all;
}

bool hasParamValue(const CMPath &path, const QString &value)
{
    const CMPath::ParamList &params = path.paramList();
    return std::any_of(params.begin(), params.end(),
        [&](const QPair<QString, QString> &param) { return param.second == value; });
}

} // namespace

QString shownListsFolder()
{
    // The login session's folder, which is removed at its end, or else the user's cache.
    QString parent = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (parent.isEmpty())
        parent = qEnvironmentVariable("XDG_CACHE_HOME");
    if (parent.isEmpty() && !qEnvironmentVariableIsEmpty("HOME"))
        parent = qEnvironmentVariable("HOME") + QStringLiteral("/.cache");
    return QDir::isAbsolutePath(parent) ? parent + QStringLiteral("/veskctl") : QString();
}

QString terminalName()
{
    const int terminal = ::open("/dev/tty", O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (terminal < 0)
        return {};
    ::close(terminal);
    return QString::number(::getsid(0));
}

ShownLists::ShownLists(const QString &folder, const QString &terminal, const QString &host)
    : m_folder(folder)
    , m_file(QStringLiteral("%1/lists-%2.json")
                 .arg(folder, terminal.isEmpty() ? QStringLiteral("0") : terminal))
    , m_hasTerminal(!terminal.isEmpty())
    , m_host(host)
{
}

void ShownLists::add(const CMPath &screen, int first, const QStringList &rows,
    const QVector<int> &types, bool isMenu)
{
    if (m_folder.isEmpty() || screen.isEmpty())
        return;
    QList<List> lists = read(m_file);
    const auto isOlder
        = [&](const List &list) { return list.host == m_host && list.screen == screen; };
    lists.erase(std::remove_if(lists.begin(), lists.end(), isOlder), lists.end());
    lists.prepend(
        {m_host, screen, first, rows.mid(0, MaxRows), types.mid(0, MaxRows), nowMs(), isMenu});
    write(lists.mid(0, MaxLists));
    forgetOldOnes();
}

ShownRow ShownLists::last(int row) const
{
    if (!m_hasTerminal)
        return {};
    const QList<List> lists = ofThisHost(read(m_file));
    if (lists.isEmpty())
        return {};
    ShownRow shown = rowOf(lists.first(), row - lists.first().first);
    shown.row = row;
    return shown;
}

ShownRow ShownLists::find(const CMPath &path) const
{
    const QString text = path.toEncoded();
    const QList<List> lists = ofAllTerminals();
    for (const List &list : lists) {
        const int index = list.rows.indexOf(text);
        if (index >= 0)
            return rowOf(list, index);
    }
    return {};
}

ShownRow ShownLists::findId(const QString &id) const
{
    const QList<List> lists = ofAllTerminals();
    for (const List &list : lists) {
        for (int i = 0; i < list.rows.size() && !list.isMenu; ++i) {
            if (!list.rows.at(i).contains(id))
                continue;
            const CMPath path = CMPath::fromEncoded(list.rows.at(i));
            if (hasParamValue(path, id))
                return rowOf(list, i);
        }
    }
    return {};
}

ShownRow ShownLists::rowOf(const List &list, int index)
{
    return {list.screen, list.first + index, CMPath::fromEncoded(list.rows.value(index)),
        list.types.value(index)};
}

QList<ShownLists::List> ShownLists::read(const QString &file) const
{
    QList<List> lists;
    if (m_folder.isEmpty())
        return lists;
    QFile kept(file);
    // Opening anything but a regular file could block.
    struct stat status { };
    if (::stat(file.toLocal8Bit().constData(), &status) != 0 || !S_ISREG(status.st_mode)
        || status.st_size > MaxFile || !kept.open(QFile::ReadOnly))
        return lists;
    VeskError error;
    const QVariantList all = VeskJson::parse(kept.readAll(), error).toList();
    for (const QVariant &value : all) {
        const QVariantHash entry = value.toHash();
        const List list {entry.value(QStringLiteral("host")).toString(),
            CMPath::fromVariant(entry.value(QStringLiteral("screen"))),
            entry.value(QStringLiteral("first")).toInt(),
            entry.value(QStringLiteral("rows")).toStringList(), typesIn(entry),
            entry.value(QStringLiteral("time")).toLongLong(),
            entry.value(QStringLiteral("menu")).toBool()};
        if (!list.screen.isEmpty() && nowMs() - list.time < KeptMs)
            lists.append(list);
    }
    return lists;
}

/// This terminal's first, then those of others, the newest first.
QList<ShownLists::List> ShownLists::ofAllTerminals() const
{
    const QStringList files
        = QDir(m_folder).entryList({QStringLiteral("lists-*.json")}, QDir::Files, QDir::Time);
    QList<List> others;
    for (const QString &name : files) {
        const QString file = m_folder + QLatin1Char('/') + name;
        if (file != m_file)
            others += read(file);
    }
    return ofThisHost(read(m_file) + others);
}

QList<ShownLists::List> ShownLists::ofThisHost(QList<List> lists) const
{
    const auto isElsewhere = [this](const List &list) { return list.host != m_host; };
    lists.erase(std::remove_if(lists.begin(), lists.end(), isElsewhere), lists.end());
    return lists;
}

void ShownLists::write(const QList<List> &lists) const
{
    QVariantList all;
    for (const List &list : lists) {
        all.append(QVariantHash {{QStringLiteral("host"), list.host},
            {QStringLiteral("screen"), list.screen.toEncoded()},
            {QStringLiteral("first"), list.first}, {QStringLiteral("rows"), list.rows},
            {QStringLiteral("types"), toVariants(list.types)}, {QStringLiteral("time"), list.time},
            {QStringLiteral("menu"), list.isMenu}});
    }
    QDir().mkpath(QDir::cleanPath(m_folder + QStringLiteral("/..")));
    ::mkdir(m_folder.toLocal8Bit().constData(), S_IRWXU);
    QSaveFile file(m_file);
    if (!file.open(QFile::WriteOnly))
        return;
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.write(VeskJson::write(all));
    if (file.flush())
        file.commit();
}

void ShownLists::forgetOldOnes() const
{
    const QFileInfoList files
        = QDir(m_folder).entryInfoList({QStringLiteral("lists-*.json")}, QDir::Files);
    for (const QFileInfo &file : files) {
        if (file.lastModified().msecsTo(QDateTime::currentDateTime()) > KeptMs)
            QFile::remove(file.absoluteFilePath());
    }
}
