#pragma once

#include "Dice.h"
#include "SamplingModel.h"
#include "ToolModel.h"
#include "VirtualProcesses.h"

#include <optional>
#include <string>

namespace tidewell::test {

/// The current behaviour of the line and the tools.
struct Conditions {
  double latencyMs = 12.0;
  double spreadMs = 4.0;
  /// Probabilities for each run of a tool, from 0 to 1.
  double loss = 0.0;
  double garbage = 0.0;
  double cannotStart = 0.0;
  double hangs = 0.0;
  double floods = 0.0;
  /// Probabilities for address lookups.
  double lookupSeconds = 0.05;
  std::optional<std::string> body = "203.0.113.7\n";
};

/// The programs that the resident runs for their output. They answer randomly and inform the models
/// of the expected results.
class SimulatedTools {
public:
  SimulatedTools(WorkQueue& world, Dice& dice, Findings& findings, SamplingModel& sampling,
                 ToolModel& model)
      : m_world(world), m_dice(dice), m_findings(findings), m_sampling(sampling), m_model(model) {}

  /// Plays the program of this name; false if it cannot be started.
  [[nodiscard]] bool play(const std::string& name, const VirtualProcesses::Pointer& process);

  Conditions conditions;
  int lostProbes = 0;
  int sounds = 0;
  int lookups = 0;
  int floods = 0;

private:
  /// The behaviour of a run.
  struct Conduct {
    std::string output;
    double takes = 0.0;
    int status = 0;
    bool hangs = false;  // until SIGTERM
    bool floods = false; // writes its output repeatedly until the pipe is full
    bool isDeaf = false; // until SIGKILL
  };

  [[nodiscard]] bool ping(const VirtualProcesses::Pointer& process);
  [[nodiscard]] bool listProcesses(const VirtualProcesses::Pointer& process);
  [[nodiscard]] bool testSpeed(const VirtualProcesses::Pointer& process);
  [[nodiscard]] bool lookUp(const VirtualProcesses::Pointer& process);
  [[nodiscard]] bool sound(const VirtualProcesses::Pointer& process);
  [[nodiscard]] std::string processTable(bool& isEmpty);
  void misbehave(Conduct& conduct);
  void perform(const VirtualProcesses::Pointer& process, const Conduct& conduct);
  /// The duration of a run that is ended after this many seconds unless it exits earlier.
  [[nodiscard]] static Ticks duration(const Conduct& conduct, double limit);
  /// Whether the program has memory for the output of such a run.
  [[nodiscard]] static bool isKept(const Conduct& conduct);

  WorkQueue& m_world;
  Dice& m_dice;
  Findings& m_findings;
  SamplingModel& m_sampling;
  ToolModel& m_model;
};

} // namespace tidewell::test
