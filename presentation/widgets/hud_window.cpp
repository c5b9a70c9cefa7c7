#include "presentation/widgets/hud_window.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QBitmap>
#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <algorithm>

#include "presentation/widgets/ink.h"
#include "presentation/widgets/symbols.h"
#include "presentation/widgets/x11_window.h"

namespace tallowin {

namespace {

constexpr double roundness = 0.18;  // of the height
constexpr int fadeMilliseconds = 180;

QRect inPixels(const CGRect& rectangle) {
  return QRectF(rectangle.origin.x, rectangle.origin.y, rectangle.size.width, rectangle.size.height).toRect();
}

CGRect inPoints(const QRect& rectangle) {
  return {{static_cast<double>(rectangle.x()), static_cast<double>(rectangle.y())},
          {static_cast<double>(rectangle.width()), static_cast<double>(rectangle.height())}};
}

/// What a screen reader is told of the pop-up: a notification, whose name is what it says.
QAccessibleInterface* describeHUD(const QString& /*className*/, QObject* object) {
  auto* const window = dynamic_cast<HUDWindow*>(object);
  return window != nullptr ? new QAccessibleWidget(window, QAccessible::Notification) : nullptr;
}

/// How a line of text is painted.
struct LineStyle {
  double height;  ///< of the letters' box, in pixels
  QColor color;
  Qt::Alignment vertical;
  bool isBold;
};

void paintLine(QPainter& painter, const std::string& line, const QRectF& area, const LineStyle& style) {
  auto font = painter.font();
  font.setBold(style.isBold);
  font.setPixelSize(std::max(1, static_cast<int>(style.height)));
  painter.setFont(font);
  painter.setPen(style.color);
  const auto elided = QFontMetricsF(font).elidedText(QString::fromStdString(line), Qt::ElideRight, area.width());
  painter.drawText(area, static_cast<int>(style.vertical | Qt::AlignLeft) | Qt::TextSingleLine, elided);
}

}  // namespace

HUDWindow::HUDWindow()
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                           Qt::WindowDoesNotAcceptFocus | Qt::WindowStaysOnTopHint) {
  setObjectName("hud");
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_TranslucentBackground);
  setFocusPolicy(Qt::NoFocus);
  setWindowInstance(*this, "tallowin-hud");
  QAccessible::installFactory(&describeHUD);
  end_.setSingleShot(true);
  QObject::connect(&end_, &QTimer::timeout, this, [this] { fadeOut(); });
  fade_.setStartValue(1.0);
  fade_.setEndValue(0.0);
  fade_.setDuration(fadeMilliseconds);
  QObject::connect(&fade_, &QVariantAnimation::valueChanged, this, [this] { update(); });
  QObject::connect(&fade_, &QVariantAnimation::finished, this, [this] { hide(); });
  whenScreenGoes(*this, [this] { place(); });
}

void HUDWindow::show(const HUD& hud) {
  if (isFullScreenInFront()) {
    if (!isMessage_) {
      hide();
    }
    return;
  }
  isMessage_ = false;
  size_ = hud.size;
  position_ = hud.position;
  const auto number = hud.desktopNumber ? std::to_string(*hud.desktopNumber) : "–";
  present({hud.name, hud.line, hud.symbol, number, hud.colorHex, false},
          std::chrono::milliseconds(static_cast<int>(std::clamp(hud.seconds, 0.0, 60.0) * 1000)));
}

void HUDWindow::show(const Toast& toast) {
  isMessage_ = true;
  present({toast.text, "", toast.symbol.value_or(toast.isError ? "exclamationmark.triangle" : ""), "", std::nullopt,
           toast.isError},
          readingTime(toast));
}

void HUDWindow::present(const Content& content, std::chrono::milliseconds time) {
  content_ = content;
  fade_.stop();
  isTranslucent_ = hasCompositor();
  const auto text = QString::fromStdString(content.line.empty() ? content.title : content.title + ", " + content.line);
  setWindowTitle(QString::fromStdString(content.title));
  setAccessibleName(text);
  place();
  QWidget::show();
  raise();
  update();
  QAccessibleEvent named(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&named);
  end_.start(time);
}

QRect HUDWindow::placeFor(const QSizeF& extent) const {
  const auto area = inPoints(screenAtPointer()->availableGeometry());
  return inPixels(hudFrame(area, {extent.width(), extent.height()}, position_));
}

/// As wide as the text needs, where that is more than the size says.
void HUDWindow::place() {
  const auto area = screenAtPointer()->availableGeometry();
  auto extent = hudExtent(size_, fontMetrics().height());
  if (content_.line.empty() && content_.number.empty()) {
    auto font = this->font();
    font.setPixelSize(static_cast<int>(extent.height / 5));
    const double needed =
        QFontMetricsF(font).horizontalAdvance(QString::fromStdString(content_.title)) + extent.height * 1.6;
    extent.width = std::clamp(needed, extent.width, area.width() * 0.8);
  }
  setGeometry(placeFor({extent.width, extent.height}));
  if (isTranslucent_) {
    clearMask();
  } else {
    QBitmap mask(size());
    mask.clear();
    QPainter painter(&mask);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(rect(), height() * roundness, height() * roundness);
    painter.end();
    setMask(mask);
  }
}

void HUDWindow::fadeOut() {
  if (isTranslucent_) {
    fade_.start();
  } else {
    hide();
  }
}

void HUDWindow::paintEvent(QPaintEvent* /*event*/) {
  const auto ink = Ink::from(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(fade_.state() == QAbstractAnimation::Running ? fade_.currentValue().toDouble() : 1);
  paintBackground(painter, ink);
  const double margin = height() / 6.0;
  QRectF text = QRectF(rect()).adjusted(margin, margin / 2, -margin, -margin / 2);
  if (!content_.number.empty() || !content_.symbol.empty()) {
    const QRectF square(margin, margin, height() - 2 * margin, height() - 2 * margin);
    paintSign(painter, square, ink);
    text.setLeft(square.right() + margin);
  }
  if (content_.line.empty()) {
    paintLine(painter, content_.title, text, {height() / 5.0, ink.text, Qt::AlignVCenter, false});
    return;
  }
  auto upper = text;
  upper.setBottom(text.center().y() + margin / 4);
  auto lower = text;
  lower.setTop(upper.bottom());
  paintLine(painter, content_.title, upper, {height() / 4.0, ink.text, Qt::AlignBottom, true});
  paintLine(painter, content_.line, lower, {height() / 6.0, ink.faint, Qt::AlignTop, false});
}

void HUDWindow::paintBackground(QPainter& painter, const Ink& ink) const {
  constexpr float opacity = 0.94F;
  auto background = ink.background;
  painter.setPen(Qt::NoPen);
  if (isTranslucent_) {
    background.setAlphaF(opacity);
    painter.setBrush(background);
    painter.drawRoundedRect(rect(), height() * roundness, height() * roundness);
  } else {
    painter.fillRect(rect(), background);  // the mask rounds it
  }
  if (content_.isError) {
    painter.fillRect(QRectF(0, height() * roundness, height() / 16.0, height() * (1 - 2 * roundness)), ink.error);
  }
}

/// A Space's square, or the symbol of a message.
void HUDWindow::paintSign(QPainter& painter, const QRectF& square, const Ink& ink) const {
  if (!content_.number.empty()) {
    paintSpaceSquare(painter, square, content_.colorHex, content_.symbol, content_.number);
    return;
  }
  const double margin = square.width() / 8;
  paintSymbol(painter, square.adjusted(margin, margin, -margin, -margin), content_.symbol,
              content_.isError ? ink.error : ink.text);
}

void HUDWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    update();
  }
  QWidget::changeEvent(event);
}

}  // namespace tallowin
