// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostConfigFile.h"

#include "api/web/VeskJson.h"
#include "base/files/Descriptor.h"
#include "host/HostOptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sstream>
#include <stdexcept>
#include <unistd.h>
#include <vector>
#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/exceptions.h>
#include <yaml-cpp/parser.h>

namespace {

using Done = Result<void, QString>;

constexpr int MaxSize = 1024 * 1024;
/// More than any member has.
constexpr std::size_t MaxDepth = 16;
constexpr int MaxMessage = 300;

QString atLine(int line, const QString &text)
{
    return line > 0 ? QStringLiteral("line %1: %2").arg(QString::number(line), text) : text;
}

/// A file that is YAML, but no configuration.
class WrongContent : public std::runtime_error {
public:
    WrongContent(int line, const QString &text)
        : std::runtime_error(atLine(line, text).toStdString())
    {
    }
};

int lineOf(const YAML::Mark &mark)
{
    return mark.is_null() ? 0 : mark.line + 1;
}

/// An unquoted word as JSON takes it; all that JSON does not know is a text.
QVariant plainScalar(const QString &text)
{
    static const QRegularExpression number(QStringLiteral(
        "\\A-?(?:(?:0|[1-9][0-9]*)(?:\\.[0-9]*)?|\\.[0-9]+)(?:[eE][-+]?[0-9]+)?\\z"));
    const QString lower = text.toLower();
    if (lower == QLatin1String("true") || lower == QLatin1String("false"))
        return lower == QLatin1String("true");
    if (!number.match(text).hasMatch())
        return text;
    bool isWhole = false;
    const qlonglong whole = text.toLongLong(&isWhole);
    return isWhole ? QVariant(whole) : QVariant(text.toDouble());
}

/// Collects the members of the one object that the file is.
class MemberReader : public YAML::EventHandler {
public:
    QVector<HostConfigMember> takeMembers() { return std::move(m_members); }

    void OnDocumentStart(const YAML::Mark &mark) override
    {
        if (m_hasDocument)
            throw WrongContent(lineOf(mark), QStringLiteral("the file has a second document"));
        m_hasDocument = true;
    }
    void OnDocumentEnd() override { }
    void OnNull(const YAML::Mark &mark, YAML::anchor_t) override
    {
        if (m_open.empty()) // a file without any member is fine
            return;
        // A value that is left out is found only where the next thing is.
        const bool isValue = m_open.back().hasKey;
        add(QVariant(), QString(), isValue ? m_open.back().keyLine : lineOf(mark));
    }
    void OnAlias(const YAML::Mark &mark, YAML::anchor_t) override
    {
        throw WrongContent(lineOf(mark), QStringLiteral("aliases are not allowed here"));
    }
    void OnScalar(const YAML::Mark &mark, const std::string &tag, YAML::anchor_t,
        const std::string &value) override
    {
        checkTag(mark, tag);
        const QString text = QString::fromStdString(value);
        add(tag == "?" ? plainScalar(text) : QVariant(text), text, lineOf(mark));
    }
    void OnSequenceStart(const YAML::Mark &mark, const std::string &tag, YAML::anchor_t,
        YAML::EmitterStyle::value) override
    {
        open(mark, tag, HostConfigMember::List);
    }
    void OnSequenceEnd() override { close(); }
    void OnMapStart(const YAML::Mark &mark, const std::string &tag, YAML::anchor_t,
        YAML::EmitterStyle::value) override
    {
        open(mark, tag, HostConfigMember::Object);
    }
    void OnMapEnd() override { close(); }

private:
    /// A list or an object that has not ended yet.
    struct Level {
        HostConfigMember::Shape shape = HostConfigMember::List;
        int line = 0;
        bool hasKey = false; ///< and waits for its value
        QString key;
        int keyLine = 0;
        QSet<QString> keys;
        QVector<QPair<QVariant, int>> values; ///< as HostConfigMember's
    };

    static void checkTag(const YAML::Mark &mark, const std::string &tag)
    {
        if (!tag.empty() && tag != "?" && tag != "!")
            throw WrongContent(lineOf(mark), QStringLiteral("tags are not allowed here"));
    }

    void open(const YAML::Mark &mark, const std::string &tag, HostConfigMember::Shape shape)
    {
        checkTag(mark, tag);
        if (m_open.size() >= MaxDepth)
            throw WrongContent(lineOf(mark), QStringLiteral("it is nested too deeply"));
        if (m_open.empty() && shape != HostConfigMember::Object)
            throw WrongContent(lineOf(mark), QStringLiteral("an object is needed"));
        if (!m_open.empty() && isKeyNext())
            throw WrongContent(lineOf(mark), QStringLiteral("a key must be a text"));
        Level level;
        level.shape = shape;
        level.line = lineOf(mark);
        m_open.push_back(std::move(level));
    }

    bool isKeyNext() const
    {
        return m_open.back().shape == HostConfigMember::Object && !m_open.back().hasKey;
    }

    void add(const QVariant &value, const QString &text, int line)
    {
        if (m_open.empty())
            throw WrongContent(line, QStringLiteral("an object is needed"));
        if (!isKeyNext())
            return addValue(value, line, HostConfigMember::Value, {{value, line}});
        Level &level = m_open.back();
        if (level.keys.contains(text))
            throw WrongContent(line, QStringLiteral("%1: it is there already").arg(text));
        level.keys.insert(text);
        level.hasKey = true;
        level.key = text;
        level.keyLine = line;
    }

    void addValue(const QVariant &value, int line, HostConfigMember::Shape shape,
        const QVector<QPair<QVariant, int>> &values)
    {
        Level &level = m_open.back();
        if (m_open.size() == 1) {
            m_members.append({level.key, level.keyLine, shape, values});
        } else if (level.shape == HostConfigMember::Object) {
            const QVariantHash entry {{level.key, value}};
            level.values.append({entry, level.keyLine});
        } else {
            level.values.append({value, line});
        }
        level.hasKey = false;
    }

    void close()
    {
        const Level ended = std::move(m_open.back());
        m_open.pop_back();
        if (m_open.empty())
            return;
        QVariantHash hash;
        QVariantList list;
        for (const auto &value : ended.values) {
            if (ended.shape == HostConfigMember::List) {
                list.append(value.first);
                continue;
            }
            const QVariantHash entry = value.first.toHash();
            hash.insert(entry.constBegin().key(), entry.constBegin().value());
        }
        const bool isList = ended.shape == HostConfigMember::List;
        addValue(isList ? QVariant(list) : QVariant(hash), ended.line, ended.shape, ended.values);
    }

    bool m_hasDocument = false;
    std::vector<Level> m_open;
    QVector<HostConfigMember> m_members;
};

Result<QByteArray, QString> readBytes(const QString &file)
{
    const auto opened
        = files::openRegular(QFile::encodeName(file).toStdString(), O_RDONLY | O_CLOEXEC);
    if (!opened)
        return failure(QString::fromStdString(opened.error().text));
    QByteArray bytes(MaxSize + 1, Qt::Uninitialized);
    int size = 0;
    while (size < bytes.size()) {
        const ssize_t count = ::read(
            opened->number(), bytes.data() + size, static_cast<std::size_t>(bytes.size() - size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failure(
                QString::fromStdString(files::Problem::ofSystem("it cannot be read").text));
        if (count == 0)
            break;
        size += static_cast<int>(count);
    }
    if (size > MaxSize)
        return failure(QStringLiteral("the file is too large"));
    bytes.truncate(size);
    const QByteArray byteOrderMark = "\xEF\xBB\xBF";
    return bytes.startsWith(byteOrderMark) ? bytes.mid(byteOrderMark.size()) : bytes;
}

/// Says in which line \a bytes are no text in UTF-8.
Done checkText(const QByteArray &bytes)
{
    int line = 0;
    for (const QByteArray &each : bytes.split('\n')) {
        ++line;
        if (each.contains('\0') || QString::fromUtf8(each).toUtf8() != each)
            return failure(atLine(line, QStringLiteral("it is no text in UTF-8")));
    }
    return {};
}

/// JSON allows a little that the YAML library refuses, such as surrogates in escapes.
QVector<HostConfigMember> membersOfJson(const QVariantHash &object)
{
    QVector<HostConfigMember> members;
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        HostConfigMember member {it.key(), 0, HostConfigMember::Value, {}};
        if (it->userType() == QMetaType::QVariantList) {
            member.shape = HostConfigMember::List;
            for (const QVariant &value : it->toList())
                member.values.append({value, 0});
        } else if (it->userType() == QMetaType::QVariantHash) {
            member.shape = HostConfigMember::Object;
            const QVariantHash entries = it->toHash();
            for (auto entry = entries.constBegin(); entry != entries.constEnd(); ++entry)
                member.values.append({QVariantHash {{entry.key(), entry.value()}}, 0});
        } else {
            member.values.append({*it, 0});
        }
        members.append(member);
    }
    return members;
}

QString explained(const YAML::Exception &wrong, const QByteArray &bytes)
{
    const int line = lineOf(wrong.mark);
    QString text = QString::fromStdString(wrong.msg);
    const QByteArray source = line > 0 ? bytes.split('\n').value(line - 1) : QByteArray();
    const int indentation = static_cast<int>(std::find_if(source.begin(), source.end(), [](char c) {
        return c != ' ' && c != '\t';
    }) - source.begin());
    if (source.left(indentation).contains('\t'))
        text += QStringLiteral("; only blanks can indent a line");
    return atLine(line, text);
}

Result<QVector<HostConfigMember>, QString> readMembers(const QByteArray &bytes)
{
    if (const Done isText = checkText(bytes); !isText)
        return failure(isText.error());
    QString problem;
    try {
        std::istringstream source(bytes.toStdString());
        YAML::Parser parser(source);
        MemberReader reader;
        while (parser.HandleNextDocument(reader)) { }
        return reader.takeMembers();
    } catch (const WrongContent &wrong) {
        return failure(QString::fromUtf8(wrong.what()));
    } catch (const YAML::Exception &wrong) {
        problem = explained(wrong, bytes);
    } catch (const std::exception &wrong) {
        problem = QString::fromUtf8(wrong.what());
    }
    VeskError error;
    const QVariant json = VeskJson::parse(bytes, error);
    if (error.isEmpty() && json.userType() == QMetaType::QVariantHash)
        return membersOfJson(json.toHash());
    return failure(problem);
}

/// Why a member's form does not fit the option; empty when it does.
QString wrongShape(HostOption::Kind kind, HostConfigMember::Shape shape)
{
    switch (kind) {
    case HostOption::Repeated:
        return shape == HostConfigMember::List ? QString() : QStringLiteral("a list is needed");
    case HostOption::OneOrMore:
        return shape == HostConfigMember::Object ? QStringLiteral("a value or a list is needed")
                                                 : QString();
    case HostOption::Assignment:
        return shape == HostConfigMember::Object
            ? QString()
            : QStringLiteral("an object of paths and values is needed");
    case HostOption::Single:
    case HostOption::Flag:
        break;
    }
    return shape == HostConfigMember::Value ? QString() : QStringLiteral("one value is needed");
}

/// One line that a terminal can be shown, whatever the file holds.
QString shortened(const QString &text)
{
    QString line = text.simplified();
    std::replace_if(
        line.begin(), line.end(), [](QChar c) { return c.category() == QChar::Other_Control; },
        QLatin1Char('?'));
    return line.size() > MaxMessage ? line.left(MaxMessage) + QStringLiteral("...") : line;
}

Done setMember(const HostConfigMember &member, const QString &file, HostConfigMembers which,
    HostOptions &options)
{
    const QVector<HostOption> &known = hostOptions();
    const auto option = std::find_if(known.begin(), known.end(),
        [&member](const HostOption &each) { return member.key == QLatin1String(each.key); });
    if (option == known.end())
        return failure(atLine(member.line, QStringLiteral("there is no \"%1\"").arg(member.key)));
    const bool isValues = option->kind == HostOption::Assignment;
    if (isValues != (which == HostConfigMembers::Values))
        return {};
    const auto wrong = [&member](int line, const QString &problem) {
        return failure(atLine(line, QStringLiteral("%1: %2").arg(member.key, problem)));
    };
    if (const QString problem = wrongShape(option->kind, member.shape); !problem.isEmpty())
        return wrong(member.line, problem);
    const QString folder = QFileInfo(file).absolutePath();
    for (const auto &value : member.values) {
        if (const Done done = option->set(options, value.first, folder); !done)
            return wrong(value.second, done.error());
        if (isValues) {
            const QVariantHash entry = value.first.toHash();
            options.given[CMPath::fromEncoded(entry.constBegin().key()).toEncoded()]
                = {{entry.constBegin().value()}, file, value.second};
        } else {
            HostGiven &given = options.given[member.key];
            given.values.append(value.first);
            given.file = file;
            given.line = member.line;
        }
    }
    return {};
}

} // namespace

QString defaultHostConfigFile()
{
    const QString name = QStringLiteral("/vesk/vesk.conf");
    QString folder = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (folder.isEmpty())
        folder = QDir::homePath() + QStringLiteral("/.config");
    if (const QString file = folder + name; QFileInfo::exists(file))
        return file;
    const QFileInfo machines(machineHostConfigFile());
    return machines.isReadable() ? machines.filePath() : QString();
}

QString machineHostConfigFile()
{
    return QStringLiteral("/etc/vesk/vesk.conf");
}

Result<HostConfigFile, QString> readHostConfigFile(const QString &file)
{
    const auto bytes = readBytes(file);
    if (!bytes)
        return failure(QStringLiteral("%1: %2").arg(file, bytes.error()));
    const auto members = readMembers(*bytes);
    if (!members)
        return failure(QStringLiteral("%1: %2").arg(file, shortened(members.error())));
    return HostConfigFile {file, *members};
}

Done applyHostConfig(const HostConfigFile &config, HostConfigMembers which, HostOptions &options)
{
    for (const HostConfigMember &member : config.members) {
        const Done done = setMember(member, config.file, which, options);
        if (!done)
            return failure(QStringLiteral("%1: %2").arg(config.file, shortened(done.error())));
    }
    return {};
}
