#pragma once

#include "speedtest/SpeedTestState.h"
#include "ui/components/ViewTime.h"
#include "ui/detail/DiagnosticGroups.h"

#include <array>
#include <functional>

namespace tidewell {

class Spinner;
class TextButton;
class TextLine;

/// The state of the speed test: running, its last result, or no result. After a run that failed:
/// why, and the result of the last one that did not. A button starts a test while none is running.
/// It is disabled while the resident, which runs them, has stopped.
class SpeedTestGroup final : public DiagnosticGroup {
  Q_OBJECT

public:
  SpeedTestGroup(std::function<void()> run, const ViewTime& time, QWidget* parent);

  /// `isThere`: whether the resident runs.
  void setState(const SpeedTestState& state, bool isThere);

private:
  void showResult(const SpeedTestResult& result);
  void offer(bool isShown, bool isEnabled);

  // Children.
  TextButton* m_button;
  QWidget* m_line;
  Spinner* m_spinner;
  TextLine* m_text;
  std::array<ValueRow*, 4> m_rows{};
  bool m_hadFocus = false; // whether the button had the focus when it was last usable
};

} // namespace tidewell
