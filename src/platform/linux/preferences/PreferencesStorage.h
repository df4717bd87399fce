#pragma once

#include "platform/PreferencesStore.h"

#include <optional>
#include <string>

namespace tidewell {

/// The preferences file on the disk. One thread at a time; other processes may use the same file.
class PreferencesStorage {
public:
  /// What came of reading.
  struct Reading {
    enum class Outcome {
      absent,     // nobody wrote the file yet, or somebody removed it
      intact,     // all of it was understood
      broken,     // the values are those that could be saved from it
      unreadable, // nothing is known of it
    };

    Outcome outcome = Outcome::absent;
    PreferenceValues values;
  };

  explicit PreferencesStorage(std::string path) : m_path(std::move(path)) {}

  [[nodiscard]] const std::string& path() const { return m_path; }

  /// Reads the file.
  [[nodiscard]] Reading read() const;

  /// Puts the changes into the file, which keeps everything else, and syncs it to the disk. Into a
  /// file that has to be replaced because it is broken or unreadable go all `known` values as well,
  /// once the old one has been kept aside. The values of the file as it is then; none when the
  /// disk refused, in which case the file is what it was.
  [[nodiscard]] std::optional<PreferenceValues> write(const PreferenceValues& changes,
                                                      const PreferenceValues& known) const;

private:
  std::string m_path;
};

} // namespace tidewell
