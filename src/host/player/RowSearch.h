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

/// Identifies a row for a client: its index when the client read the screen, and its path.
struct RowAddress {
    CMPath screen;
    int row = 0;
    /// Empty: whatever row is at the index now.
    CMPath path = {};
};

/// Fetches one row of a screen with all its roles. With a path, it is the row with that path, the
/// nearest to the index if there are several: the rows around the index are fetched first, and the
/// whole screen only if it is not among them. Main thread.
class RowSearch : public QObject {
    Q_OBJECT

public:
    /// Rows before and after the index in the first request.
    static constexpr int Neighbours = 20;
    /// Rows of the screen that are searched at most.
    static constexpr int MaxRows = 10000;
    /// Rows per request when the response with all of them would be too long.
    static constexpr int RangeRows = 500;

    /// Called once, unless the search is destroyed before. May destroy the search.
    using Found = std::function<void(const CMError &error, const VeskRoles &row)>;

    /// The text for a fault of the service behind a path.
    using FaultWords = std::function<TrString(const CMPath &, const VeskServiceFault &)>;

    /// Without \a words a screen whose service failed counts as one without rows.
    explicit RowSearch(FaultWords words = {}, QObject *parent = nullptr);
    ~RowSearch() override;

    void start(const RowAddress &address, Found found);

    /// CMError name: no row has the path any more.
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
    bool m_whole = false; ///< the rows around the index were searched
    /// Rows per request of the whole screen.
    int m_rangeRows = MaxRows;
};
