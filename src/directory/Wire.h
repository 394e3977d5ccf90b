// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A connection that was taken from the HTTP library, to be written to by hand. It tells when the
/// client hangs up, and closes with the object. Lives on the server's thread.
#pragma once

#include "directory/Watch.h"

#include <string_view>

namespace directory {

class Wire {
public:
    /// Takes over the reference to `stream`, which a tappedStream made. `gone` may destroy this
    /// object.
    Wire(GIOStream *stream, Watch::Call gone);
    ~Wire();
    Wire(const Wire &) = delete;
    Wire &operator=(const Wire &) = delete;

    /// How much was written without waiting; 0 when there is no room, -1 when the client is gone.
    std::ptrdiff_t write(std::string_view bytes);
    /// Calls again and again while there is room, until ignoreRoom().
    void onRoom(Watch::Call call);
    void ignoreRoom() { m_output.stop(); }
    bool waitsForRoom() const { return m_output.running(); }
    /// How much the system keeps for a client that does not read.
    void boundSendBuffer(int bytes);
    /// The end will be a reset instead of a farewell.
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
