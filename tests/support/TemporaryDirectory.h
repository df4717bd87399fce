#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <stdlib.h>

namespace tidewell::test {

/// A temporary directory, removed with its contents.
class TemporaryDirectory {
public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "tidewell-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
      throw std::runtime_error("no temporary directory");
    }
    m_path = name;
  }
  TemporaryDirectory(TemporaryDirectory&&) = delete;
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  [[nodiscard]] std::filesystem::path operator/(std::string_view name) const {
    return m_path / name;
  }

private:
  std::filesystem::path m_path;
};

inline std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Rewrites the file in place, as a simple editor does.
inline void writeInPlace(const std::filesystem::path& file, std::string_view contents) {
  std::ofstream(file, std::ios::binary | std::ios::trunc) << contents;
}

/// Replaces the file, as a careful editor does.
inline void writeByRenaming(const std::filesystem::path& file, std::string_view contents) {
  const std::filesystem::path other = file.string() + "~";
  writeInPlace(other, contents);
  std::filesystem::rename(other, file);
}

/// The files of a directory whose names contain the text.
inline std::vector<std::filesystem::path> filesNamed(const std::filesystem::path& directory,
                                                     std::string_view part) {
  std::vector<std::filesystem::path> found;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    if (entry.path().filename().string().find(part) != std::string::npos) {
      found.push_back(entry.path());
    }
  }
  return found;
}

} // namespace tidewell::test
