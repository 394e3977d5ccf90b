// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/core/TrString.h"
#include "api/nodes/CMAbstractWorker.h"
#include "api/values/VeskValue.h"

#include <QHash>

#include <functional>

/// The values of one or more prefixes: settings and states that a host defines and that any client
/// may read, follow and, where they are writable, write. Answers on the caller's thread, so reading
/// a value never waits. All calls from any thread. Register it at the root, and remove it there
/// before it is destroyed.
///
/// What a request writes takes effect at once, or, when the host persists its values (setKeep),
/// once it is persisted; only then is the request answered.
///
/// A value's node answers the roles "value" (a VeskValue's hash), "type", "title" and "description"
/// (TrStrings), "path", and "pinned" for a value that stays as it is; parameters of the path do not
/// matter. Subscribers of its path are notified of a change.
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
    /// Explains the value at \a path, which must be defined; its role "description".
    void describe(const CMPath &path, const TrString &description);
    /// Sets a value from inside the host, whatever its access; a pinned value stays. Returns false,
    /// and changes nothing, for an unknown path, a pinned value or a wrong type.
    bool setValue(const CMPath &path, const VeskValue &value);
    /// Validates what a request wants to set: \a sent as it came, and the \a value it was read as,
    /// empty when it is not of the type. Returns an empty error when it is valid. Pure.
    using Check = std::function<CMError(const QVariant &sent, const VeskValue &value)>;
    /// Requests to the value at \a path, which must be defined, may only set what passes \a check;
    /// without one any value of its type passes.
    void setCheck(const CMPath &path, Check check);
    /// Makes every later change of the value fail.
    void pin(const CMPath &path);
    /// Ends that; the value stays what it is until it is set.
    void unpin(const CMPath &path);

    /// To be called once, on any thread, with an empty error when the value is persisted; not after
    /// this is destroyed. Destroying it uncalled ends the request with an error.
    using Kept = std::function<void(const CMError &)>;
    /// Called on the request's thread for each permitted change, also when the value is the same
    /// already: an earlier change may still be in progress.
    using Keep = std::function<void(const CMPath &path, const VeskValue &value, const Kept &kept)>;
    /// Persists what requests write before it takes effect. When that fails the value stays, and
    /// the request ends with the error. Null: values are not persisted.
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
    /// A value changed; emitted on the thread that changed it. \a byRequest tells a client's
    /// request from the host's own call. When several threads change a value at the same time the
    /// signals may come in another order than the changes: value() has the current one.
    void valueChanged(const CMPath &path, const VeskValue &value, bool byRequest);
    /// A request read a value; emitted on the caller's thread.
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
    /// Whether \a entry may become \a value.
    static Outcome permission(const Entry &entry, const VeskValue &value, bool byRequest);
    static CMError errorOf(Outcome outcome);
    Outcome change(const CMPath &path, const VeskValue &value, bool byRequest);
    void getData(const CMGetDataRequest &request);
    void setData(const CMSetDataRequest &request);
    void write(const CMSetDataRequest &request, const VeskValue &value);

    mutable VeskMutex m_mutex;
    QHash<CMPath, Entry> m_entries VESK_GUARDED_BY(m_mutex);
    Keep m_keep VESK_GUARDED_BY(m_mutex);
};
