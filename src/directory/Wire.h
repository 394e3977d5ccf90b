// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A connection taken over from libsoup, for writing a response directly. It reports when the
/// client disconnects, and is closed with the object. Lives on the server's thread.
#pragma once

#include "directory/Watch.h"

#include <string_view>

namespace directory {

/// Closes the connection with a reset (RST): nothing that is still buffered is sent.
void reset(GSocket *socket);

class Wire {
public:
    /// Takes over the reference to `stream`, which comes from tappedStream(). `gone` may destroy
    /// this object.
    Wire(GIOStream *stream, Watch::Call gone);
    ~Wire();
    Wire(const Wire &) = delete;
    Wire &operator=(const Wire &) = delete;

    /// Returns how many bytes were written without blocking; -1 when the client is gone.
    std::ptrdiff_t write(std::string_view bytes);
    /// Calls repeatedly while the stream is writable, until ignoreRoom().
    void onRoom(Watch::Call call);
    void ignoreRoom() { m_output.stop(); }
    bool waitsForRoom() const { return m_output.running(); }
    /// Limits what the kernel buffers for a client that does not read.
    void boundSendBuffer(int bytes);
    /// Closes the connection with a reset (RST) instead of FIN.
    void resetAtEnd() { m_reset = true; }

private:
    void readOn();

    GIOStream *m_stream;
    bool m_reset = false;
    Watch m_output;
    Watch m_input;
    Watch::Call m_gone;
};

} // namespace directory
