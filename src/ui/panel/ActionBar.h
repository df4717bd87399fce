#pragma once

#include <QWidget>

#include <array>
#include <functional>
#include <string>

namespace tidewell {

class ActionButton;

/// What the panel's buttons ask for. Called on the main thread.
struct PanelActions {
  std::function<void()> openDetail;
  std::function<void()> openSettings;
  std::function<void()> runSpeedTest;
  /// Ends the application.
  std::function<void()> quit;
  /// Clears the clipboard and puts the plain text on it.
  std::function<void(const std::string& text)> copyText;
};

/// The panel's buttons, in their order.
enum class PanelAction { speedTest, copyIP, details, settings, quit };

/// Five buttons of equal width side by side. Left and Right move between them. Main thread.
class ActionBar final : public QWidget {
  Q_OBJECT

public:
  explicit ActionBar(QWidget* parent);

  /// Has the task run whenever the button is pressed.
  void onPressed(PanelAction action, std::function<void()> task);

  /// Whether a speed test runs. Its button stays enabled.
  void setTesting(bool isTesting);
  /// Whether an address was just copied.
  void setCopied(bool isCopied);

  [[nodiscard]] ActionButton& button(PanelAction action);

private:
  // Children.
  std::array<ActionButton*, 5> m_buttons;
};

} // namespace tidewell
