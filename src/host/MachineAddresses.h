// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QStringList>

/// The IP addresses at which other machines reach this one, as they are at present: those of
/// interfaces that are up, without loopback and without addresses that need an interface's name
/// beside them (link-local ones of IPv6). IPv4 first. Any thread.
QStringList machineAddresses();
