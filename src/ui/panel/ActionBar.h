#pragma once

#include <QWidget>

#include <array>
#include <functional>
#include <string>

namespace tidewell {

class ActionButton;

/// The actions of the panel's buttons.
struct PanelActions {
  std::function<void()> openDetail;
  std::function<void()> openSettings;
  std::function<void()> runSpeedTest;
  /// Quits the application.
  std::function<void()> quit;
  /// Replaces the clipboard's content with the plain text.
  std::function<void(const std::string& text)> copyText;
};

/// The panel's buttons, in order.
enum class PanelAction { speedTest, copyIP, details, settings, quit };

/// Five buttons of equal width, side by side. Left and Right move between them.
class ActionBar final : public QWidget {
  Q_OBJECT

public:
  explicit ActionBar(QWidget* parent);

  /// Runs the task whenever the button is pressed.
  void onPressed(PanelAction action, std::function<void()> task);

  /// Shows whether a speed test is running. The button stays enabled.
  void setTesting(bool isTesting);
  /// Shows whether an address was just copied.
  void setCopied(bool isCopied);

  [[nodiscard]] ActionButton& button(PanelAction action);

private:
  // Children.
  std::array<ActionButton*, 5> m_buttons;
};

} // namespace tidewell
