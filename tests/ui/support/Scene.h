#pragma once

#include <QWidget>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace tidewell::test {

/// A named picture to take: a widget and whatever it needs to live.
struct Scene {
  std::string name;
  std::function<std::shared_ptr<QWidget>()> make;

  friend std::ostream& operator<<(std::ostream& stream, const Scene& scene) {
    return stream << scene.name;
  }
};

[[nodiscard]] std::vector<Scene> componentScenes();
[[nodiscard]] std::vector<Scene> panelScenes();
[[nodiscard]] std::vector<Scene> detailScenes();
[[nodiscard]] std::vector<Scene> settingsScenes();

} // namespace tidewell::test
