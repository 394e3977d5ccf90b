// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"

class VeskAccount;
class VeskTuneInAccount;

/// The types of a VeskValue. The codes appear in values, so they are fixed.
struct VeskValueType {
    enum Enum : int {
        none = 0,
        bool_ = 1,
        int_ = 2,
        double_ = 3,
        string_ = 4,
        hash = 5,
        account = 6,
        tuneInAccount = 115
    };

    /// The type's name, which is also the value's key in a VeskValue ("string_"); empty for none.
    VESK_API static QString toString(Enum type);
    /// The type with that name; none for any other text.
    VESK_API static Enum fromString(const QString &name);
};

/// A setting or state in the value tree. Hash entries: "type" (a code; a type's name is accepted as
/// well) and the value under the type's name ("bool_", "int_", "string_", ...). Without "type" the
/// value has no type, whatever other entries there are.
class VESK_API VeskValue : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskValue() = default;
    VeskValue(const VeskHash &hash)
        : VeskHash(hash)
    {
    }

    static VeskValue fromBool(bool value);
    static VeskValue fromInt(int value);
    static VeskValue fromString(const QString &value);

    VeskValueType::Enum type() const;
    /// These return false, 0 or an empty value when the value has another type.
    bool bool_() const;
    int int_() const;
    double double_() const;
    QString string_() const;
    VeskTuneInAccount tuneInAccount() const;
    VeskAccount account() const;

    void setBool(bool value);
    void setInt(int value);
    void setDouble(double value);
    void setString(const QString &value);
    void setTuneInAccount(const VeskTuneInAccount &account);
    void setAccount(const VeskAccount &account);

private:
    void set(VeskValueType::Enum type, const QVariant &value);
};

Q_DECLARE_METATYPE(VeskValue)
