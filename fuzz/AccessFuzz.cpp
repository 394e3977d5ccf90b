// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskJson.h"
#include "fuzz/fuzzing.h"
#include "host/access/Pairing.h"
#include "host/access/PairingResource.h"

#include <QCoreApplication>

#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>

#include <optional>

// What strangers send to be paired, and the file of paired devices: only the code pairs, with a
// name that can be shown, and a file that is accepted is one that the host would write.

namespace {

/// The first byte of an input, which tells what the rest is.
constexpr char File = 'F';
/// Stands for the code, in what a stranger sends.
constexpr char CodePlace[] = "CODE";

void readFile(const QByteArray &bytes)
{
    const auto list = DeviceList::fromFile(bytes);
    if (!list)
        return;
    FUZZ_REQUIRE(list->devices.size() <= DeviceList::MaxDevices);
    for (const KeptDevice &device : list->devices) {
        FUZZ_REQUIRE(DeviceList::isName(device.name));
        FUZZ_REQUIRE(device.digest.size() == DeviceList::DigestSize);
        FUZZ_REQUIRE(device.paired.isValid());
        FUZZ_REQUIRE(list->find(device.id) == &device);
    }
    const auto again = DeviceList::fromFile(list->toFile());
    FUZZ_REQUIRE(again && again->toFile() == list->toFile());
}

class Host {
public:
    Host()
        : m_application(m_argc, m_argv)
        , m_devices(QString(), {})
        , m_pairing(&m_devices)
        , m_resource(&m_pairing)
    {
        log4cplus::Logger::getRoot().setLogLevel(log4cplus::OFF_LOG_LEVEL);
    }

    void pair(QByteArray body)
    {
        const QString code = m_pairing.start(AccessRole::Listener);
        HttpRequest request;
        request.body = body.replace(CodePlace, code.toLatin1());
        std::optional<HttpResponse> response;
        m_resource.get(request, [&](const HttpResponse &one) {
            FUZZ_REQUIRE(!response);
            response = one;
        });
        while (!response)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        VeskError error;
        FUZZ_REQUIRE(!VeskJson::parse(response->body, error).toHash().isEmpty());
        const auto devices = m_devices.devices();
        FUZZ_REQUIRE(devices.size() == (response->code == 200 ? 1 : 0));
        if (devices.isEmpty()) {
            FUZZ_REQUIRE(response->code == 400 || response->code == 403);
            return;
        }
        const QVariantHash sent = VeskJson::parse(request.body, error).toHash();
        FUZZ_REQUIRE(sent.value(QStringLiteral("code")) == QVariant(code));
        FUZZ_REQUIRE(DeviceList::isName(devices.constFirst().name));
        m_devices.revoke(devices.constFirst().id, [](const CMError &) {});
    }

private:
    int m_argc = 1;
    char m_name[5] = "fuzz";
    char *m_argv[2] = {m_name, nullptr};
    QCoreApplication m_application;
    PairedDevices m_devices;
    Pairing m_pairing;
    PairingResource m_resource;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const log4cplus::Initializer logging;
    static Host host;
    if (size == 0)
        return 0;
    const QByteArray rest(reinterpret_cast<const char *>(data) + 1, static_cast<int>(size) - 1);
    if (*data == File)
        readFile(rest);
    else
        host.pair(rest);
    return 0;
}
