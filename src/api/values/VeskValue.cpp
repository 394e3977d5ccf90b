// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskValue.h"

#include "api/values/VeskAccount.h"

#include <array>

namespace {

[[maybe_unused]] const bool Registered = veskRegisterHashType<VeskValue>("VeskValue");

struct TypeName {
    VeskValueType::Enum type;
    QString name;
};

const std::array<TypeName, 7> &typeNames()
{
    static const std::array<TypeName, 7> names = {{
        {VeskValueType::bool_, QStringLiteral("bool_")},
        {VeskValueType::int_, QStringLiteral("int_")},
        {VeskValueType::double_, QStringLiteral("double_")},
        {VeskValueType::string_, QStringLiteral("string_")},
        {VeskValueType::hash, QStringLiteral("hash")},
        {VeskValueType::account, QStringLiteral("account")},
        {VeskValueType::tuneInAccount, QStringLiteral("tuneInAccount")},
    }};
    return names;
}

const QString &nameOf(VeskValueType::Enum type)
{
    static const QString none;
    for (const TypeName &entry : typeNames()) {
        if (entry.type == type)
            return entry.name;
    }
    return none;
}

VESK_KEY(typeKey, "type")

} // namespace

QString VeskValueType::toString(Enum type)
{
    return nameOf(type);
}

VeskValueType::Enum VeskValueType::fromString(const QString &name)
{
    for (const TypeName &entry : typeNames()) {
        if (entry.name == name)
            return entry.type;
    }
    return none;
}

VeskValue VeskValue::fromBool(bool value)
{
    VeskValue result;
    result.setBool(value);
    return result;
}

VeskValue VeskValue::fromInt(int value)
{
    VeskValue result;
    result.setInt(value);
    return result;
}

VeskValue VeskValue::fromString(const QString &value)
{
    VeskValue result;
    result.setString(value);
    return result;
}

VeskValueType::Enum VeskValue::type() const
{
    const int code = number(typeKey());
    for (const TypeName &entry : typeNames()) {
        if (entry.type == code)
            return entry.type;
    }
    return VeskValueType::fromString(text(typeKey()));
}

bool VeskValue::bool_() const
{
    return type() == VeskValueType::bool_ && flag(nameOf(VeskValueType::bool_));
}

int VeskValue::int_() const
{
    return type() == VeskValueType::int_ ? number(nameOf(VeskValueType::int_)) : 0;
}

double VeskValue::double_() const
{
    return type() == VeskValueType::double_ ? value(nameOf(VeskValueType::double_)).toDouble()
                                            : 0.0;
}

QString VeskValue::string_() const
{
    return type() == VeskValueType::string_ ? text(nameOf(VeskValueType::string_)) : QString();
}

VeskTuneInAccount VeskValue::tuneInAccount() const
{
    if (type() != VeskValueType::tuneInAccount)
        return VeskTuneInAccount();
    return VeskTuneInAccount(hash(nameOf(VeskValueType::tuneInAccount)));
}

VeskAccount VeskValue::account() const
{
    if (type() != VeskValueType::account)
        return VeskAccount();
    return VeskAccount(hash(nameOf(VeskValueType::account)));
}

void VeskValue::setBool(bool value)
{
    set(VeskValueType::bool_, value);
}

void VeskValue::setInt(int value)
{
    set(VeskValueType::int_, value);
}

void VeskValue::setDouble(double value)
{
    set(VeskValueType::double_, value);
}

void VeskValue::setString(const QString &value)
{
    set(VeskValueType::string_, value);
}

void VeskValue::setTuneInAccount(const VeskTuneInAccount &account)
{
    set(VeskValueType::tuneInAccount, account);
}

void VeskValue::setAccount(const VeskAccount &account)
{
    set(VeskValueType::account, account);
}

void VeskValue::set(VeskValueType::Enum type, const QVariant &value)
{
    for (const TypeName &entry : typeNames()) {
        if (entry.type != type)
            remove(entry.name);
    }
    insert(typeKey(), int(type));
    insert(nameOf(type), value);
}
