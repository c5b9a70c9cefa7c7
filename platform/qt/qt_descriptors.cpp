#include "platform/qt/qt_descriptors.h"

#include <QSocketNotifier>

namespace tallowin {

namespace {

Subscription watch(int descriptor, QSocketNotifier::Type type, std::function<void()> onReady) {
  auto* notifier = new QSocketNotifier(descriptor, type);
  QObject::connect(notifier, &QSocketNotifier::activated, notifier, [onReady = std::move(onReady)] { onReady(); });
  return Subscription([notifier] {
    notifier->setEnabled(false);
    notifier->deleteLater();  // it may be telling right now
  });
}

}  // namespace

Subscription QtDescriptors::watchReadable(int descriptor, std::function<void()> onReadable) {
  return watch(descriptor, QSocketNotifier::Read, std::move(onReadable));
}

Subscription QtDescriptors::watchWritable(int descriptor, std::function<void()> onWritable) {
  return watch(descriptor, QSocketNotifier::Write, std::move(onWritable));
}

}  // namespace tallowin
