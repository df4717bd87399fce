#pragma once

#include "Panel.h"

#include <gtest/gtest.h>

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
/// What changes under the pointer, with the keyboard, and without the resident.
[[nodiscard]] std::vector<Scene> interactionScenes();
[[nodiscard]] std::vector<Scene> panelScenes();
[[nodiscard]] std::vector<Scene> detailScenes();
[[nodiscard]] std::vector<Scene> settingsScenes();

inline std::vector<Scene> allScenes() {
  std::vector<Scene> all = componentScenes();
  for (const auto& scenesOf : {interactionScenes, panelScenes, detailScenes, settingsScenes}) {
    for (Scene& scene : scenesOf()) {
      all.push_back(std::move(scene));
    }
  }
  return all;
}

/// The name of a scene's test.
inline std::string sceneName(const testing::TestParamInfo<Scene>& scene) {
  std::string name = scene.param.name;
  std::erase(name, '-');
  return name;
}

} // namespace tidewell::test
