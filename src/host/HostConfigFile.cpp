// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostConfigFile.h"

#include "api/web/VeskJson.h"
#include "host/HostOptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <functional>

namespace {

constexpr qint64 MaxSize = 1024 * 1024;

/// Reads the members of one file.
class Reader {
public:
    Reader(const QString &file, HostOptions &options)
        : m_folder(QFileInfo(file).absolutePath())
        , m_options(options)
    {
    }

    QString read(const QString &key, const QVariant &value)
    {
        using Member = QString (Reader::*)(const QVariant &);
        static const QHash<QString, Member> members {
            {QStringLiteral("plugins"), &Reader::plugins},
            {QStringLiteral("listen"), &Reader::listen},
            {QStringLiteral("values"), &Reader::values},
            {QStringLiteral("connectTo"), &Reader::connectTo},
            {QStringLiteral("caFile"), &Reader::caFile},
            {QStringLiteral("audio"), &Reader::audio},
            {QStringLiteral("inProcess"), &Reader::inProcess},
            {QStringLiteral("restartWait"), &Reader::restartWait},
            {QStringLiteral("watchdog"), &Reader::watchdog},
            {QStringLiteral("stateFolder"), &Reader::stateFolder},
            {QStringLiteral("logLevel"), &Reader::logLevel},
            {QStringLiteral("logFile"), &Reader::logFile},
            {QStringLiteral("logSize"), &Reader::logSize},
        };
        const Member member = members.value(key);
        if (!member)
            return QStringLiteral("there is no \"%1\"").arg(key);
        const QString complaint = (this->*member)(value);
        return complaint.isEmpty() ? QString() : QStringLiteral("%1: %2").arg(key, complaint);
    }

private:
    static bool isText(const QVariant &value) { return value.userType() == QMetaType::QString; }

    static QString each(
        const QVariant &list, const std::function<QString(const QVariant &)> &readOne)
    {
        if (list.userType() != QMetaType::QVariantList)
            return QStringLiteral("a list is needed");
        const QVariantList entries = list.toList();
        for (const QVariant &entry : entries) {
            const QString complaint = readOne(entry);
            if (!complaint.isEmpty())
                return complaint;
        }
        return {};
    }

    QString file(const QVariant &value, QString &result) const
    {
        if (!isText(value) || value.toString().isEmpty())
            return QStringLiteral("a file's name is needed");
        result = QDir(m_folder).absoluteFilePath(value.toString());
        return {};
    }

    QString plugins(const QVariant &value)
    {
        return each(value, [this](const QVariant &entry) {
            const QVariantHash plugin
                = isText(entry) ? QVariantHash {{QStringLiteral("file"), entry}} : entry.toHash();
            QString name;
            const QString complaint = file(plugin.value(QStringLiteral("file")), name);
            if (!complaint.isEmpty())
                return complaint;
            return HostOption::addPlugin(
                m_options, name, plugin.value(QStringLiteral("serviceId")).toString());
        });
    }

    QString values(const QVariant &value)
    {
        if (value.userType() != QMetaType::QVariantHash)
            return QStringLiteral("an object of paths and values is needed");
        const QVariantHash entries = value.toHash();
        for (auto it = entries.constBegin(); it != entries.constEnd(); ++it) {
            const QString complaint = HostOption::addPinned(m_options, it.key(), it.value());
            if (!complaint.isEmpty())
                return complaint;
        }
        return {};
    }

    QString connectTo(const QVariant &value)
    {
        return each(value, [this](const QVariant &entry) {
            return HostOption::addConnectTo(m_options, entry.toString());
        });
    }

    QString listen(const QVariant &value)
    {
        return HostOption::setListen(m_options, value.toString());
    }
    QString audio(const QVariant &value)
    {
        const QString complaint = HostOption::setAudio(m_options, value.toString());
        if (complaint.isEmpty() && m_options.audio.kind == AudioOutputSpec::Wav)
            m_options.audio.file = QDir(m_folder).absoluteFilePath(m_options.audio.file);
        return complaint;
    }
    QString logLevel(const QVariant &value)
    {
        return HostOption::setLogLevel(m_options, value.toString());
    }
    QString logSize(const QVariant &value) { return HostOption::setLogSize(m_options, value); }
    QString restartWait(const QVariant &value)
    {
        return HostOption::setRestartWait(m_options, value);
    }
    QString watchdog(const QVariant &value) { return HostOption::setWatchdog(m_options, value); }
    QString inProcess(const QVariant &value)
    {
        m_options.inProcess = value.toBool();
        return value.userType() == QMetaType::Bool ? QString()
                                                   : QStringLiteral("true or false is needed");
    }
    QString caFile(const QVariant &value) { return file(value, m_options.caFile); }
    QString stateFolder(const QVariant &value) { return file(value, m_options.stateFolder); }
    QString logFile(const QVariant &value) { return file(value, m_options.logFile); }

    const QString m_folder;
    HostOptions &m_options;
};

} // namespace

QString readHostConfigFile(const QString &file, HostOptions &options)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return QStringLiteral("%1: %2").arg(file, source.errorString());
    const QByteArray bytes = source.read(MaxSize + 1);
    if (bytes.size() > MaxSize)
        return QStringLiteral("%1: the file is too large").arg(file);
    VeskError error;
    const QVariant content = VeskJson::parse(bytes, error);
    if (!error.isEmpty()) {
        return QStringLiteral("%1: %2 at byte %3")
            .arg(file, error.message(), QString::number(error.offset()));
    }
    if (content.userType() != QMetaType::QVariantHash)
        return QStringLiteral("%1: an object is needed").arg(file);

    Reader reader(file, options);
    const QVariantHash members = content.toHash();
    for (auto it = members.constBegin(); it != members.constEnd(); ++it) {
        const QString complaint = reader.read(it.key(), it.value());
        if (!complaint.isEmpty())
            return QStringLiteral("%1: %2").arg(file, complaint);
    }
    return {};
}
