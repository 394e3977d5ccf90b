// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/nodes/CMWorker.h"
#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"
#include "api/web/ServiceAnswers.h"

#include <functional>
#include <map>
#include <utility>
#include <vector>

class CMValuesWorker;
class PluginThread;

/// Observes which settings the plug-ins of this process read and keep: those that a plug-in reads
/// while it handles no request, for instance while it is loaded. What it reads while it handles one
/// is for that request and is read again for the next one; settings that it is subscribed to it
/// follows by itself.
///
/// Also observes how a plug-in's HTTP exchanges end while it handles a request, and notes at the
/// request's reply what was wrong with the service: by the last exchange that failed for certain,
/// or else by the last one.
///
/// Made before the plug-ins and destroyed after them; one per process. Any thread.
class PluginWatch : public CMWorker::HandlingListener {
public:
    /// The plug-in of that thread \a keeps the value of a setting that it has read, or, later, has
    /// subscribed to the setting after all. On a thread of the plug-in, or the one that calls
    /// settingChanged().
    using Reading = std::function<void(
        PluginThread *plugin, const CMPath &setting, const VeskValue &value, bool keeps)>;

    /// \a values are those that plug-ins read, and must outlive it.
    PluginWatch(CMValuesWorker *values, Reading reading);
    ~PluginWatch() override;
    Q_DISABLE_COPY(PluginWatch)

    /// Whether \a path is that of a setting: a value that users change.
    static bool isSetting(const CMPath &path);

    /// How responses of the plug-in's service are to be read. Before the thread is started.
    void setAnswerForm(const PluginThread *plugin, const ServiceAnswerForm &form);
    /// To be called for each setting that has changed.
    void settingChanged(const CMPath &setting);
    /// The plug-in of that thread is gone.
    void forget(PluginThread *plugin);

    void begin(const std::shared_ptr<CMReplyAbstractData> &reply) override;
    void end() override;

private:
    struct Handled {
        std::shared_ptr<CMReplyAbstractData> reply;
        bool hasFailed = false; ///< some exchange of it, for certain
    };

    void exchangeEnded(const HttpClientResult &exchange);
    void valueRead(const CMPath &path, const VeskValue &value);
    static bool follows(const PluginThread *plugin, const CMPath &path);

    CMValuesWorker *const m_values;
    const Reading m_reading;
    QMetaObject::Connection m_connection;

    VeskMutex m_mutex;
    /// The requests that each plug-in handles, each made by the handler of the one before it.
    std::map<const PluginThread *, std::vector<Handled>> m_handled VESK_GUARDED_BY(m_mutex);
    std::map<const PluginThread *, ServiceAnswerForm> m_answerForms VESK_GUARDED_BY(m_mutex);
    std::map<std::pair<CMPath, PluginThread *>, VeskValue> m_kept VESK_GUARDED_BY(m_mutex);
};
