// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMWorker.h"
#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"
#include "api/web/ServiceAnswers.h"

#include <functional>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

class CMValuesWorker;
class PluginThread;

/// Sees which settings the plug-ins of this process read for keeps: those that a plug-in reads of
/// its own accord, while it is loaded for instance. What it reads while it has a request in hand is
/// for that request, and is read again for the next one; what it is subscribed to it follows by
/// itself.
///
/// It also sees how the exchanges end that a plug-in has with its service while it has a request in
/// hand, and notes at the request's answer what was wrong with them: the last one that failed for
/// certain, or else the last one.
///
/// Made before the plug-ins and destroyed after them; one per process. Any thread.
class PluginWatch : public CMWorker::HandlingListener {
public:
    /// The plug-in of that thread \a keeps the value of a setting as it has read it, or, later,
    /// follows it after all. On a thread of the plug-in, or where settingChanged() is called.
    using Reading = std::function<void(
        PluginThread *plugin, const CMPath &setting, const VeskValue &value, bool keeps)>;

    /// \a values are those that plug-ins read, and must outlive it.
    PluginWatch(CMValuesWorker *values, Reading reading);
    ~PluginWatch() override;
    Q_DISABLE_COPY(PluginWatch)

    /// Whether \a path is that of a setting: of a value that a person changes.
    static bool isSetting(const CMPath &path);

    /// How the service of the plug-in on that thread answers. Before the thread is started.
    void setAnswerForm(const PluginThread *plugin, const ServiceAnswerForm &form);
    /// To be called when a setting has changed.
    void settingChanged(const CMPath &setting);
    /// The plug-in of that thread is gone.
    void forget(PluginThread *plugin);

    void begin(const std::shared_ptr<CMReplyAbstractData> &reply) override;
    void end() override;

private:
    struct InHand {
        std::shared_ptr<CMReplyAbstractData> reply;
        bool hasFailed = false; ///< an exchange, for certain
    };

    void exchangeEnded(const HttpClientResult &exchange);
    void valueRead(const CMPath &path, const VeskValue &value);
    static bool follows(const PluginThread *plugin, const CMPath &path);

    CMValuesWorker *const m_values;
    const Reading m_reading;
    QMetaObject::Connection m_connection;

    std::mutex m_mutex;
    /// Guarded by m_mutex. The answers that plug-ins are at, each for the one before it.
    std::map<const PluginThread *, std::vector<InHand>> m_inHand;
    std::map<const PluginThread *, ServiceAnswerForm> m_answerForms;
    std::map<std::pair<CMPath, PluginThread *>, VeskValue> m_kept;
};
