#pragma once

#include "Findings.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {

class Simulation;

/// Counts the program's resources in calm moments. A count above that of the first moment is a
/// leak.
class Census {
public:
  explicit Census(Findings& findings) : m_findings(findings) {}

  /// Counts and compares with the first time. The world must be as calm as then.
  void take(Simulation& world);

  [[nodiscard]] int taken() const { return m_taken; }

private:
  struct Count {
    const char* what;
    long number;
    long tolerance; // permitted difference between moments
  };

  [[nodiscard]] static std::vector<Count> count(Simulation& world);

  Findings& m_findings;
  std::vector<Count> m_first;
  int m_taken = 0;
};

} // namespace tidewell::test
