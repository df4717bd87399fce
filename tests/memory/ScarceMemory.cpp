#include "ScarceMemory.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace tidewell::test {

namespace {

constexpr long plenty = std::numeric_limits<long>::max();

thread_local long left = plenty; // allocations
thread_local bool refused = false;

std::atomic<std::size_t> largestPiece = std::numeric_limits<std::size_t>::max();

void* give(std::size_t size) {
  if (size > largestPiece) {
    throw std::bad_alloc();
  }
  if (left != plenty && left-- <= 0) {
    left = 0;
    refused = true;
    throw std::bad_alloc();
  }
  void* const piece = std::malloc(size == 0 ? 1 : size);
  if (piece == nullptr) {
    throw std::bad_alloc();
  }
  return piece;
}

} // namespace

ScarceMemory::ScarceMemory(long firstRefused) {
  refused = false;
  left = firstRefused - 1;
}

ScarceMemory::~ScarceMemory() { left = plenty; }

bool ScarceMemory::hasRefused() { return refused; }

SmallPiecesOnly::SmallPiecesOnly(std::size_t largest) { largestPiece = largest; }

SmallPiecesOnly::~SmallPiecesOnly() { largestPiece = std::numeric_limits<std::size_t>::max(); }

} // namespace tidewell::test

void* operator new(std::size_t size) { return tidewell::test::give(size); }
void* operator new[](std::size_t size) { return tidewell::test::give(size); }
void operator delete(void* piece) noexcept { std::free(piece); }
void operator delete[](void* piece) noexcept { std::free(piece); }
void operator delete(void* piece, std::size_t /*size*/) noexcept { std::free(piece); }
void operator delete[](void* piece, std::size_t /*size*/) noexcept { std::free(piece); }
