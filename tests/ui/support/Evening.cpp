#include "Evening.h"

#include <cmath>

namespace tidewell::test {

SnapshotList evening(int count) {
  SnapshotList list;
  for (int index = 0; index < count; ++index) {
    const double noise = 0.5 + 0.5 * std::sin(index * 12.9898) * std::cos(index * 4.1414);
    const bool isBusy = (index > 60 && index < 130) || index > 240;
    const double down = (isBusy ? 7.2e6 : 0.9e6) + 1.6e6 * noise;
    const double up = 0.7e6 + 0.9e6 * noise * noise + (index % 50 < 8 ? 1.1e6 : 0.0);
    const double latency = 18.0 + 9.0 * noise + (isBusy ? 14.0 : 0.0);
    list.push_back(std::make_shared<const NetworkSnapshot>(
        1.7e9 + 2.0 * index, static_cast<std::int64_t>(down), static_cast<std::int64_t>(up),
        latency, 1.4, 0.0));
  }
  return list;
}

} // namespace tidewell::test
