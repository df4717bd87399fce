#include "platform/linux/process/ProcessName.h"

#include "platform/linux/loop/FileDescriptor.h"

#include <array>
#include <string_view>

#include <fcntl.h>

namespace tidewell {

std::string processName(std::uint32_t process) {
  const std::string path = "/proc/" + std::to_string(process) + "/comm";
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::array<char, 64> text{};
  const auto size = file.isOpen() ? ::read(file.get(), text.data(), text.size()) : 0;
  if (size <= 0) {
    return {};
  }
  const std::string_view name(text.data(), static_cast<std::size_t>(size));
  return std::string(name.substr(0, name.find('\n')));
}

} // namespace tidewell
