#include "CountedMemory.h"

#include "support/VirtualScheduler.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace tidewell::test {

namespace {

std::atomic<long> inUse = 0;
std::atomic<long> refused = 0;
std::atomic<VirtualScheduler*> scarceFor = nullptr;
std::atomic<std::size_t> largestPiece = 0;

bool refuses(std::size_t size) {
  auto* const scheduler = scarceFor.load();
  return scheduler != nullptr && size > largestPiece && !scheduler->main().isCurrent();
}

} // namespace

long CountedMemory::pieces() { return inUse; }
long CountedMemory::refusals() { return refused; }
bool CountedMemory::isScarce() { return scarceFor != nullptr; }

void CountedMemory::makeScarce(VirtualScheduler& scheduler, std::size_t largest) {
  largestPiece = largest;
  scarceFor = &scheduler;
}

void CountedMemory::makePlenty() { scarceFor = nullptr; }

} // namespace tidewell::test

namespace {

void* give(std::size_t size) {
  using namespace tidewell::test;
  void* const piece = refuses(size) ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (piece == nullptr) {
    ++refused;
    throw std::bad_alloc();
  }
  ++inUse;
  return piece;
}

void take(void* piece) noexcept {
  if (piece != nullptr) {
    --tidewell::test::inUse;
    std::free(piece);
  }
}

} // namespace

void* operator new(std::size_t size) { return give(size); }
void* operator new[](std::size_t size) { return give(size); }
void operator delete(void* piece) noexcept { take(piece); }
void operator delete[](void* piece) noexcept { take(piece); }
void operator delete(void* piece, std::size_t /*size*/) noexcept { take(piece); }
void operator delete[](void* piece, std::size_t /*size*/) noexcept { take(piece); }
