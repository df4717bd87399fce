#include "helpers/nettop/ProgramName.h"

#include "base/DisplayText.h"

#include <cstddef>

namespace tidewell::nettop {

namespace {

constexpr std::string_view replacement = "\uFFFD";

std::string inPlainCharacters(const std::string& text) {
  std::string name;
  for (std::size_t index = 0; index < text.size();) {
    if (std::string_view(text).substr(index).starts_with(replacement)) {
      name += '_';
      index += replacement.size();
      continue;
    }
    name += text[index] == '.' || text[index] == ',' ? '_' : text[index];
    ++index;
  }
  return name;
}

} // namespace

std::string printableName(std::string_view bytes) {
  std::string name = inPlainCharacters(displayText(bytes));
  // Programs that call themselves so would go unseen.
  if (name.empty() || name == "kernel_task" || name == "mDNSResponder") {
    name += '_';
  }
  return name;
}

} // namespace tidewell::nettop
