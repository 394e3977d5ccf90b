// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsFolder.h"

#include "modules/stations/StationsFormats.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace {

using SharedFile = std::shared_ptr<const StationsFile>;

SharedFile unreadable(const TrString &why)
{
    StationsFile file;
    file.error = why;
    return std::make_shared<const StationsFile>(file);
}

SharedFile unreadable(int error)
{
    return unreadable(stationsTr(QT_TRANSLATE_NOOP("Stations", "The file cannot be read (%1)."),
        {TrArg(QString::fromLocal8Bit(std::strerror(error)))}));
}

/// A descriptor that is closed at the end.
class Descriptor {
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    operator int() const { return m_descriptor; }

private:
    const int m_descriptor;
};

/// At most one byte more than a file may have.
QByteArray bytesOf(int descriptor)
{
    QByteArray bytes(StationsLimits::Bytes + 1, Qt::Uninitialized);
    int size = 0;
    while (size < bytes.size()) {
        const ssize_t part
            = read(descriptor, bytes.data() + size, static_cast<std::size_t>(bytes.size() - size));
        if (part < 0 && errno == EINTR)
            continue;
        if (part <= 0)
            break;
        size += static_cast<int>(part);
    }
    bytes.truncate(size);
    return bytes;
}

} // namespace

StationsFolder::Stamp StationsFolder::stampOf(const struct stat &status)
{
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim};
}

bool StationsFolder::isSame(const Stamp &a, const Stamp &b)
{
    const auto isSameTime = [](const timespec &x, const timespec &y) {
        return x.tv_sec == y.tv_sec && x.tv_nsec == y.tv_nsec;
    };
    return a.device == b.device && a.inode == b.inode && a.size == b.size
        && isSameTime(a.modified, b.modified) && isSameTime(a.changed, b.changed);
}

/// Hidden files are those that editors have under way.
void StationsFolder::list()
{
    m_names.clear();
    QDirIterator each(m_path,
        {QStringLiteral("*.m3u"), QStringLiteral("*.m3u8"), QStringLiteral("*.pls"),
            QStringLiteral("*.xspf"), QStringLiteral("*.opml")},
        QDir::Files | QDir::System);
    for (int i = 0; i < MaxNames && each.hasNext(); ++i) {
        each.next();
        m_names.append(each.fileName());
    }
    m_names.sort(Qt::CaseInsensitive);
    m_omitted = std::max<int>(0, m_names.size() - MaxFiles);
    m_names = m_names.mid(0, MaxFiles);
}

void StationsFolder::refresh()
{
    if (m_path.isEmpty())
        return;
    list();
    std::map<QString, Read> files;
    qint64 bytesLeft = MaxBytes;
    for (const QString &name : std::as_const(m_names)) {
        Read file = read(name, bytesLeft);
        bytesLeft -= std::min<qint64>(file.stamp.size, StationsLimits::Bytes);
        files.emplace(name, std::move(file));
    }
    m_files = std::move(files);
}

StationsFolder::Read StationsFolder::read(const QString &name, qint64 bytesLeft) const
{
    const QByteArray path = QFile::encodeName(m_path + QLatin1Char('/') + name);
    struct stat status { };
    if (stat(path.constData(), &status) != 0)
        return {{}, unreadable(errno)};
    // A FIFO is not opened: who waits at its other end would notice.
    if (!S_ISREG(status.st_mode))
        return {{}, unreadable(stationsTr(QT_TRANSLATE_NOOP("Stations", "This is no file.")))};
    if (std::min<qint64>(status.st_size, StationsLimits::Bytes) > bytesLeft) {
        return {{},
            unreadable(stationsTr(
                QT_TRANSLATE_NOOP("Stations", "The files are larger than 4 MiB together.")))};
    }
    const auto known = m_files.find(name);
    if (known != m_files.end() && isSame(known->second.stamp, stampOf(status)))
        return known->second;
    const Descriptor file(open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    // It may be another one by now.
    if (file < 0 || fstat(file, &status) != 0)
        return {{}, unreadable(errno)};
    if (!S_ISREG(status.st_mode))
        return {{}, unreadable(stationsTr(QT_TRANSLATE_NOOP("Stations", "This is no file.")))};
    return {stampOf(status), std::make_shared<const StationsFile>(readStations(bytesOf(file)))};
}

const StationsFile *StationsFolder::find(const QString &name) const
{
    const auto found = m_files.find(name);
    return found == m_files.end() ? nullptr : found->second.file.get();
}
