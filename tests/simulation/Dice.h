#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>

namespace tidewell::test {

/// Random numbers from a seed.
class Dice {
public:
  explicit Dice(std::uint64_t seed) : m_random(seed) {}

  /// From 0 to 1, excluding 1.
  double unit() { return static_cast<double>(m_random() >> 11U) * 0x1p-53; }

  bool chance(double probability) { return unit() < probability; }

  /// From 0 to `end`, excluding it.
  std::size_t below(std::size_t end) { return m_random() % end; }

  double between(double low, double high) { return low + (high - low) * unit(); }

  /// Uniform on a logarithmic scale. `low` is positive.
  double magnitude(double low, double high) { return low * std::pow(high / low, unit()); }

  /// The time until the next of random events, `mean` apart.
  double waiting(double mean) { return -mean * std::log(1.0 - unit()); }

  template <class T> T oneOf(std::initializer_list<T> values) {
    return values.begin()[below(values.size())];
  }

private:
  std::mt19937_64 m_random;
};

} // namespace tidewell::test
