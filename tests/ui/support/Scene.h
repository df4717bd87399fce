#pragma once

#include "Panel.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace tidewell::test {

/// A named picture of a widget.
struct Scene {
  std::string name;
  std::function<std::shared_ptr<QWidget>()> make;

  friend std::ostream& operator<<(std::ostream& stream, const Scene& scene) {
    return stream << scene.name;
  }
};

/// Returns the widget with its owner.
template <class Owner>
std::shared_ptr<QWidget> ownedBy(std::shared_ptr<Owner> owner, QWidget* widget) {
  Panel::settle();
  return {std::move(owner), widget};
}

/// This many samples with little traffic, two downloads and some noise. Always the same.
[[nodiscard]] SnapshotList evening(int count);

[[nodiscard]] std::vector<Scene> componentScenes();
[[nodiscard]] std::vector<Scene> panelScenes();
[[nodiscard]] std::vector<Scene> detailScenes();
[[nodiscard]] std::vector<Scene> settingsScenes();

} // namespace tidewell::test
