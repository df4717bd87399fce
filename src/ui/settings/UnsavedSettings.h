#pragma once

#include "ui/components/ViewTime.h"

#include <QObject>

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

namespace tidewell {

/// Stores the user's changes. Those that cannot be stored are tried again every few seconds and
/// with each further change, as long as this object lives.
class UnsavedSettings final : public QObject {
  Q_OBJECT

public:
  /// Stores a value. Returns why it could not.
  using Write = std::function<std::error_code()>;

  /// Seconds between attempts: soon enough for a user who has just made room, and rare enough for a
  /// full disk.
  static constexpr double retrySpan = 5.0;

  UnsavedSettings(ViewTime time, QObject* parent);

  /// Stores a change of this preference, instead of an earlier one that could not be stored.
  void store(std::string_view key, Write write);

  /// Gives up a change that could not be stored. Returns whether there was one.
  bool forget(std::string_view key);

Q_SIGNALS:
  /// `reason` says why something is not stored, and is empty if everything is.
  void changed(const QString& reason);

private:
  void tryAll();
  void tryLater();

  ViewTime m_time;
  std::map<std::string, Write, std::less<>> m_writes;
  bool m_isWaiting = false;
};

} // namespace tidewell
