#pragma once

#include "api/nodes/CMValuesWorker.h"
#include "host/SettingsFile.h"

#include <QObject>

/// Keeps the settings that are changed while the host runs, and the device's id. Lives on the main
/// thread, with an event loop; values may change on any. What cannot be written now is written with
/// the next change; the running values do not depend on it. A value that is pinned is neither set
/// from what was kept nor written.
class SettingsStore : public QObject {
    Q_OBJECT

public:
    SettingsStore(const QString &folder, CMValuesWorker *values, QObject *parent = nullptr);
    /// Writes what is not written yet.
    ~SettingsStore() override;

    /// Sets the kept values, gives the device its id on its first start, and follows the changes.
    void load();
    /// Writes now what is not written yet; false when that failed.
    bool flush();

private:
    void applyKept();
    void ensureMemberId();
    void valueChanged(const CMPath &path, const VeskValue &value);
    void changed();

    SettingsFile m_file;
    CMValuesWorker *const m_values;
    KeptSettings m_kept;
    bool m_dirty = false; ///< something is not written yet
    bool m_scheduled = false; ///< and will be once the event loop runs
};
