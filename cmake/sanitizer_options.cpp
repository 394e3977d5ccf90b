// Part of every program of a build with the address sanitizer.
//
// GLib's table of quarks grows by leaving its first block behind, for threads that may still read
// it; GStreamer has that many quarks. The leak checker is told of this one block, before it is
// left: it is the only thing of that size that GLib's static data point to.

#include <cstring>
#include <link.h>

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

[[gnu::constructor]] void ignoreFirstQuarkBlock()
{
    dl_iterate_phdr(&ignoreBlock, nullptr);
}

} // namespace
