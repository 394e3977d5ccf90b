// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/nodes/CMAbstractWorker.h"
#include "api/values/VeskValue.h"

#include <QHash>

#include <functional>
#include <mutex>

/// The values of one or more prefixes: settings and states that a host defines and everybody reads,
/// follows and, where they are writable, writes. Answers on the thread that asks, so reading a
/// value never waits. All calls from any thread. Register it at the root, and remove it there
/// before it is destroyed.
///
/// What a request writes takes effect at once, or, when the host keeps its values (setKeep), once
/// it is kept; only then is the request answered.
///
/// A value's node answers the roles "value" (a VeskValue's hash), "type", "title" and "description"
/// (TrStrings), "path", and "pinned" for a value that stays as it is; parameters of the path do not
/// matter. A change is told to the subscribers of its path.
class VESK_API CMValuesWorker : public CMAbstractWorker {
    Q_OBJECT

public:
    enum Access { ReadOnly, Writable };

    explicit CMValuesWorker(QObject *parent = nullptr);
    ~CMValuesWorker() override;

    /// Defines the value at \a path, which must not be defined yet. The type of \a value is its
    /// type for good.
    void define(const CMPath &path, const VeskValue &value, Access access = ReadOnly,
        const TrString &title = TrString());
    /// What the value at \a path, which was defined, is good for; its role "description".
    void describe(const CMPath &path, const TrString &description);
    /// Sets a value that was defined, from inside the host: access does not matter, but a pinned
    /// value stays. Returns false, and changes nothing, for an unknown path, a pinned value or a
    /// wrong type.
    bool setValue(const CMPath &path, const VeskValue &value);
    /// What is wrong with a value that a request wants to set: what was sent, and the value it was
    /// read as, empty when it is not of the type. An empty error when nothing is. Pure.
    using Check = std::function<CMError(const QVariant &sent, const VeskValue &value)>;
    /// Has requests to the value at \a path, which was defined, set only what passes \a check; any
    /// value of its type passes without one.
    void setCheck(const CMPath &path, Check check);
    /// Keeps the value as it is, whoever sets it.
    void pin(const CMPath &path);

    /// Called once, with an empty error when the value is kept, on any thread; not after this is
    /// destroyed. Letting go of it without a call ends the request with an error.
    using Kept = std::function<void(const CMError &)>;
    /// Called on the thread of the request, for a change that is permitted, also when the value is
    /// that already: an earlier change may still be on its way.
    using Keep = std::function<void(const CMPath &path, const VeskValue &value, const Kept &kept)>;
    /// Has what requests write kept before it takes effect. What cannot be kept is refused: the
    /// value stays, and the request ends with the error. With null nothing is kept any more.
    void setKeep(Keep keep);

    /// Empty for an unknown path.
    VeskValue value(const CMPath &path) const;
    QList<CMPath> paths() const;

    /// A plain value as a VeskValue of \a type: "true" or true for a bool, and so on. An empty
    /// value when it cannot be read as one.
    static VeskValue fromPlain(const QVariant &plain, VeskValueType::Enum type);

    void request(CMRequest request) override;
    void languageChanged() override;

Q_SIGNALS:
    /// A value changed, from whichever thread changed it. \a byRequest tells a request of a client
    /// from the host's own call. Of changes on several threads at a time the later may be told
    /// first: value() has the present one.
    void valueChanged(const CMPath &path, const VeskValue &value, bool byRequest);
    /// A request read a value. From the thread that asked.
    void valueRead(const CMPath &path, const VeskValue &value);

private:
    enum class Outcome { Done, Unknown, Refused, WrongType };
    struct Entry {
        VeskValue value;
        Access access = ReadOnly;
        TrString title;
        TrString description;
        Check check;
        bool pinned = false;
    };

    bool isDefined(const CMPath &path) const;
    /// Whether \a entry may become \a value; under m_mutex.
    static Outcome permission(const Entry &entry, const VeskValue &value, bool byRequest);
    static CMError errorOf(Outcome outcome);
    Outcome change(const CMPath &path, const VeskValue &value, bool byRequest);
    void getData(const CMGetDataRequest &request);
    void setData(const CMSetDataRequest &request);
    void write(const CMSetDataRequest &request, const VeskValue &value);

    mutable std::mutex m_mutex;
    /// Guarded by m_mutex.
    QHash<CMPath, Entry> m_entries;
    Keep m_keep;
};
