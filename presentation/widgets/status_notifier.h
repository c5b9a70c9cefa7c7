#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <functional>

#include "platform/pinned.h"
#include "presentation/model/status_item.h"
#include "presentation/widgets/bus_menu.h"
#include "presentation/widgets/bus_object.h"
#include "presentation/widgets/status_controls.h"

class QImage;

namespace tallowin {

/// A picture as it travels by D-Bus, "(iiay)": ARGB of 32 bits, most significant byte first.
struct BusPicture {
  int width = 0;
  int height = 0;
  QByteArray bytes;

  [[nodiscard]] static BusPicture from(const QImage& image);
};

QDBusArgument& operator<<(QDBusArgument& out, const BusPicture& picture);
const QDBusArgument& operator>>(const QDBusArgument& in, BusPicture& picture);

/// The status item on the user's message bus, as org.kde.StatusNotifierItem. It is there for every panel that comes,
/// also for one that starts again. Main thread only; nothing blocks.
class StatusNotifier : Pinned {
 public:
  /// Told whether a panel has taken the item, when it has become known (maybe by the constructor) and whenever it
  /// changes.
  using PanelChanged = std::function<void(bool hasPanel)>;

  StatusNotifier(const QDBusConnection& bus, StatusControls& controls, PanelChanged panelChanged);

  void show(const StatusItem& item);

 private:
  [[nodiscard]] BusInterface interface();
  [[nodiscard]] QVariantMap properties();
  void act(const QDBusMessage& call, const std::function<void(int first, int second)>& action) const;
  void lookForPanel();
  void registerAtPanel();

  QDBusConnection bus_;
  StatusControls& controls_;
  const PanelChanged panelChanged_;
  const QString name_;  ///< on the bus
  StatusItem item_;
  QList<BusPicture> pictures_;  ///< of the item; made when somebody asks
  BusObject object_;
  BusMenu menu_;
  QDBusServiceWatcher panels_;
  QObject calls_;  ///< ends the calls that wait for an answer
};

}  // namespace tallowin
