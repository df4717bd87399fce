#pragma once

#include "Dice.h"
#include "SamplingModel.h"
#include "ToolModel.h"
#include "platform/ChildProcess.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

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
};

/// The system's tools, which answer by chance and tell the models what their answers amount to.
class SimulatedTools final : public ChildProcess {
public:
  SimulatedTools(VirtualScheduler& scheduler, Dice& dice, Findings& findings,
                 SamplingModel& sampling, ToolModel& model)
      : m_scheduler(scheduler), m_dice(dice), m_findings(findings), m_sampling(sampling),
        m_model(model) {}

  [[nodiscard]] std::optional<std::string>
  run(const std::string& path, const std::vector<std::string>& arguments,
      const std::function<void(Id child)>& launched = {}) override;
  void terminate(Id child) override { m_model.terminates(child); }

  Conditions conditions;
  int lostProbes = 0;

private:
  using Output = std::optional<std::string>;

  [[nodiscard]] Output ping();
  [[nodiscard]] Output listProcesses(const std::function<void(Id child)>& launched);
  [[nodiscard]] Output testSpeed();
  [[nodiscard]] std::string processTable(bool& isEmpty);

  VirtualScheduler& m_scheduler;
  Dice& m_dice;
  Findings& m_findings;
  SamplingModel& m_sampling;
  ToolModel& m_model;
  Id m_children = 0;
};

} // namespace tidewell::test
