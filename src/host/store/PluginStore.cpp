// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/store/PluginStore.h"

#include "api/core/log.h"
#include "api/store/VeskStore.h"
#include "api/values/VeskRoles.h"
#include "host/store/NotSaved.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QFile>

#include <optional>

VESK_LOGGER("Host")

namespace {

using Values = QMap<QByteArray, QByteArray>;

const QByteArray &fileHead()
{
    static const QByteArray head("Vesk store 1\n");
    return head;
}

constexpr int DigestSize = 32;
/// What QDataStream adds to each key and value, in all.
constexpr std::size_t MaxFileBytes = VeskStore::MaxBytes + 8 * VeskStore::MaxKeys + 1024;

QByteArray digestOf(const QByteArray &body)
{
    return QCryptographicHash::hash(body, QCryptographicHash::Sha256);
}

/// The head, a digest of what follows, and the values.
QByteArray fileOf(const Values &values)
{
    QByteArray body;
    QDataStream out(&body, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    out << values;
    return fileHead() + digestOf(body) + body;
}

std::optional<Values> valuesIn(const QByteArray &file)
{
    const int start = fileHead().size() + DigestSize;
    const QByteArray body = file.mid(start);
    if (!file.startsWith(fileHead()) || file.mid(fileHead().size(), DigestSize) != digestOf(body))
        return std::nullopt;
    Values values;
    QDataStream in(body);
    in.setVersion(QDataStream::Qt_5_15);
    in >> values;
    return in.status() == QDataStream::Ok && in.atEnd() ? std::optional(values) : std::nullopt;
}

qint64 bytesOf(const Values &values)
{
    qint64 bytes = 0;
    for (auto it = values.constBegin(); it != values.constEnd(); ++it)
        bytes += it.key().size() + it->size();
    return bytes;
}

bool isStoreFile(const QByteArray &file)
{
    return valuesIn(file).has_value();
}

CMError notAllowed(const char *text)
{
    return CMError(TrString("Host", text));
}

CMError malformedError()
{
    return notAllowed(QT_TRANSLATE_NOOP("Host", "Not saved: these are no keys with values."));
}

CMError tooMuchError()
{
    return notAllowed(QT_TRANSLATE_NOOP("Host", "Not saved: a plug-in may not keep that much."));
}

/// Empty for what is no key.
QByteArray keyOf(const QString &text)
{
    const QByteArray key = text.toUtf8();
    // What is no Unicode has no UTF-8 of its own.
    const bool isKey = key.size() <= VeskStore::MaxKeyBytes && QString::fromUtf8(key) == text;
    return isKey ? key : QByteArray();
}

QByteArray notNull(const QByteArray &value)
{
    return value.isNull() ? QByteArray("") : value;
}

} // namespace

PluginStore::PluginStore(
    const QString &id, const QString &folder, Result<void, files::Problem> held)
    : m_path(prefix(), id)
    , m_folder(folder)
    , m_held(std::move(held))
    , m_file(
          folder.isEmpty() ? QString() : folder + QLatin1Char('/') + id + QStringLiteral(".store"),
          MaxFileBytes, QStringLiteral("values of a plug-in"), &isStoreFile)
    , m_queue([this](Changes changes) { write(std::move(changes)); })
{
    const CheckedFile::Content content = m_file.read();
    {
        const VeskMutexLock lock(m_mutex);
        m_contents.values = valuesIn(content.bytes).value_or(Values());
        m_contents.bytes = bytesOf(m_contents.values);
        // Where there are no values there need be no file.
        m_isUnsure = !content.isCurrent && !m_contents.values.isEmpty();
        if (m_isUnsure)
            tellOfWriting(bringToDisk(m_contents));
    }
    if (!m_isUnsure && m_held)
        m_file.writeLastGood();
    m_queue.open(QStringLiteral("Store ") + id);
}

PluginStore::~PluginStore() = default;

QVariantHash PluginStore::config() const
{
    Values kept;
    {
        const VeskMutexLock lock(m_mutex);
        kept = m_contents.values;
    }
    QVariantHash values;
    for (auto it = kept.constBegin(); it != kept.constEnd(); ++it)
        values.insert(QString::fromUtf8(it.key()), notNull(it.value()));
    return {{QStringLiteral("path"), m_path.toEncoded()}, {QStringLiteral("values"), values}};
}

void PluginStore::whenSettled(QObject *context, std::function<void()> function)
{
    const auto settled = std::make_shared<CMReplyAbstractData>();
    settled->whenFinished(context, std::move(function));
    {
        const VeskMutexLock lock(m_mutex);
        if (m_unsettled > 0) {
            m_settling.push_back(settled);
            return;
        }
    }
    settled->setFinished();
}

Result<PluginStore::Change, CMError> PluginStore::changeOf(const CMRequest &request)
{
    if (request.kind() != CMRequest::SetData)
        return failure(CMNoNodeError());
    const CMSetDataRequest setData(request);
    const QVariant &sent = setData.value();
    if (setData.role() != VeskRoles::Value() || sent.userType() != QMetaType::QVariantHash)
        return failure(malformedError());
    const QVariantHash hash = sent.toHash();
    if (hash.size() > VeskStore::MaxKeys)
        return failure(tooMuchError());
    Change change;
    change.reply = request.reply();
    for (auto it = hash.constBegin(); it != hash.constEnd(); ++it) {
        const QByteArray key = keyOf(it.key());
        const bool removes = !it->isValid();
        if (key.isEmpty() || (!removes && it->userType() != QMetaType::QByteArray))
            return failure(malformedError());
        const QByteArray value = removes ? QByteArray() : notNull(it->toByteArray());
        change.bytes += key.size() + value.size();
        change.values.insert(key, value);
    }
    return change;
}

/// Does nothing, and returns false, when that leads beyond what a store may hold.
bool PluginStore::apply(const Change &change, Contents &contents)
{
    int keys = contents.values.size();
    qint64 bytes = contents.bytes;
    for (auto it = change.values.constBegin(); it != change.values.constEnd(); ++it) {
        const auto present = std::as_const(contents.values).constFind(it.key());
        if (present != contents.values.constEnd()) {
            --keys;
            bytes -= it.key().size() + present->size();
        }
        if (!it->isNull()) {
            ++keys;
            bytes += it.key().size() + it->size();
        }
    }
    if (keys > VeskStore::MaxKeys || bytes > VeskStore::MaxBytes)
        return false;
    contents.bytes = bytes;
    for (auto it = change.values.constBegin(); it != change.values.constEnd(); ++it) {
        if (it->isNull())
            contents.values.remove(it.key());
        else
            contents.values.insert(it.key(), *it);
    }
    return true;
}

void PluginStore::request(const CMRequest &request)
{
    auto change = changeOf(request);
    if (!change)
        return request.reply().setError(change.error());
    const qint64 bytes = change->bytes;
    {
        const VeskMutexLock lock(m_mutex);
        // A change of more than a store can hold may remove as much, but waits alone.
        const bool fits = m_waitingBytes == 0 || m_waitingBytes + bytes <= MaxWaitingBytes;
        if (fits && m_queue.push(*change)) {
            m_waitingBytes += bytes;
            ++m_unsettled;
            return;
        }
    }
    request.reply().setError(diskBusyError());
}

/// On the writing thread.
void PluginStore::write(Changes changes)
{
    auto written = writeTogether(changes.begin(), changes.end());
    if (!written && changes.size() > 1) {
        // The disk may take some of them, such as those that remove something.
        for (auto it = changes.begin(); it != changes.end(); ++it)
            written = writeTogether(it, it + 1);
    }
    for (const Change &change : changes) {
        if (change.error.isEmpty())
            change.reply.setValue(QVariant());
        else
            change.reply.setError(change.error);
    }
    std::vector<std::shared_ptr<CMReplyAbstractData>> settling;
    {
        const VeskMutexLock lock(m_mutex);
        m_unsettled -= static_cast<int>(changes.size());
        for (const Change &change : changes)
            m_waitingBytes -= change.bytes;
        if (m_unsettled == 0)
            settling.swap(m_settling);
    }
    for (const auto &settled : settling)
        settled->setFinished();
    if (written && !m_isUnsure)
        m_file.writeLastGood(); // after the answers: no write waits for it
}

/// Sets the error of each change that is refused. After a failure nothing has changed.
Result<void, files::Problem> PluginStore::writeTogether(
    Changes::iterator begin, Changes::iterator end)
{
    Contents before;
    {
        const VeskMutexLock lock(m_mutex);
        before = m_contents;
    }
    Contents wanted = before;
    for (auto change = begin; change != end; ++change)
        change->error = apply(*change, wanted) ? CMError() : tooMuchError();
    const bool isThere = !m_isUnsure && wanted.values == before.values;
    const auto written = isThere ? Result<void, files::Problem>() : bringToDisk(wanted);
    if (!isThere)
        tellOfWriting(written);
    if (written) {
        const VeskMutexLock lock(m_mutex);
        m_contents = std::move(wanted);
        return {};
    }
    for (auto change = begin; change != end; ++change) {
        if (change->error.isEmpty())
            change->error = notSavedError(written.error());
    }
    return written;
}

Result<void, files::Problem> PluginStore::bringToDisk(const Contents &contents)
{
    if (m_folder.isEmpty()) {
        m_isUnsure = false;
        return {};
    }
    m_isUnsure = true;
    if (!m_held)
        return m_held;
    const std::string folder = QFile::encodeName(m_folder).toStdString();
    if (auto made = files::KeptFile::makeFolder(folder); !made)
        return made;
    if (auto written = m_file.write(fileOf(contents.values)); !written)
        return written;
    m_isUnsure = false;
    return {};
}

void PluginStore::tellOfWriting(const Result<void, files::Problem> &written)
{
    if (!written && !m_isFailing) {
        VESK_ERROR("What a plug-in keeps cannot be written to " << m_file.name() << ": "
                                                                << written.error().text);
    } else if (written && m_isFailing) {
        VESK_INFO("What a plug-in keeps is written to " << m_file.name() << " again.");
    }
    m_isFailing = !written;
}

bool PluginStore::close(std::chrono::steady_clock::time_point deadline)
{
    if (!m_queue.close(deadline)) {
        VESK_ERROR("The disk with " << m_folder << " does not answer.");
        return false;
    }
    // A failed write may have replaced the file all the same; what was refused must not come back.
    if (m_isUnsure) {
        const VeskMutexLock lock(m_mutex);
        tellOfWriting(bringToDisk(m_contents));
    }
    return true;
}
