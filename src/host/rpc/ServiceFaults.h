// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/ThreadCheck.h"
#include "api/core/TrString.h"
#include "api/values/CMPath.h"
#include "api/values/VeskServiceFault.h"

#include <vector>

/// Puts the faults of services into words for users: a plug-in may have to say something else, or
/// nothing. Main thread.
class ServiceFaults {
public:
    /// There is a service, whose paths lie below \a root, and which knows the device by a setting
    /// with the title \a deviceSetting, if that is not empty.
    void declare(const CMPath &root, const TrString &deviceSetting);

    /// What is wrong with the service that serves \a path, and what can be done about it; empty for
    /// no fault.
    TrString words(const CMPath &path, const VeskServiceFault &fault) const;

private:
    struct Service {
        CMPath root;
        TrString deviceSetting;
    };

    TrString refusal(const Service &service, const QString &status) const;

    VeskThreadCheck m_thread;
    std::vector<Service> m_services;
};
