// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Part of fuzz targets whose libraries leak memory of GLib, which the leak checker cannot follow
// any further: libsoup 3.2 the path of a request whose transfer encoding it does not know, GLib
// itself the first block of its table of quarks. What the project's own code leaks is found all the
// same.

extern "C" const char *__lsan_default_suppressions();

const char *__lsan_default_suppressions()
{
    return "leak:libglib-2.0.so\nleak:libgstreamer-1.0.so\n";
}
