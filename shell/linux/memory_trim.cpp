#include "shell/linux/memory_trim.h"

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

namespace kestro {

namespace {

/// Drops the pages of a loaded file that are never written, so that the file still holds what they held.
int dropReadOnlyPages(dl_phdr_info* file, std::size_t, void*) {
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    for (int i = 0; i < file->dlpi_phnum; ++i) {
        const auto& segment = file->dlpi_phdr[i];
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_W) == 0) {
            const std::uintptr_t start = (file->dlpi_addr + segment.p_vaddr) & ~(page - 1);
            const std::uintptr_t end = file->dlpi_addr + segment.p_vaddr + segment.p_memsz;
            // NOLINTNEXTLINE(performance-no-int-to-ptr): the loader describes addresses as integers
            ::madvise(reinterpret_cast<void*>(start), end - start, MADV_DONTNEED);
        }
    }
    return 0;
}

}  // namespace

void trimMemory() {
    ::malloc_trim(0);
    ::dl_iterate_phdr(dropReadOnlyPages, nullptr);
}

}  // namespace kestro
