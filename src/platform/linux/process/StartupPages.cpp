#include "platform/linux/process/StartupPages.h"

#include <cstddef>
#include <cstdint>

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

namespace tidewell {
namespace {

void release(std::uintptr_t begin, std::uintptr_t end) {
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  begin &= ~(page - 1);
  end = (end + page - 1) & ~(page - 1);
  // The linker gives addresses as numbers. NOLINTNEXTLINE(performance-no-int-to-ptr)
  ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
}

/// Only pages that were never writable: dropping a written page would lose its contents.
int releaseObject(dl_phdr_info* object, std::size_t /*size*/, void* /*unused*/) {
  for (int index = 0; index < object->dlpi_phnum; ++index) {
    const auto& segment = object->dlpi_phdr[index];
    if (segment.p_type == PT_LOAD && (segment.p_flags & PF_W) == 0) {
      const std::uintptr_t begin = object->dlpi_addr + segment.p_vaddr;
      release(begin, begin + segment.p_memsz);
    }
  }
  return 0;
}

/// The pages below the caller's frame, which deeper calls have used.
void releaseStack() {
  constexpr std::uintptr_t inUse = 4096; // by the calls that follow
  constexpr std::uintptr_t deepest = 256U << 10U;
  const char frame = 0;
  const auto here = reinterpret_cast<std::uintptr_t>(&frame);
  release(here - deepest, here - inUse - static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE)));
}

} // namespace

void releaseStartupPages() {
#ifdef __GLIBC__
  ::malloc_trim(0);
#endif
  ::dl_iterate_phdr(releaseObject, nullptr);
  releaseStack();
}

} // namespace tidewell
