#pragma once

namespace tidewell {

/// Tells a person at a terminal how the test goes, on standard error; silent when that is none.
class Progress {
public:
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// Replaces what was shown before.
  void show(const char* direction, double bytesPerSecond);

  /// Takes away what is shown.
  void clear();

private:
  bool m_isTerminal;
  bool m_isShown = false;
};

} // namespace tidewell
