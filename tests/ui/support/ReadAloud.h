#pragma once

#include <QAccessible>
#include <QWidget>

#include <ostream>
#include <string>
#include <vector>

namespace tidewell::test {

/// One thing that a screen reader meets.
struct Spoken {
  QAccessible::Role role;
  std::string name;

  friend bool operator==(const Spoken&, const Spoken&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const Spoken& spoken) {
    return stream << spoken.role << ' ' << spoken.name;
  }
};

/// What a screen reader meets in a widget, in its order, the lines between sections aside.
[[nodiscard]] std::vector<Spoken> readAloud(QWidget& widget);

} // namespace tidewell::test
