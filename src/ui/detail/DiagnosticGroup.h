#pragma once

#include "ui/components/SpokenGroup.h"

class QHBoxLayout;
class QVBoxLayout;

namespace tidewell {

class DiagnosticRow;

/// A title above rows. Main thread.
class DiagnosticGroup : public SpokenGroup {
  Q_OBJECT

public:
  DiagnosticGroup(const QString& title, QWidget* parent);

  /// Adds a row at the end.
  [[nodiscard]] DiagnosticRow* diagnosticRow(const char* label);
  /// Adds something else at the end.
  void add(QWidget* widget);
  /// Puts something at the right of the title.
  void addBesideTitle(QWidget* widget);

private:
  QVBoxLayout* m_column;
  QHBoxLayout* m_titleRow;
};

} // namespace tidewell
