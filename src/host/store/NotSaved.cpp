// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/store/NotSaved.h"

#include "api/core/TrString.h"
#include "api/core/vesk.h"

#include <cerrno>

namespace {

CMError refusal(const char *text)
{
    return CMError(TrString("Host", text));
}

} // namespace

CMError notSavedError(const files::Problem &problem)
{
    if (problem.error == ENOSPC || problem.error == EDQUOT)
        return refusal(QT_TRANSLATE_NOOP("Host", "Not saved: the disk is full."));
    return refusal(
        QT_TRANSLATE_NOOP("Host", "Not saved: the disk cannot be written. The log says more."));
}

CMError diskBusyError()
{
    return refusal(QT_TRANSLATE_NOOP("Host", "Not saved: too much is waiting for the disk."));
}
