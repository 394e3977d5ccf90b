// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

class JsonRpcDispatcher;
class Outputs;

/// Adds outputs.list and outputs.choose. Main thread; \a outputs outlives the dispatcher's calls.
void addOutputMethods(JsonRpcDispatcher *dispatcher, Outputs *outputs);
