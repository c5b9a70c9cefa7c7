#pragma once

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>
#include <string>

#include "platform/messages.h"
#include "presentation/model/hud.h"

namespace tallowin {

struct Ink;

/// The pop-up: shows where the user has got to, or a message, each in place of the last one, and fades. It is never
/// focused, and what is clicked goes to the window below. Main thread only.
class HUDWindow : public QWidget {
 public:
  HUDWindow();

  /// Shows it on the screen of the pointer.
  void show(const HUD& hud);
  /// The same for a message, in the size and at the place of the last pop-up.
  void show(const Toast& toast);

  /// Where a window of this size stands in place of the last pop-up, on the screen of the pointer.
  [[nodiscard]] QRect placeFor(const QSizeF& extent) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  /// What is painted, whatever it is for.
  struct Content {
    std::string title;
    std::string line;
    std::string symbol;
    std::string number;  ///< in the square, where there is no symbol; empty: no square without a symbol
    std::optional<std::string> colorHex;
    bool isError = false;
  };

  void present(const Content& content, std::chrono::milliseconds time);
  void place();
  void fadeOut();
  void paintBackground(QPainter& painter, const Ink& ink) const;
  void paintSign(QPainter& painter, const QRectF& square, const Ink& ink) const;

  Content content_;
  HUDSize size_ = HUDSize::regular;
  HUDPosition position_ = HUDPosition::top;
  bool isMessage_ = false;  ///< what was shown last
  bool isTranslucent_ = false;
  QTimer end_;
  QVariantAnimation fade_;
};

}  // namespace tallowin
