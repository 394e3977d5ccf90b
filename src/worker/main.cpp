// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "worker/WorkerProgram.h"

int main(int argc, char **argv)
{
    return runWorker(argc, argv);
}
