#pragma once

#include "speedtest/SpeedTestState.h"
#include "ui/components/ViewTime.h"
#include "ui/detail/DiagnosticGroups.h"

#include <array>
#include <functional>
#include <optional>

namespace tidewell {

class Spinner;
class TextButton;
class TextLine;

/// The speed test: that it runs, else its last result, else that there is none; and a button that
/// starts one while none runs. Main thread.
class SpeedTestGroup final : public DiagnosticGroup {
  Q_OBJECT

public:
  SpeedTestGroup(std::function<void()> run, const ViewTime& time, QWidget* parent);

  void setState(bool isRunning, const std::optional<SpeedTestResult>& result);

private:
  void showResult(const SpeedTestResult& result);
  void showButton(bool isShown);

  // Children.
  TextButton* m_button;
  QWidget* m_line;
  Spinner* m_spinner;
  TextLine* m_text;
  std::array<ValueRow*, 4> m_rows{};
  bool m_hadFocus = false; // the button, when it had to go
};

} // namespace tidewell
