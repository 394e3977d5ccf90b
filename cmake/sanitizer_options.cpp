// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Part of every program of a build with the address sanitizer: keeps the leak checker from seeing
// leaks where there are none.
//
// GLib's table of quarks grows by leaving its first block behind, for threads that may still read
// it; GStreamer has that many quarks. The leak checker is told of this one block, before it is
// left: it is the only thing of that size that GLib's static data point to.

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <link.h>
#include <string>
#include <thread>

// The sanitizers' public interface, whose headers come with clang only.
extern "C" {
int __sanitizer_get_ownership(const volatile void *pointer);
std::size_t __sanitizer_get_allocated_size(const volatile void *pointer);
void __lsan_ignore_object(const void *pointer);
}

namespace {

constexpr std::size_t BlockSize = 2048 * sizeof(char *);

int ignoreBlock(dl_phdr_info *library, std::size_t, void *)
{
    if (!std::strstr(library->dlpi_name, "libglib-2.0.so"))
        return 0;
    for (int i = 0; i < library->dlpi_phnum; ++i) {
        const auto &segment = library->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD || !(segment.p_flags & PF_W))
            continue;
        const auto begin = library->dlpi_addr + segment.p_vaddr;
        const auto *word = reinterpret_cast<void *const *>((begin + 7) & ~std::size_t(7));
        const auto *end
            = reinterpret_cast<void *const *>((begin + segment.p_memsz) & ~std::size_t(7));
        for (; word < end; ++word) {
            if (__sanitizer_get_ownership(*word)
                && __sanitizer_get_allocated_size(*word) == BlockSize)
                __lsan_ignore_object(*word);
        }
    }
    return 1;
}

std::string threadName(const std::filesystem::path &task)
{
    std::ifstream file(task / "comm");
    std::string name;
    std::getline(file, name);
    return name;
}

/// Whether a thread with a name of its own is left. Libraries' threads, which stay until the end,
/// have the program's name, or GLib's names.
bool hasEndingThreads()
{
    const std::string program = threadName("/proc/self");
    std::error_code error;
    for (const auto &task : std::filesystem::directory_iterator("/proc/self/task", error)) {
        const std::string name = threadName(task.path());
        if (!name.empty() && name != program && name != "gmain" && name != "gdbus"
            && name.rfind("pool", 0) != 0)
            return true;
    }
    return false;
}

/// A QThread counts as finished while the system's thread still frees what libraries keep for it,
/// such as OpenSSL's list of errors.
void waitForEndingThreads()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (hasEndingThreads() && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
}

[[gnu::constructor]] void prepare()
{
    dl_iterate_phdr(&ignoreBlock, nullptr);
}

} // namespace

/// The linker calls this in place of the program's main (--wrap): what libraries do at the exit,
/// such as OpenSSL taking its lists from threads that still end, comes after the wait.
extern "C" {
int __real_main(int argc, char **argv);
int __wrap_main(int argc, char **argv);

int __wrap_main(int argc, char **argv)
{
    const int status = __real_main(argc, argv);
    waitForEndingThreads();
    return status;
}
}
