#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>

namespace tidewell::test {

/// Chance, drawn from a seed.
class Dice {
public:
  explicit Dice(std::uint64_t seed) : m_random(seed) {}

  /// From 0 to 1, without 1.
  double unit() { return static_cast<double>(m_random() >> 11U) * 0x1p-53; }

  bool chance(double probability) { return unit() < probability; }

  /// From 0 to `end`, without it.
  std::size_t below(std::size_t end) { return m_random() % end; }

  double between(double low, double high) { return low + (high - low) * unit(); }

  /// Spread evenly over the orders of magnitude. `low` is above zero.
  double magnitude(double low, double high) { return low * std::pow(high / low, unit()); }

  /// The span until the next of events that come at random, `mean` apart.
  double waiting(double mean) { return -mean * std::log(1.0 - unit()); }

  template <class T> T oneOf(std::initializer_list<T> values) {
    return values.begin()[below(values.size())];
  }

private:
  std::mt19937_64 m_random;
};

} // namespace tidewell::test
