#include "platform/qt/qt_descriptors.h"

#include <QSocketNotifier>

namespace tallowin {

Subscription QtDescriptors::watchReadable(int descriptor, std::function<void()> onReadable) {
  auto* notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read);
  QObject::connect(notifier, &QSocketNotifier::activated, notifier,
                   [onReadable = std::move(onReadable)] { onReadable(); });
  return Subscription([notifier] {
    notifier->setEnabled(false);
    notifier->deleteLater();  // it may be telling right now
  });
}

}  // namespace tallowin
