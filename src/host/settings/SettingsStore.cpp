// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/SettingsStore.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/values/VeskValuePaths.h"
#include "host/store/StateVersion.h"

#include <QFile>

#include <cerrno>

VESK_LOGGER("Host")

namespace {

CMError refusal(const char *text)
{
    return CMError(TrString("Host", text));
}

CMError errorOf(const files::Problem &problem)
{
    if (problem.error == ENOSPC || problem.error == EDQUOT)
        return refusal(QT_TRANSLATE_NOOP("Host", "Not saved: the disk is full."));
    return refusal(
        QT_TRANSLATE_NOOP("Host", "Not saved: the disk cannot be written. The log says more."));
}

std::string nameOf(const QString &file)
{
    return QFile::encodeName(file).toStdString();
}

} // namespace

SettingsStore::SettingsStore(
    const QString &folder, const HostValues &definitions, CMValuesWorker *values, QObject *parent)
    : QObject(parent)
    , m_folder(folder)
    , m_definitions(definitions)
    , m_values(values)
    , m_lock(nameOf(folder + QStringLiteral("/lock")))
    , m_file(folder)
    , m_memberIdFile(folder)
{
}

SettingsStore::~SettingsStore()
{
    if (!close())
        m_writer.join();
    m_values->setKeep(nullptr);
}

Result<void, QString> SettingsStore::load()
{
    VESK_ASSERT_OWN_THREAD();
    if (auto taken = takeFolder(); !taken)
        return taken;
    const SettingsFile::Content content = m_file.read();
    m_kept = content.settings;
    m_isUnsure = !content.isCurrent;
    applyKept();
    ensureMemberId();
    if (m_isUnsure)
        tellOfWriting(bringToDisk(m_kept));
    if (!m_isUnsure)
        m_file.writeLastGood();
    {
        const VeskMutexLock lock(m_mutex);
        m_isOpen = true;
    }
    m_writer = std::thread([this] { run(); });
    m_values->setKeep([this](const CMPath &path, const VeskValue &value,
                          const CMValuesWorker::Kept &kept) { keep(path, value, kept); });
    return {};
}

Result<void, QString> SettingsStore::takeFolder()
{
    if (m_folder.isEmpty())
        return {};
    m_held = files::KeptFile::makeFolder(nameOf(m_folder));
    if (m_held)
        m_held = m_lock.take();
    if (!m_held && m_held.error().error == files::FileLock::HeldElsewhere) {
        return failure(QStringLiteral("the state folder is in use: %1")
                           .arg(QString::fromStdString(m_held.error().text)));
    }
    return StateVersion(m_folder).bringUpToDate(m_held);
}

void SettingsStore::applyKept()
{
    for (auto it = m_kept.values.constBegin(); it != m_kept.values.constEnd(); ++it) {
        const CMPath path = CMPath::fromEncoded(it.key());
        const HostValueDefinition *definition = m_definitions.find(path);
        if (!definition || definition->access != CMValuesWorker::Writable) {
            VESK_INFO("A setting that is kept is not known here, and stays kept: " << path);
            continue;
        }
        const VeskValue value = CMValuesWorker::fromPlain(it.value(), definition->initial.type());
        const CMError wrong = checkHostValue(*definition, it.value(), value);
        if (!wrong.isEmpty())
            VESK_WARN("A setting that is kept is not used. " << wrong.message());
        else if (!m_values->setValue(path, value)) {
            VESK_INFO("A setting that is kept is overruled at start: " << path);
            m_overruled.insert(path, value);
        }
    }
}

void SettingsStore::ensureMemberId()
{
    const QString own = m_memberIdFile.read();
    const QString amongSettings
        = MemberIdFile::isMemberId(m_kept.memberId) ? m_kept.memberId : QString();
    // The id's own file counts: only the first start has written it.
    if (!own.isEmpty() && !amongSettings.isEmpty() && own != amongSettings) {
        VESK_WARN(
            "The member id in " << m_file.fileName() << " is another device's; this one's stays.");
    }
    QString id = own.isEmpty() ? amongSettings : own;
    if (id.isEmpty())
        id = MemberIdFile::make();
    m_isIdKept = id == own;
    m_isUnsure |= !m_isIdKept || id != m_kept.memberId;
    m_kept.memberId = id;
    m_values->setValue(VeskSystemMemberIdPath(), VeskValue::fromString(id));
}

bool SettingsStore::close()
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_writer.joinable())
        return true;
    {
        const auto deadline = std::chrono::steady_clock::now() + EndTime;
        VeskMutexLock lock(m_mutex);
        m_isOpen = false;
        m_wake.notify_all();
        while (!m_hasEnded) {
            if (lock.waitUntil(m_wake, deadline) || m_hasEnded)
                continue;
            VESK_ERROR("The disk with " << m_folder << " does not answer.");
            return false;
        }
    }
    m_writer.join();
    deliver();
    // A failed write may have replaced the file all the same; a refused change must not come back.
    if (m_isUnsure)
        tellOfWriting(bringToDisk(m_kept));
    return true;
}

void SettingsStore::keep(
    const CMPath &path, const VeskValue &value, const CMValuesWorker::Kept &kept)
{
    const HostValueDefinition *definition = m_definitions.find(path);
    if (!definition)
        return kept(CMError());
    {
        const VeskMutexLock lock(m_mutex);
        if (m_isOpen && m_waiting.size() < MaxWaiting) {
            m_waiting.push_back({path, value, kept});
            m_wake.notify_all();
            return;
        }
    }
    kept(refusal(QT_TRANSLATE_NOOP("Host", "Not saved: too much is waiting for the disk.")));
}

void SettingsStore::run()
{
    veskSetThreadName(QStringLiteral("Settings"));
    VeskMutexLock lock(m_mutex);
    for (;;) {
        while (m_isOpen && m_waiting.empty())
            lock.wait(m_wake);
        if (m_waiting.empty())
            break;
        Changes changes;
        changes.swap(m_waiting);
        lock.unlock();
        write(std::move(changes));
        lock.lock();
    }
    m_hasEnded = true;
    m_wake.notify_all();
}

void SettingsStore::write(Changes changes)
{
    const KeptSettings wanted = changed(changes);
    const bool isThere = !m_isUnsure && wanted == m_kept;
    const auto written = isThere ? Result<void, files::Problem>() : bringToDisk(wanted);
    if (written)
        m_kept = wanted;
    tellOfWriting(written);
    {
        const VeskMutexLock lock(m_mutex);
        m_written.push_back({std::move(changes), written ? CMError() : errorOf(written.error())});
    }
    QMetaObject::invokeMethod(
        this, [this] { deliver(); }, Qt::QueuedConnection);
    if (written && !isThere)
        m_file.writeLastGood(); // after the answers: no request waits for it
}

KeptSettings SettingsStore::changed(const Changes &changes) const
{
    KeptSettings settings = m_kept;
    for (const Change &change : changes) {
        // Only what differs is kept, so that a better default of a later version counts.
        if (change.value == m_definitions.find(change.path)->initial)
            settings.values.remove(change.path.toEncoded());
        else
            settings.values.insert(change.path.toEncoded(), plainValue(change.value));
    }
    return settings;
}

Result<void, files::Problem> SettingsStore::bringToDisk(const KeptSettings &settings)
{
    if (m_folder.isEmpty()) {
        m_isUnsure = false;
        return {};
    }
    m_isUnsure = true;
    // The folder could not be read at the start; what lies in it must not be replaced.
    if (!m_held)
        return m_held;
    if (!m_isIdKept) {
        if (auto written = m_memberIdFile.write(settings.memberId); !written)
            return written;
        m_isIdKept = true;
    }
    if (auto written = m_file.write(settings); !written)
        return written;
    m_isUnsure = false;
    return {};
}

void SettingsStore::tellOfWriting(const Result<void, files::Problem> &written)
{
    if (!written && !m_isFailing)
        VESK_ERROR("Settings cannot be kept in " << m_folder << ": " << written.error().text);
    else if (written && m_isFailing)
        VESK_INFO("Settings are kept in " << m_folder << " again.");
    m_isFailing = !written;
}

void SettingsStore::deliver()
{
    std::vector<Written> written;
    {
        const VeskMutexLock lock(m_mutex);
        written.swap(m_written);
    }
    for (const Written &batch : written) {
        for (const Change &change : batch.changes)
            change.kept(batch.error);
    }
}
