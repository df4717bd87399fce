#include "ReadAloud.h"

namespace tidewell::test {

namespace {

void collect(QAccessibleInterface& element, std::vector<Spoken>& all) {
  if (element.state().invisible) {
    return;
  }
  if (element.childCount() == 0) {
    all.push_back({element.role(), element.text(QAccessible::Name).toStdString()});
  }
  for (int index = 0; index < element.childCount(); ++index) {
    collect(*element.child(index), all);
  }
}

} // namespace

std::vector<Spoken> readAloud(QWidget& widget) {
  std::vector<Spoken> all;
  collect(*QAccessible::queryAccessibleInterface(&widget), all);
  std::erase_if(all, [](const Spoken& spoken) { return spoken.role == QAccessible::Separator; });
  return all;
}

} // namespace tidewell::test
