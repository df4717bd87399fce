#include "ui/detail/SpeedTestGroup.h"

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

QString lineOf(bool isRunning, const std::string& failure) {
  if (isRunning) {
    return QStringLiteral("Running speed test...");
  }
  return failure.empty() ? QStringLiteral("No speed test run yet.")
                         : QStringLiteral("Speed test failed: ") + shownText(failure);
}

} // namespace

SpeedTestGroup::SpeedTestGroup(std::function<void()> run, const ViewTime& time, QWidget* parent)
    : DiagnosticGroup(QStringLiteral("Speed Test"), parent),
      m_button(new TextButton(QStringLiteral("Run Now"), this)), m_line(new QWidget(this)),
      m_spinner(new Spinner(time.now, m_line)), m_text(makeHint({}, m_line)) {
  addBesideTitle(m_button);
  auto* const line = new QHBoxLayout(m_line);
  line->setContentsMargins(0, linePadding, 0, linePadding);
  line->setSpacing(spinnerSpacing);
  line->addWidget(m_spinner);
  line->addWidget(m_text, 1);
  add(m_line);
  m_rows = {diagnosticRow("Download"), diagnosticRow("Upload"), diagnosticRow("Responsiveness"),
            diagnosticRow("Tested At")};
  connect(m_button, &QPushButton::clicked, this, std::move(run));
  setState(SpeedTestState());
}

void SpeedTestGroup::setState(const SpeedTestState& state) {
  const bool isRunning = state.isRunning.get();
  const std::string& failure = state.failure.get();
  const auto& result = shownResult(state);
  const bool hasRows = !isRunning && result.has_value();
  m_text->setText(lineOf(isRunning, failure));
  m_spinner->setVisible(isRunning);
  m_line->setVisible(!hasRows || !failure.empty());
  if (hasRows) {
    showResult(*result);
  }
  for (ValueRow* row : m_rows) {
    row->setVisible(hasRows);
  }
  showButton(!isRunning);
}

void SpeedTestGroup::showResult(const SpeedTestResult& result) {
  m_rows[0]->setValue(megabitsText(result.downloadMbps), TWColor::text);
  m_rows[1]->setValue(megabitsText(result.uploadMbps), TWColor::text);
  m_rows[2]->setValue(QStringLiteral("%1 RPM").arg(result.responsiveness), TWColor::text);
  m_rows[3]->setValue(timeText(result.timestamp), TWColor::text);
}

void SpeedTestGroup::showButton(bool isShown) {
  if (isShown == !m_button->isHidden()) {
    return;
  }
  if (!isShown) {
    m_hadFocus = m_button->hasFocus();
  }
  m_button->setVisible(isShown);
  if (isShown && std::exchange(m_hadFocus, false)) {
    m_button->setFocus();
  }
}

} // namespace tidewell
