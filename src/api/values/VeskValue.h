// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"

class VeskTuneInAccount;

/// What a VeskValue can hold. The codes travel in values, so they never change.
struct VeskValueType {
    enum Enum : int {
        none = 0,
        bool_ = 1,
        int_ = 2,
        double_ = 3,
        string_ = 4,
        hash = 5,
        tuneInAccount = 115
    };

    /// The name of the type, under which a VeskValue keeps its value ("string_"); empty for none.
    VESK_API static QString toString(Enum type);
    /// The type of that name, none for any other text.
    VESK_API static Enum fromString(const QString &name);
};

/// One setting or state of the value tree: a type, and the value under the type's name. Hash
/// entries: "type" (a code; a type's name is read as well) and one of "bool_", "int_", "string_",
/// ... Without "type" it is of none: what stands under a type's name is not taken at its word.
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
    /// Each reads false, 0 or empty when the value is of another type.
    bool bool_() const;
    int int_() const;
    double double_() const;
    QString string_() const;
    VeskTuneInAccount tuneInAccount() const;

    void setBool(bool value);
    void setInt(int value);
    void setDouble(double value);
    void setString(const QString &value);
    void setTuneInAccount(const VeskTuneInAccount &account);

private:
    void set(VeskValueType::Enum type, const QVariant &value);
};

Q_DECLARE_METATYPE(VeskValue)
