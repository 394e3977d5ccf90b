// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Paired devices in a temporary folder, and a disk that a test can stop.
#pragma once

#include "host/access/PairedDevices.h"
#include "tests/support/WorkerThread.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

/// While it is set, fsync() does not return: PairedDevicesTest.cpp replaces it.
extern std::atomic<bool> diskIsStuck;
extern std::atomic<int> diskSyncs;

class AccessFixture : public testing::Test {
protected:
    explicit AccessFixture(const QString &folder = QString())
        : m_folder(folder.isEmpty() ? m_temporary.filePath(QStringLiteral("deep/state")) : folder)
    {
        openAgain();
    }
    ~AccessFixture() override { diskIsStuck = false; }

    /// As another host.
    void openAgain(const Result<void, files::Problem> &held = {})
    {
        m_devices.reset();
        m_devices = std::make_unique<PairedDevices>(m_folder, held);
        QObject::connect(m_devices.get(), &PairedDevices::accessChanged,
            [this](const QString &id) { m_accessChanged.append(id); });
        QObject::connect(m_devices.get(), &PairedDevices::changed, [this] { ++m_changes; });
    }

    /// The outcome of one call with an answer, in words; empty for success.
    template <class Function, class... Arguments>
    std::string outcome(Function function, Arguments... arguments)
    {
        std::optional<CMError> answer;
        ((*m_devices).*function)(arguments..., [&answer](const CMError &error) { answer = error; });
        if (!spinUntil([&answer] { return answer.has_value(); }))
            return "no answer";
        return answer->message().toString().toStdString();
    }
    std::string rename(const QString &id, const char *name)
    {
        return outcome(&PairedDevices::rename, id, QString::fromUtf8(name));
    }
    std::string setRole(const QString &id, AccessRole role)
    {
        return outcome(&PairedDevices::setRole, id, role);
    }
    std::string revoke(const QString &id) { return outcome(&PairedDevices::revoke, id); }

    /// The new device, or a default one with the error as its name.
    PairedDevices::Added add(const char *name, AccessRole role = AccessRole::Listener)
    {
        std::optional<PairedDevices::Added> added;
        m_devices->add(QString::fromUtf8(name), role, QStringLiteral("192.168.1.7"),
            [&added](const Result<PairedDevices::Added, CMError> &result) {
                added = result ? *result : PairedDevices::Added();
                if (!result)
                    added->device.name = result.error().message().toString();
            });
        EXPECT_TRUE(spinUntil([&added] { return added.has_value(); }));
        return added.value_or(PairedDevices::Added());
    }

    QString fileName(const char *suffix = "") const
    {
        return m_folder + QStringLiteral("/devices.json") + QString::fromLatin1(suffix);
    }
    QByteArray content(const char *suffix = "") const
    {
        QFile file(fileName(suffix));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void damage(const QByteArray &content, const char *suffix = "") const
    {
        QFile file(fileName(suffix));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    PairedDevice deviceOf(const QString &id) const
    {
        const auto devices = m_devices->devices();
        for (const PairedDevice &device : devices) {
            if (device.id == id)
                return device;
        }
        return {};
    }

    QTemporaryDir m_temporary;
    QString m_folder;
    std::unique_ptr<PairedDevices> m_devices;
    QStringList m_accessChanged;
    int m_changes = 0;
};
