// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "host/HostCommandLine.h"

#include <QByteArray>
#include <QStringList>

#include <sys/mman.h>
#include <unistd.h>

// A configuration file and, after a record separator, a command line with one argument per line:
// the result is either options within their bounds or an error message.

namespace {

constexpr char Separator = 0x1e;

/// A file in memory with the given content.
class ConfigFile {
public:
    ConfigFile()
        : m_file(::memfd_create("config", MFD_CLOEXEC))
    {
    }

    QString name() const { return QStringLiteral("/proc/self/fd/%1").arg(m_file); }

    void write(const QByteArray &content) const
    {
        FUZZ_REQUIRE(::ftruncate(m_file, 0) == 0);
        FUZZ_REQUIRE(
            ::pwrite(m_file, content.constData(), static_cast<std::size_t>(content.size()), 0)
            == content.size());
    }

private:
    const int m_file;
};

/// Drops arguments that could name a file other than the one above.
QStringList argumentsIn(const QByteArray &text)
{
    QStringList arguments;
    for (const QByteArray &line : text.split('\n')) {
        if (!line.contains("config"))
            arguments.append(QString::fromUtf8(line));
    }
    return arguments;
}

void requireSound(const HostOptions &options)
{
    bool isLoopbackServed = false;
    for (const ListenAddress &listen : options.listenAddresses()) {
        isLoopbackServed = isLoopbackServed || listen.isAny() || !listen.isBeyondLoopback();
        FUZZ_REQUIRE(listen.address == QLatin1String("localhost")
            || (AddressRange::parse(listen.address) && !listen.address.contains(QLatin1Char('/'))));
    }
    FUZZ_REQUIRE(isLoopbackServed);
    for (const QByteArray &host : options.names.hosts)
        FUZZ_REQUIRE(!host.isEmpty() && host == host.toLower() && !host.contains('/'));
    FUZZ_REQUIRE(options.names.basePath.isEmpty()
        || (options.names.basePath.startsWith('/') && !options.names.basePath.endsWith('/')));
    FUZZ_REQUIRE(options.certificateFile.isEmpty() == options.keyFile.isEmpty());
    for (const PluginOptions &plugin : options.plugins)
        FUZZ_REQUIRE(!plugin.file.isEmpty());
    for (const auto &entry : options.pinned)
        FUZZ_REQUIRE(options.values.find(entry.first) && !entry.second.isEmpty());
    for (const QString &entry : options.connectTo)
        FUZZ_REQUIRE(entry.count(QLatin1Char(':')) >= 3 && !entry.contains(QLatin1Char('\n')));
    FUZZ_REQUIRE((options.audio.kind == AudioOutputSpec::Wav) == !options.audio.file.isEmpty());
    for (const std::chrono::milliseconds time : {options.restartWait, options.watchdog})
        FUZZ_REQUIRE(time.count() >= 0 && time <= std::chrono::hours(1));
    FUZZ_REQUIRE(!options.logLevel.isEmpty() && options.logLevel == options.logLevel.toLower());
}

void start(const QStringList &arguments)
{
    const auto options = parseHostCommandLine(arguments);
    if (options)
        return requireSound(*options);
    const CommandLineEnd &end = options.error();
    FUZZ_REQUIRE(end.status == 0 || end.status == 2);
    FUZZ_REQUIRE(!end.text.isEmpty());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const ConfigFile file;
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const int end = bytes.indexOf(Separator);
    file.write(bytes.left(end));
    const QStringList arguments = end < 0 ? QStringList() : argumentsIn(bytes.mid(end + 1));
    start(QStringList {QStringLiteral("--config"), file.name()} + arguments);
    return 0;
}
