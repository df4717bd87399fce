#include "helpers/networkQuality/Progress.h"

#include "base/NumberText.h"
#include "helpers/networkQuality/ResultText.h"

#include <iostream>
#include <string>

#include <unistd.h>

namespace tidewell {

namespace {

constexpr const char* backToEmptyLine = "\r\x1b[K";

} // namespace

Progress::Progress() : m_isTerminal(::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() { clear(); }

void Progress::show(const char* direction, double bytesPerSecond) {
  if (m_isTerminal) {
    std::cerr << backToEmptyLine << direction << ": " << fixedText(inMegabits(bytesPerSecond), 1)
              << " Mbit/s" << std::flush;
    m_isShown = true;
  }
}

void Progress::clear() {
  if (m_isShown) {
    std::cerr << backToEmptyLine << std::flush;
    m_isShown = false;
  }
}

} // namespace tidewell
