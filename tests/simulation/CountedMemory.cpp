#include "CountedMemory.h"

#include "support/VirtualScheduler.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace tidewell::test {

namespace {

std::atomic<long> inUse = 0;
std::atomic<long> bytesInUse = 0;
std::atomic<long> refused = 0;
std::atomic<VirtualScheduler*> scarceFor = nullptr;
std::atomic<std::size_t> largestPiece = 0;

bool refuses(std::size_t size) {
  auto* const scheduler = scarceFor.load();
  return scheduler != nullptr && size > largestPiece && !scheduler->isMainCurrent();
}

} // namespace

long CountedMemory::pieces() { return inUse; }
long CountedMemory::bytes() { return bytesInUse; }
long CountedMemory::refusals() { return refused; }
bool CountedMemory::isScarce() { return scarceFor != nullptr; }

void CountedMemory::makeScarce(VirtualScheduler& scheduler, std::size_t largest) {
  largestPiece = largest;
  scarceFor = &scheduler;
}

void CountedMemory::makePlenty() { scarceFor = nullptr; }

} // namespace tidewell::test

namespace {

/// Null if refused.
void* give(std::size_t size) {
  void* const piece = tidewell::test::refuses(size) ? nullptr : std::malloc(size == 0 ? 1 : size);
  tidewell::test::refused += piece == nullptr ? 1 : 0;
  return piece;
}

void* giveOrThrow(std::size_t size) {
  void* const piece = give(size);
  return piece == nullptr ? throw std::bad_alloc() : piece;
}

} // namespace

void* operator new(std::size_t size) { return giveOrThrow(size); }
void* operator new[](std::size_t size) { return giveOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept { return give(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return give(size);
}
void operator delete(void* piece) noexcept { std::free(piece); }
void operator delete[](void* piece) noexcept { std::free(piece); }
void operator delete(void* piece, std::size_t /*size*/) noexcept { std::free(piece); }
void operator delete[](void* piece, std::size_t /*size*/) noexcept { std::free(piece); }
void operator delete(void* piece, const std::nothrow_t& /*tag*/) noexcept { std::free(piece); }
void operator delete[](void* piece, const std::nothrow_t& /*tag*/) noexcept { std::free(piece); }

// Sanitizers have their own allocator and leak detection.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the C library's names of the replaced functions
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* piece, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* piece);
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

void* counted(void* piece) {
  if (piece != nullptr) {
    ++tidewell::test::inUse;
    tidewell::test::bytesInUse += static_cast<long>(::malloc_usable_size(piece));
  }
  return piece;
}

void discount(void* piece) {
  if (piece != nullptr) {
    --tidewell::test::inUse;
    tidewell::test::bytesInUse -= static_cast<long>(::malloc_usable_size(piece));
  }
}

} // namespace

extern "C" {

void* malloc(std::size_t size) noexcept { return counted(__libc_malloc(size)); }

void* calloc(std::size_t count, std::size_t size) noexcept {
  return counted(__libc_calloc(count, size));
}

void* realloc(void* piece, std::size_t size) noexcept {
  const long before = piece == nullptr ? 0 : static_cast<long>(::malloc_usable_size(piece));
  void* const moved = __libc_realloc(piece, size);
  if (piece != nullptr && (moved != nullptr || size == 0)) {
    --tidewell::test::inUse;
    tidewell::test::bytesInUse -= before;
  }
  return counted(moved);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
  return counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return memalign(alignment, size);
}

int posix_memalign(void** piece, std::size_t alignment, std::size_t size) noexcept {
  *piece = memalign(alignment, size);
  return *piece == nullptr ? ENOMEM : 0;
}

void free(void* piece) noexcept {
  discount(piece);
  __libc_free(piece);
}

} // extern "C"

#endif
