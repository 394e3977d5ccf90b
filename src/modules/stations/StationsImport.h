// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRequest.h"
#include "modules/stations/StationsList.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <vector>

/// Files that clients hand over. A file comes in parts, since a client's message is bounded: set
/// the value {"name": FILE NAME, "id": TEXT, "part": NUMBER, "parts": NUMBER, "data": BASE64} for
/// each, in order, from part 0 to the last, with the same id, which is the client's choice. The
/// answer to the last part is {"added", "known", "skipped": numbers, "message": what was skipped
/// and why, for the listener; empty for nothing}, to the others null. After an error the file is
/// forgotten and the list as it was.
///
/// The worker's thread.
class StationsImport : public QObject {
    Q_OBJECT

public:
    static constexpr int MaxParts = 24;
    static constexpr int MaxPartBytes = 45000;
    static constexpr int MaxIdLength = 100;
    /// Files under way at the same time.
    static constexpr int MaxUploads = 2;
    /// A file whose next part takes longer is forgotten.
    static constexpr std::chrono::seconds ForgetAfter {60};

    explicit StationsImport(StationsList *list, QObject *parent = nullptr);

    void setForgetAfter(std::chrono::milliseconds time) { m_forgetAfter = time; }
    void take(const CMSetDataRequest &request);

private:
    using Clock = std::chrono::steady_clock;
    struct Upload {
        QString id;
        int parts = 0;
        int next = 0; ///< part
        QByteArray bytes {};
        Clock::time_point last {};
    };
    using Uploads = std::vector<Upload>;

    void forgetAbandoned();
    Uploads::iterator find(const QString &id);
    CMError append(const QVariantHash &part, const QByteArray &bytes);
    void finish(const QByteArray &bytes, const CMReply<QVariant> &reply);

    StationsList *const m_list;
    std::chrono::milliseconds m_forgetAfter {ForgetAfter};
    Uploads m_uploads;
    QTimer m_timer;
};
