#include "platform/linux/process/HelperProgram.h"

#include "platform/linux/files/FilePath.h"

namespace tidewell {

std::string helperProgram(const std::string& program, const std::string& name) {
  if (!program.starts_with('/')) {
    return "";
  }
  const std::string prefix = directoryOf(directoryOf(program));
  return (prefix == "/" ? "" : prefix) + "/libexec/tidewell/" + name;
}

} // namespace tidewell
