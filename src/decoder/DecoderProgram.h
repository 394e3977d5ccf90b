#pragma once

/// The program vesk-decoder: takes a stream's bytes from the socket DecoderSocket and answers with
/// what it decodes, confined, until the socket ends. Returns the exit status.
int runDecoder();
