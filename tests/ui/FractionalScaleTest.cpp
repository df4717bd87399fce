#include "support/ImageComparison.h"
#include "support/Panel.h"
#include "support/Scene.h"
#include "ui/charts/AxisCharts.h"
#include "ui/charts/ChartStats.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/ChoiceList.h"
#include "ui/components/Painting.h"
#include "ui/panel/ActionBar.h"
#include "ui/panel/PanelSections.h"
#include "ui/processes/ProcessRow.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QCursor>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <vector>

namespace tidewell::test {
namespace {

/// Lengths of the runs of one colour along a line of pixels.
class Runs {
public:
  void add(bool isThere) {
    if (isThere && !m_wasThere) {
      m_lengths.push_back(0);
    }
    if (isThere) {
      ++m_lengths.back();
    }
    m_wasThere = isThere;
  }
  [[nodiscard]] const std::vector<int>& lengths() const { return m_lengths; }

private:
  std::vector<int> m_lengths;
  bool m_wasThere = false;
};

using Wanted = std::function<bool(QRgb)>;

std::vector<int> runsInRow(const QImage& image, int y, const Wanted& isWanted) {
  Runs runs;
  for (int x = 0; x < image.width(); ++x) {
    runs.add(isWanted(image.pixel(x, y)));
  }
  return runs.lengths();
}

std::vector<int> runsInColumn(const QImage& image, int x, const Wanted& isWanted) {
  Runs runs;
  for (int y = 0; y < image.height(); ++y) {
    runs.add(isWanted(image.pixel(x, y)));
  }
  return runs.lengths();
}

bool isInk(QRgb pixel) { return qAlpha(pixel) > 0; }
bool isClear(QRgb pixel) { return qAlpha(pixel) == 0; }

class FractionalScaleTest : public testing::TestWithParam<double> {
protected:
  void SetUp() override { QCursor::setPos(700, 780); }
  [[nodiscard]] static int device(double position) {
    return static_cast<int>(std::lround(position * GetParam()));
  }
  /// Whole device pixels in a line of one pixel.
  [[nodiscard]] static int hairline() { return static_cast<int>(GetParam()); }
};

TEST_P(FractionalScaleTest, GridLinesAreEquallyThick) {
  for (int top = 0; top < 4; ++top) {
    QWidget window;
    window.resize(600, 230);
    BandwidthChart chart(&window);
    chart.setGeometry(3, top, 590, chart.sizeHint().height());
    window.show();
    Panel::settle();
    const std::vector<int> lines = runsInColumn(picture(window, GetParam()), device(5), isInk);
    EXPECT_GE(lines.size(), 3U);
    EXPECT_EQ(lines, std::vector<int>(lines.size(), hairline())) << "moved by " << top;
  }
}

TEST_P(FractionalScaleTest, SeparatorsOfTheActionBarAreEquallyThick) {
  const auto isSeparator = [](QRgb pixel) { return pixel == TWColor::borderSubtle.rgba(); };
  for (const int width : {340, 341, 342, 343}) {
    ActionBar bar(nullptr);
    bar.resize(width, bar.sizeHint().height());
    bar.show();
    Panel::settle();
    const QImage image = picture(bar, GetParam());
    EXPECT_EQ(runsInRow(image, image.height() / 2, isSeparator), std::vector<int>(4, hairline()))
        << width;
  }
}

TEST_P(FractionalScaleTest, GapsOfTheFiguresAreEqualAndSharp) {
  for (int offset = 0; offset < 4; ++offset) {
    QWidget window;
    window.resize(360, 160);
    StatsGrid grid(&window);
    grid.setGeometry(offset, offset, 340, grid.sizeHint().height());
    window.show();
    Panel::settle();
    const QImage image = picture(window, GetParam());
    // The middle one of three: left of the card, between the cells, right of the card.
    const std::vector<int> across = runsInRow(image, device(offset + 4), isClear);
    const std::vector<int> down = runsInColumn(image, device(offset + 17), isClear);
    ASSERT_EQ(across.size(), 3U) << offset;
    EXPECT_EQ(across[1], hairline()) << offset;
    ASSERT_GE(down.size(), 2U) << offset;
    EXPECT_EQ(down[down.size() - 2], hairline()) << offset;
  }
}

TEST_P(FractionalScaleTest, FramesAreOneColourAlongTheirEdges) {
  for (int offset = 0; offset < 4; ++offset) {
    QWidget window;
    window.resize(300, 80);
    ChoiceList list({QStringLiteral("One")}, &window);
    list.setFocusPolicy(Qt::NoFocus); // whose ring would cover the outline
    list.setGeometry(offset, offset, 200, list.sizeHint().height());
    window.show();
    Panel::settle();
    const QImage image = picture(window, GetParam());
    const std::vector<int> edges = runsInColumn(
        image, device(offset + 150), [](QRgb pixel) { return pixel == TWColor::surface3.rgba(); });
    EXPECT_EQ(edges, std::vector<int>(2, hairline())) << offset;
  }
}

// Fills of whole pixels that are antialiased may miss a level.
bool isColor(QRgb pixel, const QColor& color) {
  return qAlpha(pixel) >= 250 && std::abs(qGreen(pixel) - color.green()) <= 1;
}

TEST_P(FractionalScaleTest, CardsAndTheirGapsAreEqualAndSharp) {
  for (int offset = 0; offset < 4; ++offset) {
    QWidget window;
    window.resize(650, 90);
    ChartStats cards(&window);
    cards.setGeometry(offset, offset, 632, cards.sizeHint().height());
    window.show();
    Panel::settle();
    for (StatCell* card : cards.findChildren<StatCell*>()) {
      card->setFigure({});
    }
    const QImage image = picture(window, GetParam());
    const int middle = device(offset + 35);
    const std::vector<int> clear = runsInRow(image, middle, isClear);
    const std::vector<int> sharp = runsInRow(image, middle, [](QRgb pixel) {
      return isClear(pixel) || isColor(pixel, TWColor::surface2);
    });
    EXPECT_EQ(sharp, std::vector<int>{image.width()}) << offset;
    ASSERT_GE(clear.size(), 4U) << offset;
    EXPECT_EQ(std::vector<int>(clear.end() - 4, clear.end() - 1), std::vector<int>(3, device(12)));
  }
}

TEST_P(FractionalScaleTest, LinesBetweenRowsAreEquallyThick) {
  QWidget window;
  window.resize(500, 340);
  for (int index = 0; index < 4; ++index) {
    auto* const value = new ValueRow("DNS", {.padding = 6, .lineThickness = 1}, &window);
    value->setGeometry(1, 1 + 29 * index, 490, 29);
    auto* const program = new ProcessRow(0, &window);
    const int height = program->sizeHint().height();
    program->setGeometry(1, 121 + height * index, 490, height);
    Divider::vertical(90, &window)->move(203 + 9 * index, 10);
  }
  window.show();
  Panel::settle();
  const auto isLine = [](QRgb pixel) { return pixel == TWColor::borderSubtle.rgba(); };
  const QImage image = picture(window, GetParam());
  EXPECT_EQ(runsInColumn(image, device(80), isLine), std::vector<int>(8, hairline()));
  EXPECT_EQ(runsInRow(image, device(15), isLine), std::vector<int>(4, hairline()));
}

TEST_P(FractionalScaleTest, ThePanelsBorderIsEquallyThickAtAllSides) {
  for (const Backdrop backdrop : {Backdrop::opaque, Backdrop::translucent}) {
    const QRect panel(0, 0, 91, 73);
    QImage image((QSizeF(panel.size()) * GetParam()).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(GetParam());
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintBackdrop(painter, panel, backdrop);
    painter.end();
    const auto isBorder = [](QRgb pixel) { return isColor(pixel, TWColor::surface3); };
    EXPECT_EQ(runsInRow(image, device(36), isBorder), std::vector<int>(2, hairline()));
    EXPECT_EQ(runsInColumn(image, device(45), isBorder), std::vector<int>(2, hairline()));
    EXPECT_TRUE(isBorder(image.pixel(0, device(36))));
    EXPECT_TRUE(isBorder(image.pixel(image.width() - 1, device(36))));
  }
}

INSTANTIATE_TEST_SUITE_P(Scales, FractionalScaleTest, testing::Values(1.0, 1.25, 1.5, 1.75, 2.0));

} // namespace
} // namespace tidewell::test
