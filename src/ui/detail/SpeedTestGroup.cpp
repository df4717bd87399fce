#include "ui/detail/SpeedTestGroup.h"

#include "base/Translation.h"
#include "ui/components/Buttons.h"
#include "ui/components/ShownText.h"
#include "ui/components/Spinner.h"
#include "ui/components/TextLine.h"
#include "ui/components/ValueRow.h"
#include "ui/detail/DetailStyles.h"
#include "ui/tokens/TWColor.h"

#include <QHBoxLayout>

#include <utility>

namespace tidewell {
namespace {

constexpr int linePadding = 8;
constexpr int spinnerSpacing = 8;

QString megabitsText(double megabits) { return figureText(megabits, 1) + QStringLiteral(" Mbps"); }

QString stoppedText() {
  return translatedText("Tidewell has stopped. Speed tests can run when it is back.");
}

QString lineOf(bool isThere, bool isRunning, const std::string& failure) {
  if (!isThere) {
    return stoppedText();
  }
  if (isRunning) {
    return translatedText("Running speed test...");
  }
  return failure.empty()
             ? translatedText("No speed test run yet.")
             : translatedText("Speed test failed: %1").arg(shownText(translatedReason(failure)));
}

} // namespace

SpeedTestGroup::SpeedTestGroup(std::function<void()> run, const ViewTime& time, QWidget* parent)
    : DiagnosticGroup(translatedText("Speed Test"), parent),
      m_button(new TextButton(translatedText("Run Now"), this)), m_line(new QWidget(this)),
      m_spinner(new Spinner(time.now, m_line)), m_text(makeHint({}, m_line)) {
  addBesideTitle(m_button);
  auto* const line = new QHBoxLayout(m_line);
  line->setContentsMargins(0, linePadding, 0, linePadding);
  line->setSpacing(spinnerSpacing);
  line->addWidget(m_spinner);
  line->addWidget(m_text, 1);
  add(m_line);
  m_rows = {diagnosticRow(translated("Download")), diagnosticRow(translated("Upload")),
            diagnosticRow(translated("Responsiveness")), diagnosticRow(translated("Tested At"))};
  connect(m_button, &QPushButton::clicked, this, std::move(run));
  setState(SpeedTestState(), true);
}

void SpeedTestGroup::setState(const SpeedTestState& state, bool isThere) {
  const bool isRunning = isThere && state.isRunning.get();
  const std::string& failure = state.failure.get();
  const auto& result = shownResult(state);
  const bool hasRows = !isRunning && result.has_value();
  m_text->setText(lineOf(isThere, isRunning, failure));
  m_spinner->setVisible(isRunning);
  m_line->setVisible(!isThere || !hasRows || !failure.empty());
  if (hasRows) {
    showResult(*result);
  }
  for (ValueRow* row : m_rows) {
    row->setVisible(hasRows);
  }
  m_button->setAccessibleDescription(isThere ? QString() : stoppedText());
  offer(!isRunning, isThere);
}

void SpeedTestGroup::showResult(const SpeedTestResult& result) {
  m_rows[0]->setValue(megabitsText(result.downloadMbps), TWColor::text);
  m_rows[1]->setValue(megabitsText(result.uploadMbps), TWColor::text);
  m_rows[2]->setValue(QStringLiteral("%1 RPM").arg(result.responsiveness), TWColor::text);
  m_rows[3]->setValue(timeText(result.timestamp), TWColor::text);
}

void SpeedTestGroup::offer(bool isShown, bool isEnabled) {
  m_hadFocus = m_hadFocus || m_button->hasFocus();
  m_button->setEnabled(isEnabled);
  m_button->setVisible(isShown);
  if (isShown && isEnabled && std::exchange(m_hadFocus, false)) {
    m_button->setFocus();
  }
}

} // namespace tidewell
