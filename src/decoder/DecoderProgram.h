// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// The program vesk-decoder: enters its sandbox, then decodes the stream that it receives on
/// DecoderSocket and sends back the samples, until the host closes the socket. Exits the process
/// then; returns only if DecoderSocket is not a socket, with the exit status.
int runDecoder();
