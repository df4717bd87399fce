#pragma once

#include "Findings.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {

class Simulation;

/// What the program holds in a calm moment, counted again and again: what it holds more of than at
/// the first of these moments, it will hold ever more of.
class Census {
public:
  explicit Census(Findings& findings) : m_findings(findings) {}

  /// Counts, and compares with the first time. The world is as calm as it was then.
  void take(Simulation& world);

  [[nodiscard]] int taken() const { return m_taken; }

private:
  struct Count {
    const char* what;
    long number;
    long tolerance; // what a moment may differ from another by
  };

  [[nodiscard]] static std::vector<Count> count(Simulation& world);

  Findings& m_findings;
  std::vector<Count> m_first;
  int m_taken = 0;
};

} // namespace tidewell::test
