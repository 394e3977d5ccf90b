// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Files.h"

#include <QFile>
#include <QSaveFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 MaxSize = 1024 * 1024;

} // namespace

Result<QByteArray, QString> readFile(const QString &name)
{
    // Without O_NONBLOCK, opening a FIFO would wait for its writer.
    const int descriptor
        = ::open(QFile::encodeName(name).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return failure(QStringLiteral("%1: %2").arg(name, qt_error_string(errno)));
    QFile file;
    if (!file.open(descriptor, QFile::ReadOnly, QFile::AutoCloseHandle)) {
        ::close(descriptor);
        return failure(QStringLiteral("%1: %2").arg(name, file.errorString()));
    }
    struct stat status { };
    if (::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode))
        return failure(ctlText("%1 is a folder").arg(name));
    if (!S_ISREG(status.st_mode))
        return failure(ctlText("%1 is no ordinary file").arg(name));
    // It may grow while it is read.
    QByteArray bytes = file.read(MaxSize + 1);
    if (bytes.size() > MaxSize)
        return failure(ctlText("%1 is larger than 1 MiB").arg(name));
    if (file.error() != QFile::NoError)
        return failure(QStringLiteral("%1: %2").arg(name, file.errorString()));
    return bytes;
}

CtlResult<> saveFile(HostSession &session, const QString &name, const QByteArray &content)
{
    QSaveFile file(name);
    if (file.open(QFile::WriteOnly) && file.write(content) == content.size() && file.commit()) {
        session.tell(ctlText("%1: written").arg(name), {{QStringLiteral("file"), name}});
        return {};
    }
    return session.fail(CtlStatus::Failed, QStringLiteral("%1: %2").arg(name, file.errorString()));
}
