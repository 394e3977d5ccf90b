#pragma once

#include "ctl/HostSession.h"

/// Carries out the command that \a options name: asks the host, prints what it answers and what
/// went wrong. Main thread.
CtlStatus runCommand(const CtlOptions &options, const CtlTerminal &terminal);
