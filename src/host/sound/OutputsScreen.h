// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMContainerNode.h"

class Outputs;

/// The screen `host:outputs`, for any client: one row for each place that sound can go to, which is
/// activated to have it go there. The row of an output that is not there is disabled. Main thread;
/// \a outputs outlives it.
class OutputsScreen : public CMContainerNode {
    Q_OBJECT

public:
    OutputsScreen(Outputs *outputs, CMNodes *nodes);

    bool getRowsRequest(const CMGetRowsRequest &request) override;
    /// The role "activate" of a row.
    bool setDataRequest(const CMSetDataRequest &request) override;

private:
    void reset();

    Outputs *const m_outputs;
};
