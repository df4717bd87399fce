#pragma once

#include <cstddef>
#include <random>

namespace tidewell::test {

/// Calls `read` with every proper prefix of the input, in memory of exactly that size, so that a
/// sanitizer finds any read beyond it.
template <class Input, class Read> void forEachTruncation(const Input& whole, Read&& read) {
  for (std::size_t size = 0; size < whole.size(); ++size) {
    read(Input(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
  }
}

/// Calls `read` with 20,000 copies of the input in which up to `mostChanges` bytes are random, but
/// the same in every run. Returns the sum of its results.
template <class Input, class Read>
std::size_t readDamaged(const Input& whole, unsigned mostChanges, Read&& read) {
  std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same bytes every time
  std::size_t understood = 0;
  for (int round = 0; round < 20'000; ++round) {
    Input damaged(whole);
    for (auto changes = 1 + random() % mostChanges; changes > 0; --changes) {
      damaged[random() % damaged.size()] = static_cast<typename Input::value_type>(random());
    }
    understood += static_cast<std::size_t>(read(damaged));
  }
  return understood;
}

} // namespace tidewell::test
