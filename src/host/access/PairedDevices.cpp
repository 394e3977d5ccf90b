// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/PairedDevices.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "host/access/Secrets.h"
#include "host/store/NotSaved.h"

#include <QFile>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

VESK_LOGGER("Host")

namespace {

CMError errorOf(const char *text)
{
    return CMError(TrString("Host", text));
}

CMError noDeviceError()
{
    return errorOf(QT_TRANSLATE_NOOP("Host", "There is no such device."));
}

/// Of what takes access away, which is in effect all the same.
CMError notYetSavedError()
{
    return errorOf(QT_TRANSLATE_NOOP("Host",
        "In effect, but not saved: the disk cannot be written. It will be tried again; a restart "
        "before then undoes it."));
}

bool isDeviceFile(const QByteArray &file)
{
    return DeviceList::fromFile(file).has_value();
}

QDateTime nowInSeconds()
{
    return QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch()).toUTC();
}

/// Without the zone of a link-local address; empty for what is none.
QString plainAddress(const QString &address)
{
    const QString plain = address.section(QLatin1Char('%'), 0, 0);
    return DeviceList::isAddress(plain) ? plain : QString();
}

} // namespace

void PairedDevices::Change::finish() const
{
    if (added && error.isEmpty())
        added(Added {device, token});
    else if (added)
        added(failure(error));
    else if (answer)
        answer(error);
}

CMError PairedDevices::fullError()
{
    return errorOf(QT_TRANSLATE_NOOP(
        "Host", "No more devices can be paired. Remove one that is no longer in use."));
}

PairedDevices::PairedDevices(
    const QString &folder, Result<void, files::Problem> held, QObject *parent)
    : QObject(parent)
    , m_folder(folder)
    , m_retry(this)
    , m_held(std::move(held))
    , m_file(folder.isEmpty() ? QString() : folder + QStringLiteral("/devices.json"),
          DeviceList::MaxFileSize, QStringLiteral("paired devices"), &isDeviceFile)
    , m_queue([this](Changes changes) { write(std::move(changes)); })
{
    m_retry.setInterval(RetryTime);
    veskConnect(&m_retry, &QTimer::timeout, this, &PairedDevices::retry);
    const CheckedFile::Content content = m_file.read();
    m_kept = DeviceList::fromFile(content.bytes).value_or(DeviceList());
    {
        const VeskMutexLock lock(m_mutex);
        m_devices = m_kept;
    }
    for (const KeptDevice &device : std::as_const(m_kept.devices))
        m_seenKept.insert(device.id, device.seen);
    // Where there are no devices there need be no file.
    m_isUnsure = !content.isCurrent && !m_kept.devices.isEmpty();
    if (m_isUnsure)
        tellOfWriting(bringToDisk(m_kept));
    else if (m_held)
        m_file.writeLastGood();
    if (m_isUnsure)
        m_retry.start();
    m_queue.open(QStringLiteral("Devices"));
}

PairedDevices::~PairedDevices()
{
    using Clock = std::chrono::steady_clock;
    while (!m_queue.close(Clock::now() + std::chrono::minutes(1))) { }
    settle();
}

bool PairedDevices::close(std::chrono::steady_clock::time_point deadline)
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_queue.close(deadline)) {
        VESK_ERROR("The disk with " << m_folder << " does not answer.");
        return false;
    }
    settle();
    deliver();
    return true;
}

/// Brings to the disk what is not there yet, when the thread has ended.
void PairedDevices::settle()
{
    m_retry.stop();
    if (!m_overdue.empty() || m_isUnsure)
        write(std::exchange(m_overdue, {}));
}

std::optional<Caller> PairedDevices::find(const QByteArray &token) const
{
    if (token.size() != AccessTokenLength)
        return std::nullopt;
    const QByteArray digest = accessTokenDigest(token);
    std::optional<Caller> found;
    const VeskMutexLock lock(m_mutex);
    for (const KeptDevice &device : m_devices.devices) {
        if (isSameSecret(device.digest, digest))
            found = Caller {device.role, device.id};
    }
    return found;
}

std::optional<Caller> PairedDevices::current(const QString &id) const
{
    const VeskMutexLock lock(m_mutex);
    const KeptDevice *const device = m_devices.find(id);
    return device ? std::optional<Caller>({device->role, device->id}) : std::nullopt;
}

QVector<PairedDevice> PairedDevices::devices() const
{
    QVector<PairedDevice> devices;
    const VeskMutexLock lock(m_mutex);
    for (const KeptDevice &device : m_devices.devices)
        devices.append(device);
    return devices;
}

bool PairedDevices::isFull() const
{
    VESK_ASSERT_OWN_THREAD();
    const VeskMutexLock lock(m_mutex);
    return m_devices.devices.size() + m_adding >= DeviceList::MaxDevices;
}

void PairedDevices::add(
    const QString &name, AccessRole role, const QString &address, const AddedAnswer &answer)
{
    VESK_ASSERT_OWN_THREAD();
    VESK_ASSERT(DeviceList::isName(name));
    if (isFull())
        return answer(failure(fullError()));
    Change change;
    change.kind = Change::Add;
    change.token = makeAccessToken();
    change.added = answer;
    // As many random bits as no two devices will share.
    change.device.id = QString::fromLatin1(randomBytes(8).toHex());
    change.device.name = name;
    change.device.role = role;
    change.device.paired = nowInSeconds();
    change.device.seen = change.device.paired;
    change.device.address = plainAddress(address);
    change.device.digest = accessTokenDigest(change.token);
    ++m_adding;
    push(std::move(change));
}

void PairedDevices::rename(const QString &id, const QString &name, const Answer &answer)
{
    VESK_ASSERT_OWN_THREAD();
    VESK_ASSERT(DeviceList::isName(name));
    Change change;
    change.kind = Change::Rename;
    change.device.id = id;
    change.device.name = name;
    change.answer = answer;
    push(std::move(change));
}

void PairedDevices::setRole(const QString &id, AccessRole role, const Answer &answer)
{
    VESK_ASSERT_OWN_THREAD();
    bool isLess = false;
    {
        const VeskMutexLock lock(m_mutex);
        KeptDevice *const device = m_devices.find(id);
        if (device && role == AccessRole::Listener)
            isLess = std::exchange(device->role, role) != role;
        else if (device)
            m_promoting.insert(id);
    }
    if (role == AccessRole::Listener)
        m_promoting.remove(id);
    Change change;
    change.kind = role == AccessRole::Owner ? Change::Promote : Change::Demote;
    change.device.id = id;
    change.answer = answer;
    push(std::move(change));
    if (isLess) {
        Q_EMIT accessChanged(id);
        Q_EMIT changed();
    }
}

void PairedDevices::revoke(const QString &id, const Answer &answer)
{
    VESK_ASSERT_OWN_THREAD();
    KeptDevice device;
    {
        const VeskMutexLock lock(m_mutex);
        if (const KeptDevice *const found = m_devices.find(id))
            device = *found;
        m_devices.remove(id);
    }
    if (device.id.isEmpty())
        return answer(noDeviceError());
    VESK_INFO("The device " << device.name << " (" << id << ") may no longer come in.");
    m_promoting.remove(id);
    m_seenKept.remove(id);
    Change change;
    change.kind = Change::Revoke;
    change.device.id = id;
    change.answer = answer;
    push(std::move(change));
    Q_EMIT accessChanged(id);
    Q_EMIT changed();
}

void PairedDevices::seen(const QString &id, const QString &address)
{
    VESK_ASSERT_OWN_THREAD();
    const QDateTime now = nowInSeconds();
    Change change;
    {
        const VeskMutexLock lock(m_mutex);
        KeptDevice *const device = m_devices.find(id);
        if (!device)
            return;
        device->seen = now;
        device->address = plainAddress(address);
        change.device = *device;
    }
    const QDateTime kept = m_seenKept.value(id);
    // The clock may have been set back.
    if (kept.isValid() && std::abs(kept.secsTo(now)) < std::chrono::seconds(SeenInterval).count())
        return;
    m_seenKept.insert(id, now);
    change.kind = Change::Seen;
    push(std::move(change));
}

void PairedDevices::push(Change change)
{
    // While something waits here, nothing may overtake it.
    if (m_overdue.empty() && m_queue.push(change))
        return;
    if (change.kind == Change::Add)
        --m_adding;
    else if (change.kind == Change::Promote)
        m_promoting.remove(change.device.id);
    Change refused = change;
    refused.error = change.takesAccess() ? notYetSavedError() : diskBusyError();
    const bool isWaiting
        = std::any_of(m_overdue.begin(), m_overdue.end(), [&change](const Change &other) {
              return other.kind == change.kind && other.device.id == change.device.id;
          });
    if (change.takesAccess() && !isWaiting) {
        change.answer = nullptr;
        m_overdue.push_back(std::move(change));
        m_retry.start();
    }
    refused.finish();
}

void PairedDevices::retry()
{
    m_overdue.emplace_back();
    std::size_t pushed = 0;
    while (pushed < m_overdue.size() && m_queue.push(m_overdue[pushed]))
        ++pushed;
    m_overdue.erase(m_overdue.begin(), m_overdue.begin() + static_cast<std::ptrdiff_t>(pushed));
    if (!m_overdue.empty())
        m_overdue.pop_back(); // the change that says only to try again
}

/// Returns false when there is no such device.
bool PairedDevices::apply(const Change &change, DeviceList &list)
{
    if (change.kind == Change::Add) {
        list.devices.append(change.device);
        return true;
    }
    if (change.kind == Change::Revoke) {
        list.remove(change.device.id);
        return true;
    }
    if (change.kind == Change::Retry)
        return true;
    KeptDevice *const device = list.find(change.device.id);
    if (!device)
        return false;
    if (change.kind == Change::Rename) {
        device->name = change.device.name;
    } else if (change.kind == Change::Seen) {
        device->seen = change.device.seen;
        device->address = change.device.address;
    } else {
        device->role = change.kind == Change::Promote ? AccessRole::Owner : AccessRole::Listener;
    }
    return true;
}

void PairedDevices::write(Changes changes)
{
    DeviceList wanted = m_kept;
    for (Change &change : changes)
        change.error = apply(change, wanted) ? CMError() : noDeviceError();
    const bool isThere = !m_isUnsure && wanted.toFile() == m_kept.toFile();
    const auto written = isThere ? Result<void, files::Problem>() : bringToDisk(wanted);
    tellOfWriting(written);
    if (written) {
        m_kept = std::move(wanted);
    } else {
        for (Change &change : changes) {
            // It stays to be written.
            if (change.takesAccess())
                apply(change, m_kept);
            if (change.error.isEmpty()) {
                change.error
                    = change.takesAccess() ? notYetSavedError() : notSavedError(written.error());
            }
        }
    }
    {
        const VeskMutexLock lock(m_mutex);
        std::move(changes.begin(), changes.end(), std::back_inserter(m_written));
        m_isSaved = !m_isUnsure;
    }
    QMetaObject::invokeMethod(
        this, [this] { deliver(); }, Qt::QueuedConnection);
}

/// With its copy: whoever was shut out would be let in again by an older one, should the file be
/// damaged.
Result<void, files::Problem> PairedDevices::bringToDisk(const DeviceList &devices)
{
    if (m_folder.isEmpty()) {
        m_isUnsure = false;
        return {};
    }
    m_isUnsure = true;
    if (!m_held)
        return m_held;
    if (auto made = files::KeptFile::makeFolder(QFile::encodeName(m_folder).toStdString()); !made)
        return made;
    if (auto written = m_file.write(devices.toFile()); !written)
        return written;
    if (!m_file.writeLastGood())
        return failure(files::Problem {0, "its copy cannot be written"});
    m_isUnsure = false;
    return {};
}

void PairedDevices::tellOfWriting(const Result<void, files::Problem> &written)
{
    if (!written && !m_isFailing) {
        VESK_ERROR(
            "Paired devices cannot be kept in " << m_file.name() << ": " << written.error().text);
    } else if (written && m_isFailing) {
        VESK_INFO("Paired devices are kept in " << m_file.name() << " again.");
    }
    m_isFailing = !written;
}

void PairedDevices::deliver()
{
    Changes changes;
    bool isSaved = false;
    {
        const VeskMutexLock lock(m_mutex);
        changes.swap(m_written);
        isSaved = m_isSaved;
    }
    if (!isSaved && !m_retry.isActive())
        m_retry.start();
    else if (isSaved && m_overdue.empty())
        m_retry.stop();
    for (const Change &change : changes)
        deliver(change);
}

void PairedDevices::deliver(const Change &change)
{
    bool isChanged = false;
    bool isMore = false;
    const bool isPromoted = change.kind == Change::Promote && m_promoting.remove(change.device.id);
    if (change.kind == Change::Add)
        --m_adding;
    if (change.error.isEmpty()) {
        const VeskMutexLock lock(m_mutex);
        KeptDevice *const device = m_devices.find(change.device.id);
        if (change.kind == Change::Add) {
            m_devices.devices.append(change.device);
            m_seenKept.insert(change.device.id, change.device.seen);
            isChanged = true;
        } else if (device && change.kind == Change::Rename) {
            isChanged = std::exchange(device->name, change.device.name) != change.device.name;
        } else if (device && isPromoted) {
            isMore = std::exchange(device->role, AccessRole::Owner) != AccessRole::Owner;
        }
    }
    if (change.kind == Change::Add && isChanged) {
        VESK_INFO("The device " << change.device.name << " (" << change.device.id
                                << ") is paired, as " << accessRoleName(change.device.role)
                                << ", from " << change.device.address << '.');
    }
    if (isMore)
        Q_EMIT accessChanged(change.device.id);
    if (isMore || isChanged)
        Q_EMIT changed();
    change.finish();
}
