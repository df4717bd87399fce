#pragma once

#include "Dice.h"
#include "SamplingModel.h"
#include "ToolModel.h"
#include "VirtualProcesses.h"

#include <optional>
#include <string>

namespace tidewell::test {

/// How the line and the tools behave at present.
struct Conditions {
  double latencyMs = 12.0;
  double spreadMs = 4.0;
  /// Of each run of a tool, from 0 to 1.
  double loss = 0.0;
  double garbage = 0.0;
  double cannotStart = 0.0;
  double hangs = 0.0;
  double floods = 0.0;
  /// Of the address lookups.
  double lookupSeconds = 0.05;
  std::optional<std::string> body = "203.0.113.7\n";
};

/// The programs that the resident runs for their output, which answer by chance and tell the models
/// what their answers amount to.
class SimulatedTools {
public:
  SimulatedTools(WorkQueue& world, Dice& dice, Findings& findings, SamplingModel& sampling,
                 ToolModel& model)
      : m_world(world), m_dice(dice), m_findings(findings), m_sampling(sampling), m_model(model) {}

  /// Plays a program of this name; false when it cannot be started.
  [[nodiscard]] bool play(const std::string& name, const VirtualProcesses::Pointer& process);

  Conditions conditions;
  int lostProbes = 0;
  int sounds = 0;
  int lookups = 0;
  int floods = 0;

private:
  /// What a run does.
  struct Conduct {
    std::string output;
    double takes = 0.0;
    int status = 0;
    bool hangs = false;  // until it is told to end
    bool floods = false; // writes its output over and over until nothing goes in any more
    bool isDeaf = false; // until it is killed
  };

  [[nodiscard]] bool ping(const VirtualProcesses::Pointer& process);
  [[nodiscard]] bool listProcesses(const VirtualProcesses::Pointer& process);
  [[nodiscard]] bool testSpeed(const VirtualProcesses::Pointer& process);
  [[nodiscard]] bool lookUp(const VirtualProcesses::Pointer& process);
  [[nodiscard]] bool sound(const VirtualProcesses::Pointer& process);
  [[nodiscard]] std::string processTable(bool& isEmpty);
  void misbehave(Conduct& conduct);
  void perform(const VirtualProcesses::Pointer& process, const Conduct& conduct);
  /// How long the run takes that is ended after so many seconds unless it ends by itself.
  [[nodiscard]] static Ticks duration(const Conduct& conduct, double limit);
  /// Whether the program can keep what such a run wrote.
  [[nodiscard]] static bool isKept(const Conduct& conduct);

  WorkQueue& m_world;
  Dice& m_dice;
  Findings& m_findings;
  SamplingModel& m_sampling;
  ToolModel& m_model;
};

} // namespace tidewell::test
