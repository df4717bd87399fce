#include "DrawnTexts.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>

namespace tidewell::test {
namespace {

/// Draws nothing, and notes the texts.
class TextNotes final : public QPaintEngine {
public:
  explicit TextNotes(std::vector<DrawnText>& texts)
      : QPaintEngine(QPaintEngine::AllFeatures), m_texts(texts) {}

  bool begin(QPaintDevice* /*device*/) override { return true; }
  bool end() override { return true; }
  [[nodiscard]] Type type() const override { return User; }
  void updateState(const QPaintEngineState& /*state*/) override {}
  void drawPixmap(const QRectF& /*to*/, const QPixmap& /*from*/, const QRectF& /*part*/) override {}
  void drawImage(const QRectF& /*to*/, const QImage& /*from*/, const QRectF& /*part*/,
                 Qt::ImageConversionFlags /*flags*/) override {}
  void drawPath(const QPainterPath& /*path*/) override {}
  void drawPolygon(const QPointF* /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
  void drawTextItem(const QPointF& place, const QTextItem& item) override {
    const QRectF box(place.x(), place.y() - item.ascent(), item.width(),
                     item.ascent() + item.descent());
    m_texts.push_back({item.text(), painter()->transform().mapRect(box)});
  }

private:
  std::vector<DrawnText>& m_texts;
};

class TextDevice final : public QPaintDevice {
public:
  TextDevice(QSize size, std::vector<DrawnText>& texts) : m_size(size), m_engine(texts) {}

  [[nodiscard]] QPaintEngine* paintEngine() const override { return &m_engine; }

protected:
  [[nodiscard]] int metric(PaintDeviceMetric metric) const override {
    constexpr int dotsPerInch = 96;
    switch (metric) {
    case PdmWidth:
      return m_size.width();
    case PdmHeight:
      return m_size.height();
    case PdmDevicePixelRatio:
      return 1;
    case PdmDevicePixelRatioScaled:
      return static_cast<int>(devicePixelRatioFScale());
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
      return dotsPerInch;
    default:
      return QPaintDevice::metric(metric);
    }
  }

private:
  QSize m_size;
  mutable TextNotes m_engine;
};

} // namespace

std::vector<DrawnText> drawnTexts(QWidget& widget) {
  std::vector<DrawnText> texts;
  TextDevice device(widget.size(), texts);
  widget.render(&device, QPoint(), QRegion(), QWidget::RenderFlags());
  return texts;
}

} // namespace tidewell::test
