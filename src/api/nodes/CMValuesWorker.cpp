// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMValuesWorker.h"

#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskRoles.h"

#include <cmath>
#include <limits>
#include <optional>

namespace {

/// The key of a value: its path without parameters.
CMPath keyOf(const CMPath &path)
{
    return CMPath(path.prefix(), path.base());
}

CMError refusedError()
{
    return CMError(TrString("CMValuesWorker", "The value cannot be changed."));
}

CMError wrongTypeError()
{
    return CMError(TrString("CMValuesWorker", "The value is not of the right type."));
}

CMError noRowsError()
{
    return CMError(TrString("CMValuesWorker", "A value has no rows."));
}

bool isNumber(const QVariant &plain)
{
    switch (plain.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

bool isText(const QVariant &plain)
{
    return plain.userType() == QMetaType::QString;
}

VeskValue boolFrom(const QVariant &plain)
{
    if (plain.userType() == QMetaType::Bool)
        return VeskValue::fromBool(plain.toBool());
    if (isText(plain) || isNumber(plain)) {
        const QString text = plain.toString();
        if (text == QLatin1String("true") || text == QLatin1String("1"))
            return VeskValue::fromBool(true);
        if (text == QLatin1String("false") || text == QLatin1String("0"))
            return VeskValue::fromBool(false);
    }
    return VeskValue();
}

/// The finite number that \a plain is or spells.
std::optional<double> readNumber(const QVariant &plain)
{
    bool ok = false;
    const double number = isNumber(plain) || isText(plain) ? plain.toDouble(&ok) : 0;
    return ok && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

VeskValue intFrom(const QVariant &plain)
{
    const std::optional<double> number = readNumber(plain);
    if (!number || *number != std::trunc(*number) || *number < std::numeric_limits<int>::min()
        || *number > std::numeric_limits<int>::max())
        return VeskValue();
    return VeskValue::fromInt(static_cast<int>(*number));
}

VeskValue doubleFrom(const QVariant &plain)
{
    VeskValue value;
    if (const std::optional<double> number = readNumber(plain))
        value.setDouble(*number);
    return value;
}

VeskValue stringFrom(const QVariant &plain)
{
    if (isText(plain) || isNumber(plain) || plain.userType() == QMetaType::Bool)
        return VeskValue::fromString(plain.toString());
    return VeskValue();
}

QVariantHash hashOf(const QVariant &plain)
{
    switch (plain.userType()) {
    case QMetaType::QVariantHash:
        return plain.toHash();
    case QMetaType::QVariantMap: {
        const QVariantMap map = plain.toMap();
        QVariantHash hash;
        for (auto it = map.begin(); it != map.end(); ++it)
            hash.insert(it.key(), it.value());
        return hash;
    }
    default:
        return QVariantHash();
    }
}

VeskValue hashFrom(const QVariant &plain, VeskValueType::Enum type)
{
    if (plain.userType() != QMetaType::QVariantHash && plain.userType() != QMetaType::QVariantMap)
        return VeskValue();
    QVariantHash value;
    value.insert(QStringLiteral("type"), int(type));
    value.insert(VeskValueType::toString(type), hashOf(plain));
    return VeskHash(std::move(value));
}

/// The value of \a type that a client sent, as a VeskValue or a plain value; empty when what it
/// sent is not of that type.
VeskValue sentValue(const QVariant &sent, VeskValueType::Enum type)
{
    const QVariantHash hash = hashOf(sent);
    if (!hash.isEmpty()) {
        const VeskValue value {VeskHash(hash)};
        if (value.type() == type)
            return CMValuesWorker::fromPlain(value.value(VeskValueType::toString(type)), type);
    }
    return CMValuesWorker::fromPlain(sent, type);
}

} // namespace

CMValuesWorker::CMValuesWorker(QObject *parent)
    : CMAbstractWorker(parent)
{
    qRegisterMetaType<CMPath>("CMPath");
    qRegisterMetaType<VeskValue>("VeskValue");
}

CMValuesWorker::~CMValuesWorker() = default;

VeskValue CMValuesWorker::fromPlain(const QVariant &plain, VeskValueType::Enum type)
{
    switch (type) {
    case VeskValueType::bool_:
        return boolFrom(plain);
    case VeskValueType::int_:
        return intFrom(plain);
    case VeskValueType::double_:
        return doubleFrom(plain);
    case VeskValueType::string_:
        return stringFrom(plain);
    case VeskValueType::hash:
    case VeskValueType::account:
    case VeskValueType::tuneInAccount:
        return hashFrom(plain, type);
    case VeskValueType::none:
        break;
    }
    return VeskValue();
}

void CMValuesWorker::define(
    const CMPath &path, const VeskValue &value, Access access, const TrString &title)
{
    const CMPath key = keyOf(path);
    {
        const VeskMutexLock lock(m_mutex);
        VESK_ASSERT(!m_entries.contains(key));
        Entry &entry = m_entries[key];
        entry.value = value;
        entry.access = access;
        entry.title = title;
    }
    CMSubscribe().changedStartingWith(key, CMSubscribe::ValueChanged(), -1, -1);
}

void CMValuesWorker::describe(const CMPath &path, const TrString &description)
{
    const VeskMutexLock lock(m_mutex);
    const auto found = m_entries.find(keyOf(path));
    VESK_ASSERT(found != m_entries.end());
    found->description = description;
}

void CMValuesWorker::setCheck(const CMPath &path, Check check)
{
    const VeskMutexLock lock(m_mutex);
    const auto found = m_entries.find(keyOf(path));
    VESK_ASSERT(found != m_entries.end());
    found->check = std::move(check);
}

bool CMValuesWorker::setValue(const CMPath &path, const VeskValue &value)
{
    return change(path, value, false) == Outcome::Done;
}

void CMValuesWorker::pin(const CMPath &path)
{
    const VeskMutexLock lock(m_mutex);
    const auto found = m_entries.find(keyOf(path));
    VESK_ASSERT(found != m_entries.end());
    found->pinned = true;
}

void CMValuesWorker::unpin(const CMPath &path)
{
    const VeskMutexLock lock(m_mutex);
    const auto found = m_entries.find(keyOf(path));
    VESK_ASSERT(found != m_entries.end());
    found->pinned = false;
}

VeskValue CMValuesWorker::value(const CMPath &path) const
{
    const VeskMutexLock lock(m_mutex);
    return m_entries.value(keyOf(path)).value;
}

bool CMValuesWorker::isDefined(const CMPath &path) const
{
    const VeskMutexLock lock(m_mutex);
    return m_entries.contains(keyOf(path));
}

QList<CMPath> CMValuesWorker::paths() const
{
    const VeskMutexLock lock(m_mutex);
    return m_entries.keys();
}

void CMValuesWorker::setKeep(Keep keep)
{
    const VeskMutexLock lock(m_mutex);
    m_keep = std::move(keep);
}

CMValuesWorker::Outcome CMValuesWorker::permission(
    const Entry &entry, const VeskValue &value, bool byRequest)
{
    if (entry.pinned || (byRequest && entry.access != Writable))
        return Outcome::Refused;
    return value.type() == entry.value.type() ? Outcome::Done : Outcome::WrongType;
}

CMValuesWorker::Outcome CMValuesWorker::change(
    const CMPath &path, const VeskValue &value, bool byRequest)
{
    const CMPath key = keyOf(path);
    {
        const VeskMutexLock lock(m_mutex);
        const auto found = m_entries.find(key);
        if (found == m_entries.end())
            return Outcome::Unknown;
        const Outcome permitted = permission(*found, value, byRequest);
        if (permitted != Outcome::Done)
            return permitted;
        if (value == found->value)
            return Outcome::Done;
        found->value = value;
    }
    CMSubscribe().changedStartingWith(key, CMSubscribe::ValueChanged(), -1, -1);
    Q_EMIT valueChanged(key, value, byRequest);
    return Outcome::Done;
}

void CMValuesWorker::request(CMRequest request)
{
    if (!isDefined(request.path())) {
        request.reply().setError(CMNoNodeError());
        return;
    }
    switch (request.kind()) {
    case CMRequest::GetData:
        getData(CMGetDataRequest(request));
        break;
    case CMRequest::SetData:
        setData(CMSetDataRequest(request));
        break;
    case CMRequest::GetRows:
    case CMRequest::MatchRow:
        request.reply().setError(noRowsError());
        break;
    case CMRequest::None:
        break;
    }
}

void CMValuesWorker::getData(const CMGetDataRequest &request)
{
    Entry entry;
    {
        const VeskMutexLock lock(m_mutex);
        entry = m_entries.value(keyOf(request.path()));
    }
    VeskRoles roles;
    roles.insert(VeskRoles::Value(), entry.value);
    roles.insert(VeskRoles::Type(), VeskRolesType::Value());
    if (!entry.title.isEmpty())
        roles.setTitle(entry.title);
    if (!entry.description.isEmpty())
        roles.setDescription(entry.description);
    if (entry.pinned)
        roles.insert(QStringLiteral("pinned"), true);
    roles.setPath(request.path());

    QVariantList values;
    bool isRead = false;
    for (const QString &role :
        request.roles() == CMAllRoles() ? VeskRoles::all() : request.roles()) {
        values.append(roles.value(role));
        isRead |= role == VeskRoles::Value();
    }
    if (isRead)
        Q_EMIT valueRead(keyOf(request.path()), entry.value);
    request.reply().setValue(values);
}

void CMValuesWorker::setData(const CMSetDataRequest &request)
{
    if (request.role() != VeskRoles::Value()) {
        request.reply().setError(refusedError());
        return;
    }
    const VeskValue present = value(request.path());
    const VeskValue sent = sentValue(request.value(), present.type());
    Keep keep;
    Check check;
    Outcome permitted = Outcome::Unknown;
    {
        const VeskMutexLock lock(m_mutex);
        const auto found = m_entries.constFind(keyOf(request.path()));
        if (found != m_entries.constEnd()) {
            permitted = permission(*found, sent, true);
            check = found->check;
        }
        keep = m_keep;
    }
    if (check && (permitted == Outcome::Done || permitted == Outcome::WrongType)) {
        const CMError wrong = check(request.value(), sent);
        if (!wrong.isEmpty())
            return request.reply().setError(wrong);
    }
    if (permitted != Outcome::Done)
        return request.reply().setError(errorOf(permitted));
    if (!keep)
        return write(request, sent);
    keep(keyOf(request.path()), sent, [this, request, sent](const CMError &error) {
        if (error.isEmpty())
            write(request, sent);
        else
            request.reply().setError(error);
    });
}

void CMValuesWorker::write(const CMSetDataRequest &request, const VeskValue &value)
{
    const Outcome outcome = change(request.path(), value, true);
    if (outcome == Outcome::Done)
        request.reply().setValue(value);
    else
        request.reply().setError(errorOf(outcome));
}

CMError CMValuesWorker::errorOf(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Unknown:
        return CMNoNodeError();
    case Outcome::Refused:
        return refusedError();
    case Outcome::WrongType:
        return wrongTypeError();
    case Outcome::Done:
        break;
    }
    return CMError();
}

void CMValuesWorker::languageChanged()
{
    QList<CMPath> titled;
    {
        const VeskMutexLock lock(m_mutex);
        for (auto it = m_entries.constBegin(); it != m_entries.constEnd(); ++it) {
            if (it->title.isTranslatable())
                titled.append(it.key());
        }
    }
    for (const CMPath &path : titled)
        CMSubscribe().changedStartingWith(path, CMSubscribe::ValueChanged(), -1, -1);
}
