// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/process/PluginProgram.h"

int main(int argc, char **argv)
{
    return runPlugin(argc, argv);
}
