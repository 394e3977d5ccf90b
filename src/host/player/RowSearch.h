// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMReply.h"
#include "api/values/CMError.h"
#include "api/values/CMPath.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskRowsRoles.h"

#include <QObject>

#include <functional>

/// The row that a client means: where it stood in a screen when the client read it, and the path
/// that it has.
struct RowAddress {
    CMPath screen;
    int row = 0;
    /// Empty: whichever row stands there now.
    CMPath path = {};
};

/// Fetches one row of a screen, with all its roles. With a path it is the row that has this path,
/// and of several the one nearest to where it stood: in one fetch of what stands around, or, when
/// it is not there, one of the whole screen. Main thread.
class RowSearch : public QObject {
    Q_OBJECT

public:
    /// So many rows before and after are looked at first.
    static constexpr int Neighbours = 20;
    /// And so many of the screen at most.
    static constexpr int MaxRows = 10000;
    /// That many at a time where a service cannot answer with all of them at once.
    static constexpr int RangeRows = 500;

    /// Called once, unless the search is destroyed before.
    using Found = std::function<void(const CMError &error, const VeskRoles &row)>;

    /// What a fault of the service that serves a path is in words.
    using FaultWords = std::function<TrString(const CMPath &, const VeskServiceFault &)>;

    /// Without \a words a screen that could not be had is one without rows.
    explicit RowSearch(FaultWords words = {}, QObject *parent = nullptr);
    ~RowSearch() override;

    void start(const RowAddress &address, Found found);

    /// The name of the error that no row has the path.
    static const QString &goneName();

private:
    void ask(int first, int last);
    CMError errorOf(const CMReplyData<QVariant> &answer) const;
    void take(const CMError &error, const VeskRowsRoles &rows, int first, int last);
    void askForMore(const VeskRowsRoles &rows, int last);
    void finish(const CMError &error, const VeskRoles &row = {});

    const FaultWords m_words;
    RowAddress m_address;
    Found m_found;
    bool m_whole = false; ///< what stands around was looked at
    int m_rangeRows = MaxRows;
};
