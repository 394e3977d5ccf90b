// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

/// \file
/// What a process gives up for good before it meets bytes from outside. To be called while it has
/// one thread. Each function returns what this kernel does not offer, empty when all is done.
/// Without Qt.

/// Neither it nor a program that it executes gets rights that it does not have now.
std::string forbidNewPrivileges();
/// What the administrator's account may do beyond what a file's or process's owner may.
std::string dropCapabilities();
/// Lowers one of setrlimit's limits.
void limitResource(int resource, unsigned long long most);
/// What a process that works for another one gets: so much memory of its own, so many descriptors,
/// no core files and no files that grow. Sanitizers, which map terabytes, get the memory.
void limitResources(unsigned long long memoryBytes, unsigned long long descriptors);
/// Landlock (Linux 5.13 and later): of all files only those at and below \a readable can be opened,
/// for reading and executing.
std::string confineFiles(const std::vector<std::string> &readable);
/// What the loader reads, and the machine's own description of itself.
std::vector<std::string> loaderFiles();
