// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

/// \file
/// Restrictions that a process puts on itself, irrevocably, before it reads untrusted bytes. Call
/// them while it has one thread. Each function returns what this kernel does not support; empty
/// when everything is in force. Without Qt.

/// Neither the process nor a program that it executes can gain privileges (set-user-ID, say).
std::string forbidNewPrivileges();
/// Drops root's capabilities.
std::string dropCapabilities();
/// Lowers one of setrlimit's limits.
void limitResource(int resource, unsigned long long most);
/// The limits of a helper process: private memory, descriptors, no core files, no growing files.
/// Builds with sanitizers, which map terabytes, have no limit of memory.
void limitResources(unsigned long long memoryBytes, unsigned long long descriptors);
/// Landlock (Linux 5.13 and later): of all files only those at and below \a readable can be opened,
/// for reading and executing.
std::string confineFiles(const std::vector<std::string> &readable);
/// The files that the dynamic loader and the C library read.
std::vector<std::string> loaderFiles();
