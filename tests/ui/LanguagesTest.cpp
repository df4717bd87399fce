// The windows in every language that is shipped, and in one whose texts are 40 % longer and share
// no letter with the English ones.
#include "support/DrawnTexts.h"
#include "support/ImageComparison.h"
#include "support/Language.h"
#include "support/Scene.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

namespace tidewell::test {
namespace {

const std::string pseudo = "pseudo";

std::vector<std::string> languages() {
  std::vector<std::string> names = {pseudo};
  QFile list(QStringLiteral(TIDEWELL_LINGUAS));
  if (list.open(QIODevice::ReadOnly)) {
    for (const QByteArray& name : list.readAll().split('\n')) {
      if (!name.isEmpty()) {
        names.push_back(name.toStdString());
      }
    }
  }
  return names;
}

std::string directoryOf(const std::string& language) {
  return language == pseudo ? TIDEWELL_PSEUDO : TIDEWELL_CATALOGUES;
}

/// The windows with values that occur.
std::vector<Scene> windows() {
  std::vector<Scene> scenes;
  for (const auto& scenesOf : {panelScenes, detailScenes, settingsScenes}) {
    std::ranges::copy_if(scenesOf(), std::back_inserter(scenes), [](const Scene& scene) {
      const bool isOdd = scene.name.find("bsurd") != std::string::npos;
      return !isOdd && scene.name != "panel-backdrops" && scene.name != "panel-rightToLeft";
    });
  }
  return scenes;
}

std::vector<QWidget*> shownIn(QWidget& window) {
  std::vector<QWidget*> shown = {&window};
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (widget->isVisible()) {
      shown.push_back(widget);
    }
  }
  return shown;
}

std::string nameOf(const QWidget& widget, const QString& text) {
  return std::string(widget.metaObject()->className()) + " \"" + text.toStdString() + '"';
}

/// What a user with this language could not read.
std::vector<std::string> unreadable(QWidget& widget) {
  std::vector<std::string> faults;
  std::vector<DrawnText> texts = drawnTexts(widget);
  constexpr double tolerance = 1.5; // the space after the last letter
  for (const DrawnText& drawn : texts) {
    const double right = widget.width() + tolerance;
    if (drawn.box.left() < -tolerance || drawn.box.right() > right) {
      faults.push_back("outside: " + nameOf(widget, drawn.text));
    }
    if (drawn.text.contains(u'\u2026') && widget.toolTip().isEmpty()) {
      faults.push_back("cut without a tool tip: " + nameOf(widget, drawn.text));
    }
  }
  for (std::size_t index = 0; index < texts.size(); ++index) {
    for (std::size_t other = 0; other < index; ++other) {
      const QRectF shared = texts[index].box & texts[other].box;
      if (shared.width() > 2.0 * tolerance && shared.height() > 4.0) {
        faults.push_back("one over the other: " + nameOf(widget, texts[index].text) + ", " +
                         texts[other].text.toStdString());
      }
    }
  }
  if (const QWidget* parent = widget.parentWidget(); parent != nullptr && !widget.isWindow()) {
    const bool isWide = widget.x() < 0 || widget.geometry().right() >= parent->width();
    if (isWide && !texts.empty()) {
      faults.push_back("wider than its parent: " + nameOf(widget, texts.front().text));
    }
  }
  return faults;
}

/// The letters in a text that no translation has: those of the English texts.
QString englishIn(QString text) {
  // Units, abbreviations of the protocols, and what the scenes show of the machine.
  static const QRegularExpression others(
      QStringLiteral("\\b(Mbps|[KMG]B(/s)?|ms|RPM|PID|Riverside|wlan0|en0|Read-only file system|"
                     "firefox|syncthing|thunderbird|apt|Signal|transmission|NetworkManager|ssh|"
                     "curl|systemd-resolved|F|S|T|A|N|C)\\b"));
  text.remove(others);
  static const QRegularExpression english(QStringLiteral("[A-Za-z]+"));
  return english.match(text).captured();
}

class LanguagesTest : public testing::TestWithParam<std::tuple<std::string, Scene>> {};

TEST_P(LanguagesTest, EverythingFits) {
  const auto& [name, scene] = GetParam();
  const Language language(directoryOf(name), name);
  const auto window = scene.make();
  for (QWidget* widget : shownIn(*window)) {
    EXPECT_EQ(unreadable(*widget), std::vector<std::string>());
  }
  // For translators, who look at what they wrote.
  const QString pictures = qEnvironmentVariable("TIDEWELL_LANGUAGE_PICTURES");
  if (!pictures.isEmpty()) {
    const QString file = QString::fromStdString(name + "-" + scene.name + ".png");
    EXPECT_TRUE(picture(*window).save(pictures + u'/' + file));
  }
}

std::vector<std::string> spokenAndShown(QWidget& widget) {
  std::vector<std::string> texts;
  for (const QString& text : {widget.accessibleName(), widget.accessibleDescription(),
                              widget.toolTip(), widget.windowTitle()}) {
    texts.push_back(text.toStdString());
  }
  for (const DrawnText& drawn : drawnTexts(widget)) {
    texts.push_back(drawn.text.toStdString());
  }
  return texts;
}

class TranslationOfWindowsTest : public testing::TestWithParam<Scene> {};

TEST_P(TranslationOfWindowsTest, NoEnglishTextIsLeft) {
  const Language language(TIDEWELL_PSEUDO, pseudo);
  const auto window = GetParam().make();
  for (QWidget* widget : shownIn(*window)) {
    for (const std::string& text : spokenAndShown(*widget)) {
      const bool isName = text == "Tidewell";
      EXPECT_TRUE(isName || englishIn(QString::fromStdString(text)).isEmpty())
          << widget->metaObject()->className() << ": " << text;
    }
  }
}

std::string plain(std::string name) {
  std::erase_if(name, [](char letter) { return letter == '-' || letter == '_'; });
  return name;
}

std::string caseName(const testing::TestParamInfo<std::tuple<std::string, Scene>>& tested) {
  return plain(std::get<0>(tested.param)) + "_" + plain(std::get<1>(tested.param).name);
}

INSTANTIATE_TEST_SUITE_P(Windows, LanguagesTest,
                         testing::Combine(testing::ValuesIn(languages()),
                                          testing::ValuesIn(windows())),
                         caseName);
INSTANTIATE_TEST_SUITE_P(Windows, TranslationOfWindowsTest, testing::ValuesIn(windows()),
                         sceneName);

} // namespace
} // namespace tidewell::test
