// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The parts of Asio and Beast that are no templates, compiled once.

#include <boost/asio/impl/src.hpp>
#include <boost/beast/src.hpp>
