#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace tidewell {

/// A screen in the toolkit's and the display server's coordinates.
struct ScreenArea {
  /// In device-independent pixels, with the display server's top left corner.
  QRect geometry;
  /// Device pixels per device-independent pixel.
  double scale = 1.0;
  /// The part without the desktop's bars, where it is known.
  QRect workArea = {};
};

/// The pixels that most hosts of a display server count in.
enum class LikelyUnits {
  device,  ///< X11.
  logical, ///< Wayland.
};

/// What a host may have meant by a point, as points on screens in device-independent pixels, the
/// likelier first. Some hosts tell device pixels from the corner of the screen, others
/// device-independent ones. Empty if the point is on no screen.
[[nodiscard]] QList<QPoint> pointReadings(const QPoint& point, const QList<ScreenArea>& screens,
                                          LikelyUnits likely);

/// The same for a host that is known to be on this screen, relative to the screen's corner. The
/// point may also be relative to the host's bar. `scales` are those that the host may count in.
[[nodiscard]] QList<QPoint> readingsOn(const QRect& screen, const QPoint& point,
                                       const QList<double>& scales);

/// The place of the click on screens whose work areas are known. `readings` as above. The pointer
/// is trusted if it is on a bar, then a reading on a bar. Returns nullopt without evidence.
[[nodiscard]] std::optional<QPoint> clickedPoint(const QList<QPoint>& readings,
                                                 const QPoint& pointer,
                                                 const QList<ScreenArea>& screens);

/// A panel's place on a screen whose corner is (0, 0).
struct PanelPlace {
  QPoint anchor;
  QRect workArea;
  /// False if the bar may be at the opposite edge, so the pointer's position would help.
  bool isCertain = false;
};

/// The place of the click where only the size of the work area is known: the bars are where it is
/// missing. Points on a bar are trusted, the pointer first. Without evidence it is the bar's end.
[[nodiscard]] PanelPlace panelPlace(const QList<QPoint>& readings, std::optional<QPoint> pointer,
                                    const QSize& screen, const QSize& workArea);

/// The index of the screen that the readings agree on. Returns nullopt if they do not, or if they
/// may be relative to a bar, as some hosts tell them: then they are at a corner of the desktop.
[[nodiscard]] std::optional<int> clickedScreen(const QList<QPoint>& readings,
                                               const QList<ScreenArea>& screens);

/// Space between the panel and the edges of the work area, in device-independent pixels. Plasma's
/// floating bars reach as far into the work area.
constexpr int panelGap = 8;

/// The area available to the panel: the work area without the gap at its edges. `screen` and
/// `workArea` as below.
[[nodiscard]] QRect panelRoom(const QRect& screen, const QRect& workArea);

/// Returns the panel's top left corner.
///
/// `anchor` is where the user clicked. `screen` is the whole screen and `workArea` the part without
/// the desktop's bars. The panel is next to the clicked bar, centred on the click if possible, and
/// stays inside the work area. A click near an edge without a bar is taken for the middle of a bar
/// that hides. If the panel is larger than the work area, its top left part is visible.
[[nodiscard]] QPoint panelPosition(const QPoint& anchor, const QSize& panel, const QRect& screen,
                                   const QRect& workArea);

/// A likely position of the click if it is unknown: the end of the top bar, otherwise of the bottom
/// bar.
[[nodiscard]] QPoint likelyAnchor(const QRect& screen, const QRect& workArea);

} // namespace tidewell
