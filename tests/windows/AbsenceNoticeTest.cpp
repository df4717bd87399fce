#include "ui/application/AbsenceNotice.h"

#include "support/Language.h"
#include "ui/panel/PopoverView.h"
#include "ui/support/DrawnTexts.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace tidewell::test {
namespace {

class AbsenceNoticeTest : public testing::Test {
protected:
  /// What the notice draws in a window as wide as the panel.
  [[nodiscard]] static QString drawn() {
    Published<bool> isThere{false};
    QWidget window;
    window.resize(PopoverView::panelWidth, 200);
    auto* const notice = new AbsenceNotice(isThere, AbsenceNotice::Edge::top, &window);
    window.show();
    QString text;
    for (const DrawnText& piece : drawnTexts(*notice)) {
      EXPECT_TRUE(notice->rect().contains(piece.box.center().toPoint()));
      EXPECT_GE(piece.box.left(), -1.0);
      EXPECT_LE(piece.box.right(), notice->width() + 1.0);
      text += piece.text;
    }
    return text;
  }
};

TEST_F(AbsenceNoticeTest, SaysThatTidewellHasStopped) {
  EXPECT_EQ(drawn(), "Tidewell has stopped. Waiting for it to come back.");
}

TEST_F(AbsenceNoticeTest, FitsInEveryLanguage) {
  for (const auto& [directory, name] :
       {std::pair(TIDEWELL_PSEUDO, "pseudo"), std::pair(TIDEWELL_CATALOGUES, "de"),
        std::pair(TIDEWELL_CATALOGUES, "fr"), std::pair(TIDEWELL_CATALOGUES, "es"),
        std::pair(TIDEWELL_CATALOGUES, "pt_BR"), std::pair(TIDEWELL_CATALOGUES, "pl"),
        std::pair(TIDEWELL_CATALOGUES, "uk"), std::pair(TIDEWELL_CATALOGUES, "zh_CN"),
        std::pair(TIDEWELL_CATALOGUES, "ja")}) {
    const Language language(directory, name);
    const QString text = drawn();
    EXPECT_FALSE(text.contains(u'\u2026')) << name << ": " << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("stopped"))) << name;
  }
}

} // namespace
} // namespace tidewell::test
