#include "platform/pictures/qt_images.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QString>
#include <algorithm>
#include <cstdio>
#include <syslog.h>

#include "platform/pictures/pictures_module.h"

namespace tallowin {

namespace {

Image fromQImage(const QImage& picture) {
  const auto converted = picture.convertToFormat(QImage::Format_ARGB32);
  Image image{converted.width(), converted.height(), {}};
  image.pixels.reserve(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
  for (int y = 0; y < image.height; ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(converted.constScanLine(y));
    image.pixels.insert(image.pixels.end(), row, row + image.width);
  }
  return image;
}

/// Borrows the image's pixels.
QImage toQImage(const Image& image) {
  return QImage(reinterpret_cast<const uchar*>(image.pixels.data()), image.width, image.height,
                qsizetype{image.width} * 4, QImage::Format_ARGB32);
}

std::string encode(const Image& image, const char* format, int quality) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  toQImage(image).save(&buffer, format, quality);
  return bytes.toStdString();
}

void draw(QPainter& painter, const SketchBox& box, bool isLabelled) {
  constexpr QRgb windowColor = 0xfff4f1ea;
  constexpr QRgb titleColor = 0xffd8d2c4;
  constexpr QRgb lineColor = 0xff5a5548;
  constexpr double titleHeight = 22;
  const QRectF frame(box.frame.origin.x, box.frame.origin.y, box.frame.size.width, box.frame.size.height);
  const QRectF title(frame.left(), frame.top(), frame.width(), std::min(titleHeight, frame.height()));
  painter.fillRect(frame, QColor(windowColor));
  painter.fillRect(title, QColor(titleColor));
  painter.setPen(QColor(lineColor));
  painter.drawRect(frame);
  if (isLabelled) {
    painter.drawText(title.adjusted(6, 0, -6, 0), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     QString::fromStdString(box.label));
  }
}

std::unique_ptr<QGuiApplication> makeApplicationWithoutScreen() {
  static int count = 1;
  static char name[] = "tallowin";
  static char* arguments[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  return std::make_unique<QGuiApplication>(count, arguments);
}

/// What Qt itself has to say is for the system log, not for the user's terminal; what ends the process for both.
void writeToLog(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
  const auto text = message.toUtf8();
  ::syslog(type == QtFatalMsg ? LOG_CRIT : LOG_INFO, "[com.quorvex.tallowin:Qt] %s", text.constData());
  if (type == QtFatalMsg) {
    std::fprintf(stderr, "tallowin: %s\n", text.constData());
  }
}

}  // namespace

QtImages::QtImages(bool drawsLabels) : drawsLabels_(drawsLabels) {}
QtImages::~QtImages() = default;

std::optional<Image> QtImages::decode(std::string_view bytes) {
  QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QBuffer buffer(&data);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  const auto picture = reader.read();
  return picture.isNull() ? std::nullopt : std::optional(fromQImage(picture));
}

std::optional<Image> QtImages::scaled(const Image& image, int width, int height) {
  if (width <= 0 || height <= 0 || image.pixels.empty()) {
    return std::nullopt;
  }
  return fromQImage(toQImage(image).scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

std::string QtImages::encodePNG(const Image& image) {
  return encode(image, "PNG", -1);
}

std::string QtImages::encodeJPEG(const Image& image, int quality) {
  return encode(image, "JPEG", quality);
}

std::optional<Image> QtImages::sketch(int width, int height, const std::vector<SketchBox>& boxes) {
  if (width <= 0 || height <= 0) {
    return std::nullopt;
  }
  if (drawsLabels_ && !application_) {
    application_ = makeApplicationWithoutScreen();
  }
  constexpr QRgb desktopColor = 0xff3b5166;
  QImage picture(width, height, QImage::Format_ARGB32);
  picture.fill(QColor(desktopColor));
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::TextAntialiasing);
  for (const auto& box : boxes) {
    draw(painter, box, drawsLabels_);
  }
  painter.end();
  return fromQImage(picture);
}

}  // namespace tallowin

extern "C" Q_DECL_EXPORT tallowin::Images* tallowinMakeImages(bool drawsLabels) {
  qInstallMessageHandler(tallowin::writeToLog);
  return new tallowin::QtImages(drawsLabels);
}
