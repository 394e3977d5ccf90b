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

ShownPart partIn(const QVariantHash &entry)
{
    ShownPart part {CMPath::fromVariant(entry.value(QStringLiteral("screen"))),
        entry.value(QStringLiteral("first")).toInt(),
        entry.value(QStringLiteral("rows")).toStringList(), {}};
    const QVariantList types = entry.value(QStringLiteral("types")).toList();
    for (const QVariant &type : types)
        part.types.append(type.toInt());
    return part;
}

QVariantHash toVariant(const ShownPart &part)
{
    QVariantList types;
    for (const int type : part.types)
        types.append(type);
    return {{QStringLiteral("screen"), part.screen.toEncoded()},
        {QStringLiteral("first"), part.first}, {QStringLiteral("rows"), part.rows},
        {QStringLiteral("types"), types}};
}

ShownRow rowOf(const ShownPart &part, int index)
{
    return {part.screen, part.first + index, CMPath::fromEncoded(part.rows.value(index)),
        part.types.value(index)};
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
    if (!screen.isEmpty())
        add(List {m_host, first, {{screen, first, rows, types}}, nowMs(), isMenu});
}

void ShownLists::add(const QList<ShownPart> &parts)
{
    if (!parts.isEmpty())
        add(List {m_host, 0, parts, nowMs(), false});
}

void ShownLists::add(const List &list)
{
    if (m_folder.isEmpty())
        return;
    List kept = list;
    int left = MaxRows;
    for (ShownPart &part : kept.parts) {
        part.rows = part.rows.mid(0, left);
        part.types = part.types.mid(0, left);
        left -= part.rows.size();
    }
    QList<List> lists = read(m_file);
    const auto isOlder = [&](const List &other) {
        return other.host == m_host && other.parts.first().screen == kept.parts.first().screen;
    };
    lists.erase(std::remove_if(lists.begin(), lists.end(), isOlder), lists.end());
    lists.prepend(kept);
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
    const List &list = lists.first();
    int index = row - list.first;
    for (const ShownPart &part : list.parts) {
        // A number that was not shown belongs to the last screen.
        if (index < part.rows.size() || &part == &list.parts.last())
            return rowOf(part, index);
        index -= part.rows.size();
    }
    return {};
}

ShownRow ShownLists::find(const CMPath &path) const
{
    const QString text = path.toEncoded();
    const QList<List> lists = ofAllTerminals();
    for (const List &list : lists) {
        for (const ShownPart &part : list.parts) {
            const int index = part.rows.indexOf(text);
            if (index >= 0)
                return rowOf(part, index);
        }
    }
    return {};
}

ShownRow ShownLists::findId(const QString &id) const
{
    const QList<List> lists = ofAllTerminals();
    for (const List &list : lists) {
        for (const ShownPart &part : list.parts) {
            for (int i = 0; i < part.rows.size() && !list.isMenu; ++i) {
                if (part.rows.at(i).contains(id)
                    && hasParamValue(CMPath::fromEncoded(part.rows.at(i)), id))
                    return rowOf(part, i);
            }
        }
    }
    return {};
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
        List list {entry.value(QStringLiteral("host")).toString(),
            entry.value(QStringLiteral("first")).toInt(), {},
            entry.value(QStringLiteral("time")).toLongLong(),
            entry.value(QStringLiteral("menu")).toBool()};
        const QVariantList parts = entry.value(QStringLiteral("parts")).toList();
        for (const QVariant &part : parts)
            list.parts.append(partIn(part.toHash()));
        const bool isWhole = !list.parts.isEmpty()
            && std::none_of(list.parts.begin(), list.parts.end(),
                [](const ShownPart &part) { return part.screen.isEmpty(); });
        if (isWhole && nowMs() - list.time < KeptMs)
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
        QVariantList parts;
        for (const ShownPart &part : list.parts)
            parts.append(toVariant(part));
        all.append(QVariantHash {{QStringLiteral("host"), list.host},
            {QStringLiteral("first"), list.first}, {QStringLiteral("parts"), parts},
            {QStringLiteral("time"), list.time}, {QStringLiteral("menu"), list.isMenu}});
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
