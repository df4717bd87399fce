#pragma once

#include "platform/PreferencesStore.h"

#include <string>
#include <system_error>
#include <utility>

namespace tidewell {

/// The preferences file on the disk, which other processes may use too.
class PreferencesStorage {
public:
  struct Reading {
    enum class Outcome {
      absent, // not written yet, or removed
      intact,
      broken, // the values are those that can be read
    };

    Outcome outcome = Outcome::absent;
    PreferenceValues values;
  };

  struct Writing {
    std::error_code error;
    PreferenceValues values; // of the file
  };

  explicit PreferencesStorage(std::string path) : m_path(std::move(path)) {}

  [[nodiscard]] const std::string& path() const { return m_path; }

  /// Reads the file.
  [[nodiscard]] Reading read() const;

  /// Puts the changes into the file, keeps everything else, and syncs the file to the disk. A
  /// broken file is kept aside; the one that replaces it also has all `known` values that the
  /// broken one lacks. After an error the file is unchanged.
  [[nodiscard]] Writing write(const PreferenceValues& changes, const PreferenceValues& known) const;

private:
  std::string m_path;
};

} // namespace tidewell
