// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/PasswordInput.h"

#include "ctl/HostSession.h"

#include <bsd/readpassphrase.h>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

constexpr int MaxBytes = 1024;

QByteArray ask(const QString &prompt)
{
    // One byte more than allowed, to see what is too long, and the end of the text.
    char line[MaxBytes + 2] = {};
    const char *typed = ::readpassphrase(
        prompt.toUtf8().constData(), line, sizeof line, RPP_REQUIRE_TTY | RPP_ECHO_OFF);
    QByteArray password(typed);
    ::explicit_bzero(line, sizeof line);
    return password;
}

} // namespace

QByteArray readInputLine(int input)
{
    QByteArray line;
    char byte = 0;
    for (;;) {
        const ssize_t count = ::read(input, &byte, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0 || byte == '\n')
            break;
        if (line.size() <= MaxBytes)
            line.append(byte);
    }
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

Result<QString, QString> readPassword(int input, const QString &prompt)
{
    QByteArray line = ::isatty(input) ? ask(prompt) : readInputLine(input);
    if (line.isEmpty())
        return failure(ctlText("a password is needed"));
    if (line.size() > MaxBytes)
        return failure(ctlText("the password is too long"));
    QString password = QString::fromUtf8(line);
    line.fill('\0');
    return password;
}
