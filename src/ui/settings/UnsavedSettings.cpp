#include "ui/settings/UnsavedSettings.h"

#include <QPointer>

#include <utility>

namespace tidewell {

UnsavedSettings::UnsavedSettings(ViewTime time, QObject* parent)
    : QObject(parent), m_time(std::move(time)) {}

void UnsavedSettings::store(std::string_view key, Write write) {
  m_writes.insert_or_assign(std::string(key), std::move(write));
  tryAll();
}

bool UnsavedSettings::forget(std::string_view key) {
  const auto found = m_writes.find(key);
  if (found == m_writes.end()) {
    return false;
  }
  m_writes.erase(found);
  if (m_writes.empty()) {
    Q_EMIT changed({});
  }
  return true;
}

void UnsavedSettings::tryAll() {
  std::error_code last;
  std::erase_if(m_writes, [&last](const auto& entry) {
    const std::error_code error = entry.second();
    last = error ? error : last;
    return !error;
  });
  Q_EMIT changed(last ? QString::fromLocal8Bit(last.message().c_str()) : QString());
  if (last) {
    tryLater();
  }
}

void UnsavedSettings::tryLater() {
  if (std::exchange(m_isWaiting, true)) {
    return;
  }
  m_time.after(retrySpan, [self = QPointer(this)] {
    if (self) {
      self->m_isWaiting = false;
      self->tryAll();
    }
  });
}

} // namespace tidewell
