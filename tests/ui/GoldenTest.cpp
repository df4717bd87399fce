#include "support/ImageComparison.h"
#include "support/Scene.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QFile>

namespace tidewell::test {
namespace {

std::vector<Scene> scenes() {
  std::vector<Scene> all = componentScenes();
  for (const auto& scenesOf : {panelScenes, detailScenes, settingsScenes}) {
    for (Scene& scene : scenesOf()) {
      all.push_back(std::move(scene));
    }
  }
  return all;
}

QByteArray digestOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return {};
  }
  return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
}

// Other editions of the fonts draw other pictures, and say nothing about the program.
QByteArray fontDigests() {
  return digestOf(QStringLiteral(TIDEWELL_INTER)) + '\n' +
         digestOf(QStringLiteral(TIDEWELL_JETBRAINS)) + '\n';
}

bool fontsAreTheStoredOnes() {
  QFile stored(QStringLiteral(TIDEWELL_GOLDEN "/fonts.sha256"));
  if (qEnvironmentVariableIsSet("TIDEWELL_UPDATE_GOLDEN")) {
    return stored.open(QIODevice::WriteOnly) && stored.write(fontDigests()) > 0;
  }
  return stored.open(QIODevice::ReadOnly) && stored.readAll() == fontDigests();
}

class GoldenTest : public testing::TestWithParam<Scene> {};

TEST_P(GoldenTest, LooksAsStored) {
  if (!fontsAreTheStoredOnes()) {
    GTEST_SKIP() << "skipped: the pictures were made with other editions of the fonts";
  }
  const auto widget = GetParam().make();
  const QString name = QString::fromStdString(GetParam().name);
  for (const int scale : {1, 2}) {
    const QString stored = name + u'@' + QString::number(scale) + u'x';
    EXPECT_EQ(faultOf(stored, picture(*widget, scale)).toStdString(), "");
  }
}

std::string testName(const testing::TestParamInfo<Scene>& scene) {
  std::string name = scene.param.name;
  std::erase(name, '-');
  return name;
}
INSTANTIATE_TEST_SUITE_P(Scenes, GoldenTest, testing::ValuesIn(scenes()), testName);

} // namespace
} // namespace tidewell::test
