// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/AudioOutputSpec.h"

#include "base/files/Descriptor.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <sys/stat.h>

namespace {

enum class Takes { Nothing, NameOrNothing, File, Server };

struct Form {
    const char *word;
    AudioOutputSpec::Kind kind;
    Takes takes;
};

constexpr Form Forms[] = {
    {"auto", AudioOutputSpec::Auto, Takes::Nothing},
    {"null", AudioOutputSpec::Null, Takes::Nothing},
    {"wav", AudioOutputSpec::Wav, Takes::File},
    {"alsa", AudioOutputSpec::Alsa, Takes::NameOrNothing},
    {"pulse", AudioOutputSpec::Pulse, Takes::NameOrNothing},
    {"pipewire", AudioOutputSpec::PipeWire, Takes::NameOrNothing},
    {"jack", AudioOutputSpec::Jack, Takes::Nothing},
    {"pipe", AudioOutputSpec::Pipe, Takes::File},
    {"tcp", AudioOutputSpec::Tcp, Takes::Server},
};

const Form &formOf(AudioOutputSpec::Kind kind)
{
    return *std::find_if(
        std::begin(Forms), std::end(Forms), [kind](const Form &form) { return form.kind == kind; });
}

/// Longer than any name of a device or file.
constexpr int MaxLength = 4096;

bool hasControls(const QString &text)
{
    return std::any_of(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; });
}

/// Puts HOST:PORT into \a spec, or returns what is wrong with it.
QString readServer(const QString &server, AudioOutputSpec &spec)
{
    static const QRegularExpression form(
        QStringLiteral("^(?:\\[([0-9a-fA-F:.]+(?:%[\\w.-]+)?)\\]|([^:\\[\\]/\\s]+)):(\\d{1,5})$"));
    const auto match = form.match(server);
    if (!match.hasMatch()) {
        return QStringLiteral("needs a server, as in tcp:HOST:PORT; an IPv6 address stands in "
                              "brackets");
    }
    spec.host = match.captured(1) + match.captured(2);
    spec.port = match.captured(3).toInt();
    if (spec.port < 1 || spec.port > 0xffff)
        return QStringLiteral("has no port from 1 to 65535");
    return {};
}

} // namespace

Result<AudioOutputSpec, QString> AudioOutputSpec::parse(const QString &text)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    const QString word = text.left(colon);
    const QString rest = colon < 0 ? QString() : text.mid(colon + 1);
    const auto form = std::find_if(std::begin(Forms), std::end(Forms),
        [&](const Form &each) { return word == QLatin1String(each.word); });
    const auto bad = [&](const QString &why) {
        return failure(QStringLiteral("\"%1\" %2").arg(text.left(100), why));
    };
    if (form == std::end(Forms)) {
        return bad(QStringLiteral("is not auto, null, wav:FILE, alsa[:DEVICE], pulse[:NAME], "
                                  "pipewire[:NAME], jack, pipe:FILE or tcp:HOST:PORT"));
    }
    if (text.size() > MaxLength)
        return bad(QStringLiteral("... is too long"));
    AudioOutputSpec spec {form->kind};
    switch (form->takes) {
    case Takes::Nothing:
        if (colon >= 0)
            return bad(
                QStringLiteral("is %1 with something after it, which takes nothing").arg(word));
        break;
    case Takes::NameOrNothing:
        if (colon >= 0 && rest.isEmpty())
            return bad(
                QStringLiteral("has no name after the colon; %1 is the default one").arg(word));
        if (hasControls(rest))
            return bad(QStringLiteral("has a control character in its name"));
        spec.device = rest;
        break;
    case Takes::File:
        if (rest.isEmpty())
            return bad(QStringLiteral("needs a file, as in %1:FILE").arg(word));
        spec.file = rest;
        break;
    case Takes::Server:
        if (const QString problem = readServer(rest, spec); !problem.isEmpty())
            return bad(problem);
        break;
    }
    return spec;
}

QString AudioOutputSpec::text() const
{
    const Form &form = formOf(kind);
    const QString word = QLatin1String(form.word);
    switch (form.takes) {
    case Takes::Nothing:
        break;
    case Takes::NameOrNothing:
        return device.isEmpty() ? word : word + QLatin1Char(':') + device;
    case Takes::File:
        return word + QLatin1Char(':') + file;
    case Takes::Server:
        return word
            + (host.contains(QLatin1Char(':')) ? QStringLiteral(":[%1]:%2")
                                               : QStringLiteral(":%1:%2"))
                  .arg(host, QString::number(port));
    }
    return word;
}

QString AudioOutputSpec::problem() const
{
    if (kind == Wav) {
        const auto checked = files::checkRegular(QFile::encodeName(file).toStdString());
        return checked
            ? QString()
            : QStringLiteral("%1: %2").arg(file, QString::fromStdString(checked.error().text));
    }
    struct stat status { };
    // One that is not there is made when it is needed.
    if (kind == Pipe && ::stat(QFile::encodeName(file).constData(), &status) == 0
        && !S_ISFIFO(status.st_mode))
        return QStringLiteral("%1: not a FIFO").arg(file);
    return {};
}

bool AudioOutputSpec::isForClients() const
{
    switch (kind) {
    case Wav:
    case Pipe:
    case Tcp:
        return false;
    case Alsa: {
        // A name out of ALSA's configuration, which is the administrator's, or a piece of hardware.
        static const QRegularExpression plain(
            QStringLiteral("^(?:[\\w.-]*|(?:sysdefault|default|(?:plug)?hw|dmix|front|rear|side|"
                           "center_lfe|surround\\d\\d|hdmi|iec958|spdif|usbstream)"
                           ":[A-Za-z0-9_=,-]+)$"));
        return plain.match(device).hasMatch();
    }
    default:
        return true;
    }
}
