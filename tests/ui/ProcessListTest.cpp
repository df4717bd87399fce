#include "support/Details.h"
#include "support/ImageComparison.h"
#include "ui/components/TextLine.h"
#include "ui/processes/ProcessListView.h"
#include "ui/processes/ProcessRow.h"
#include "ui/processes/ProcessTexts.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QScrollBar>

#include <limits>

namespace tidewell::test {
namespace {

constexpr int listWidth = 632;

class ProcessListTest : public testing::Test {
protected:
  void show(const std::vector<ProcessUsage>& processes) {
    view.setProcesses(processes);
    view.resize(listWidth, view.sizeHint().height());
    view.show();
    Panel::settle();
  }
  [[nodiscard]] const ProcessRow& row(std::size_t index) const { return *view.rows().at(index); }
  [[nodiscard]] ProcessListHeader& header() const { return *view.findChild<ProcessListHeader*>(); }

  ProcessListView view;
};

ProcessUsage usage(const std::string& name, double share) {
  return {4321, name, 2'500'000, 999, 2'345'678'901, share};
}

TEST_F(ProcessListTest, ShowsOnlyItsHeaderAndAHintWhileThereAreNone) {
  show({});
  const auto& hint = *view.findChild<TextLine*>();
  EXPECT_EQ(hint.text(), "No active network processes");
  EXPECT_TRUE(hint.isVisible());
  EXPECT_TRUE(header().isVisible());
  EXPECT_TRUE(view.rows().empty());
  EXPECT_EQ(hint.mapTo(&view, QPoint()).y(), header().height() + 32);
  EXPECT_EQ(view.height(), header().height() + 32 + hint.height() + 32);
  EXPECT_EQ(hint.geometry().center().x(), (listWidth - 1) / 2);
}

TEST_F(ProcessListTest, ShowsWhatAProgramMoves) {
  show({usage("firefox", 0.4)});
  EXPECT_FALSE(view.findChild<TextLine*>()->isVisible());
  EXPECT_EQ(row(0).name(), "firefox");
  EXPECT_EQ(row(0).initial(), "F");
  EXPECT_EQ(row(0).figures(), (std::array<QString, 3>{"2.5 MB/s", "1 KB/s", "2.3 GB"}));
  EXPECT_EQ(identifierText(usage("firefox", 0.4)), "PID 4321");
}

TEST_F(ProcessListTest, ShowsItsRowsInTheOrderGiven) {
  show({usage("b", 0.1), usage("c", 0.7), usage("a", 0.2)});
  EXPECT_EQ(row(0).name(), "b");
  EXPECT_EQ(row(1).name(), "c");
  EXPECT_EQ(row(2).name(), "a");
  EXPECT_LT(row(0).y(), row(1).y());
  EXPECT_LT(row(1).y(), row(2).y());
}

TEST_F(ProcessListTest, DrawsTheShareButNeverLessThanAStub) {
  show({usage("a", 0.0), usage("b", 0.01), usage("c", 0.5), usage("d", 1.0)});
  EXPECT_DOUBLE_EQ(row(0).bar().width(), 4.0);
  EXPECT_DOUBLE_EQ(row(1).bar().width(), 4.0);
  EXPECT_DOUBLE_EQ(row(2).bar().width(), 40.0);
  EXPECT_DOUBLE_EQ(row(3).bar().width(), 80.0);
  EXPECT_DOUBLE_EQ(row(3).bar().height(), 4.0);
}

TEST_F(ProcessListTest, TakesNoShareThatIsNone) {
  show({usage("a", nan), usage("b", -1.0), usage("c", 1e300)});
  EXPECT_DOUBLE_EQ(row(0).bar().width(), 4.0);
  EXPECT_DOUBLE_EQ(row(1).bar().width(), 4.0);
  EXPECT_DOUBLE_EQ(row(2).bar().width(), 80.0);
}

TEST_F(ProcessListTest, ColoursRowsByTheirPosition) {
  show(programs({"a", "b", "c", "d", "e", "f", "g", "h"}));
  const std::vector<QColor> expected = {TWColor::accent, TWColor::green,  TWColor::purple,
                                        TWColor::cyan,   TWColor::yellow, TWColor::red,
                                        TWColor::accent, TWColor::green};
  const QImage image = picture(view);
  for (std::size_t index = 0; index < expected.size(); ++index) {
    EXPECT_EQ(processBarColor(index), expected[index]);
    const QPoint place = row(index).mapTo(&view, QPoint());
    const QPoint bar = place + row(index).bar().toRect().topLeft() + QPoint(2, 2);
    EXPECT_EQ(image.pixelColor(bar).name(), expected[index].name()) << index;
    const QColor square = image.pixelColor(place + QPoint(3, row(index).height() / 2));
    EXPECT_NEAR(square.alphaF(), 0.8, 0.01) << index;
  }
}

TEST_F(ProcessListTest, GivesTheFirstColumnWhatTheOthersLeave) {
  const QRect row(0, 0, listWidth, 50);
  EXPECT_EQ(processColumnBox(4, row), QRect(552, 0, 80, 50));
  EXPECT_EQ(processColumnBox(3, row), QRect(456, 0, 80, 50));
  EXPECT_EQ(processColumnBox(2, row), QRect(350, 0, 90, 50));
  EXPECT_EQ(processColumnBox(1, row), QRect(244, 0, 90, 50));
  EXPECT_EQ(processColumnBox(0, row), QRect(0, 0, 228, 50));
  EXPECT_EQ(processColumnBox(0, QRect(0, 0, 100, 50)).width(), 0);
}

TEST_F(ProcessListTest, ShowsTheFirstCharacterInUpperCase) {
  EXPECT_EQ(initialOf("firefox"), "F");
  EXPECT_EQ(initialOf("Signal"), "S");
  EXPECT_EQ(initialOf(QString::fromUtf8("\u00E9clair")), QString::fromUtf8("\u00C9"));
  EXPECT_EQ(initialOf(QString::fromUtf8("e\u0301clair")), QString::fromUtf8("E\u0301"));
  EXPECT_EQ(initialOf(QString::fromUtf8("\U0001F98A fox")), QString::fromUtf8("\U0001F98A"));
  EXPECT_EQ(initialOf(""), "");
}

TEST_F(ProcessListTest, ShowsAnEmptySquareForAnEmptyName) {
  show({usage("", 0.5)});
  EXPECT_EQ(row(0).initial(), "");
  EXPECT_TRUE(row(0).accessibleName().startsWith("unnamed, PID 4321"));
  const QImage square =
      picture(view).copy(6, row(0).mapTo(&view, QPoint()).y() + row(0).height() / 2 - 6, 12, 12);
  for (int x = 0; x < 12; ++x) {
    EXPECT_EQ(square.pixelColor(x, 6), square.pixelColor(0, 0));
  }
}

TEST_F(ProcessListTest, HoldsNamesThatStrangersChose) {
  show({usage("two\nlines\x1b[31m\xff", 0.1), usage("\u202Eevil", 0.1), usage("<b>x</b> %1", 0.1)});
  EXPECT_EQ(row(0).name(), QString::fromUtf8("two\uFFFDlines\uFFFD[31m\uFFFD"));
  EXPECT_EQ(row(1).name(), QString::fromUtf8("\uFFFDevil"));
  EXPECT_EQ(row(2).name(), "<b>x</b> %1");
  EXPECT_TRUE(row(2).accessibleName().startsWith("<b>x</b> %1, PID"));
}

TEST_F(ProcessListTest, TellsInItsToolTipWhatWasCut) {
  show({usage("short", 0.1), usage(std::string(200, 'W'), 0.1)});
  EXPECT_EQ(row(0).toolTip(), "");
  EXPECT_TRUE(row(1).toolTip().startsWith(QString(200, u'W') + ", PID 4321, download 2.5 MB/s"));
}

TEST_F(ProcessListTest, LeavesNothingBehindOfLongerLists) {
  show(programs({"a", "b", "c"}));
  const int three = view.sizeHint().height();
  show(programs({"a"}));
  EXPECT_EQ(view.rows().size(), 1U);
  EXPECT_EQ(view.sizeHint().height(), three - 2 * row(0).height());
  show({});
  EXPECT_TRUE(view.rows().empty());
}

class PinnedHeaderTest : public testing::Test, protected Details {
protected:
  void SetUp() override {
    tracker.processes.set(programs({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}));
    open(1);
  }
  [[nodiscard]] int headerTop() const {
    const auto& header = only<ProcessListHeader>(1);
    return header.mapTo(pane(1).viewport(), QPoint()).y();
  }
};

TEST_F(PinnedHeaderTest, StaysAtTheTopWhileTheRowsScroll) {
  QScrollBar& bar = *pane(1).verticalScrollBar();
  ASSERT_GT(bar.maximum(), 100);
  const int atRest = headerTop();
  EXPECT_GT(atRest, 24);
  bar.setValue(10);
  EXPECT_EQ(headerTop(), atRest - 10);
  for (const int value : {atRest, atRest + 40, bar.maximum()}) {
    bar.setValue(value);
    EXPECT_EQ(headerTop(), 0) << value;
  }
  bar.setValue(0);
  EXPECT_EQ(headerTop(), atRest);
}

TEST_F(PinnedHeaderTest, HidesTheRowsBehindIt) {
  pane(1).verticalScrollBar()->setValue(150);
  Panel::settle();
  const QRect strip(QPoint(), QSize(listWidth, only<ProcessListHeader>(1).height()));
  const QPoint place = only<ProcessListHeader>(1).mapTo(view.get(), QPoint());
  const QImage shown = picture(*view).copy(strip.translated(place));
  ProcessListHeader alone(nullptr);
  alone.resize(strip.size());
  EXPECT_EQ(difference(picture(alone), shown).pixels, 0);
}

} // namespace
} // namespace tidewell::test
