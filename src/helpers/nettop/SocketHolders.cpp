#include "helpers/nettop/SocketHolders.h"

#include "base/TextPieces.h"
#include "platform/linux/loop/FileDescriptor.h"
#include "platform/linux/process/ProcessName.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <functional>
#include <memory>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewell::nettop {
namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

using Link = std::array<char, PATH_MAX>;

std::string_view readLink(int directory, const char* name, Link& buffer) {
  const ssize_t size = ::readlinkat(directory, name, buffer.data(), buffer.size());
  return size > 0 ? std::string_view(buffer.data(), static_cast<std::size_t>(size))
                  : std::string_view();
}

/// Calls `visit(const char* name)` for each entry until it returns false.
template <class Visit> void forEachEntry(const Directory& directory, Visit&& visit) {
  while (const dirent* const entry = ::readdir(directory.get())) {
    if (!visit(entry->d_name)) {
      return;
    }
  }
}

std::vector<std::int32_t> newestProcesses() {
  std::vector<std::int32_t> processes;
  const Directory directory(::opendir("/proc"));
  if (directory) {
    forEachEntry(directory, [&processes](std::string_view name) {
      if (const auto process = parseInteger<std::int32_t>(name)) {
        processes.push_back(*process);
      }
      return true;
    });
  }
  std::ranges::sort(processes, std::ranges::greater{});
  return processes;
}

Holder holder(std::int32_t process) {
  const std::string place = "/proc/" + std::to_string(process);
  Link buffer{};
  struct stat status {};
  Holder result;
  result.process = process;
  result.user = ::stat(place.c_str(), &status) == 0 ? status.st_uid : 0;
  result.name = executableName(readLink(AT_FDCWD, (place + "/exe").c_str(), buffer));
  if (result.name.empty()) {
    result.name = processName(static_cast<std::uint32_t>(process));
  }
  return result;
}

void addHeldBy(std::int32_t process, std::unordered_set<std::uint32_t>& inodes, Holders& holders) {
  const Directory directory(::opendir(("/proc/" + std::to_string(process) + "/fd").c_str()));
  if (!directory) {
    return;
  }
  const int descriptor = ::dirfd(directory.get());
  std::optional<Holder> found;
  forEachEntry(directory, [&](const char* name) {
    Link buffer;
    const auto inode = socketInode(readLink(descriptor, name, buffer));
    if (inode && inodes.erase(*inode) != 0) {
      found = found ? found : holder(process);
      holders.emplace(*inode, *found);
    }
    return !inodes.empty();
  });
}

} // namespace

std::optional<std::uint32_t> socketInode(std::string_view link) {
  constexpr std::string_view beginning = "socket:[";
  if (!link.starts_with(beginning) || !link.ends_with(']')) {
    return std::nullopt;
  }
  const auto digits = link.substr(beginning.size(), link.size() - beginning.size() - 1);
  std::uint32_t inode = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, inode);
  return error == std::errc{} && stop == end ? std::optional(inode) : std::nullopt;
}

std::string executableName(std::string_view link) {
  constexpr std::string_view deleted = " (deleted)";
  if (link.ends_with(deleted)) {
    link.remove_suffix(deleted.size());
  }
  return std::string(link.substr(link.rfind('/') + 1));
}

Holders findHolders(std::unordered_set<std::uint32_t> inodes) {
  Holders holders;
  inodes.erase(0);
  for (const std::int32_t process :
       inodes.empty() ? std::vector<std::int32_t>() : newestProcesses()) {
    if (inodes.empty()) {
      break;
    }
    addHeldBy(process, inodes, holders);
  }
  return holders;
}

} // namespace tidewell::nettop
