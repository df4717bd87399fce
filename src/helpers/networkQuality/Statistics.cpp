#include "helpers/networkQuality/Statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace tidewell {

double mean(std::span<const double> values) {
  if (values.empty()) {
    return 0.0;
  }
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double trimmedMean(std::vector<double> values) {
  const std::size_t kept =
      std::min(values.size(), std::max<std::size_t>(values.size() * 95 / 100, 1));
  std::sort(values.begin(), values.end());
  return mean(std::span(values).first(kept));
}

bool isSteady(std::span<const double> values, double tolerance) {
  if (values.empty()) {
    return false;
  }
  const double middle = mean(values);
  double squares = 0.0;
  for (const double value : values) {
    squares += (value - middle) * (value - middle);
  }
  return std::sqrt(squares / static_cast<double>(values.size())) < tolerance * values.back();
}

} // namespace tidewell
