// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// LeakSanitizer suppressions for fuzz targets whose libraries leak memory that GLib allocates; the
// stack traces end in GLib. libsoup 3.2 leaks the path of a request with an unknown transfer
// encoding, GLib itself the first block of its quark table. Leaks of the project's own code are
// still found.

extern "C" const char *__lsan_default_suppressions();

const char *__lsan_default_suppressions()
{
    return "leak:libglib-2.0.so\nleak:libgstreamer-1.0.so\n";
}
