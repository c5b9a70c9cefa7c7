#include "presentation/widgets/status_notifier.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QCursor>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QImage>
#include <QVariant>
#include <QtEndian>
#include <cstdlib>
#include <string>
#include <utility>

#include "presentation/widgets/space_pictures.h"

namespace tallowin {

namespace {

constexpr auto panelName = "org.kde.StatusNotifierWatcher";

/// What a panel says of the item when the pointer rests on it, "(sa(iiay)ss)".
struct BusToolTip {
  QString iconName;
  QList<BusPicture> pictures;
  QString title;
  QString text;
};

QDBusArgument& operator<<(QDBusArgument& out, const BusToolTip& tip) {
  out.beginStructure();
  out << tip.iconName << tip.pictures << tip.title << tip.text;
  out.endStructure();
  return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, BusToolTip& tip) {
  in.beginStructure();
  in >> tip.iconName >> tip.pictures >> tip.title >> tip.text;
  in.endStructure();
  return in;
}

QDBusMessage busCall(const QString& method, const QVariantList& values) {
  auto message =
      QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method);
  message.setArguments(values);
  return message;
}

/// Some panels turn by eighths of a degree, as wheels do, up being positive; others count notches, down being positive.
int eighthsOf(int turn) {
  constexpr int fewest = 8;
  constexpr int notch = 120;
  return std::abs(turn) < fewest ? -turn * notch : turn;
}

}  // namespace

BusPicture BusPicture::from(const QImage& image) {
  const auto argb = image.convertToFormat(QImage::Format_ARGB32);
  BusPicture picture{argb.width(), argb.height(), QByteArray(argb.sizeInBytes(), Qt::Uninitialized)};
  qToBigEndian<quint32>(argb.constBits(), argb.sizeInBytes() / static_cast<qsizetype>(sizeof(quint32)),
                        picture.bytes.data());
  return picture;
}

QDBusArgument& operator<<(QDBusArgument& out, const BusPicture& picture) {
  out.beginStructure();
  out << picture.width << picture.height << picture.bytes;
  out.endStructure();
  return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, BusPicture& picture) {
  in.beginStructure();
  in >> picture.width >> picture.height >> picture.bytes;
  in.endStructure();
  return in;
}

StatusNotifier::StatusNotifier(const QDBusConnection& bus, StatusControls& controls, PanelChanged panelChanged)
    : bus_(bus),
      controls_(controls),
      panelChanged_(std::move(panelChanged)),
      name_(QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid())),
      object_(bus, "/StatusNotifierItem", interface()),
      menu_(bus, controls.menu()),
      panels_(panelName, bus, QDBusServiceWatcher::WatchForOwnerChange) {
  qDBusRegisterMetaType<BusPicture>();
  qDBusRegisterMetaType<QList<BusPicture>>();
  qDBusRegisterMetaType<BusToolTip>();
  constexpr unsigned noQueue = 4;
  bus_.send(busCall("RequestName", {name_, noQueue}));
  QObject::connect(&panels_, &QDBusServiceWatcher::serviceOwnerChanged, &calls_,
                   [this](const QString& /*name*/, const QString& /*before*/, const QString& owner) {
                     if (owner.isEmpty()) {
                       panelChanged_(false);
                     } else {
                       registerAtPanel();
                     }
                   });
  lookForPanel();
}

void StatusNotifier::show(const StatusItem& item) {
  const auto before = std::exchange(item_, item);
  pictures_.clear();
  if (before.symbol != item.symbol || before.number != item.number || before.colorHex != item.colorHex ||
      before.marks != item.marks || before.more != item.more) {
    object_.emitSignal("NewIcon");
  }
  if (before.toolTip != item.toolTip) {
    object_.emitSignal("NewTitle");
    object_.emitSignal("NewToolTip");
  }
  if (before.text != item.text) {
    const auto text = QString::fromStdString(item.text);
    object_.emitSignal("XAyatanaNewLabel", {text, text});
  }
}

BusInterface StatusNotifier::interface() {
  const auto acts = [this](std::function<void(int, int)> action) {
    return [this, action = std::move(action)](const QDBusMessage& call) { act(call, action); };
  };
  // At the pointer, as panels count in points of their own, or say nothing.
  const auto openMenu = acts([this](int, int) { controls_.menu().openAt(QCursor::pos()); });
  return {.name = "org.kde.StatusNotifierItem",
          .methods = {{"Activate", "i i", "", openMenu},
                      {"ContextMenu", "i i", "", openMenu},
                      {"SecondaryActivate", "i i", "", acts([this](int, int) { controls_.goBack(); })},
                      {"Scroll", "i s", "",
                       acts([this](int turn, int) { controls_.turnWheel(eighthsOf(turn), item_.scrollSwitches); })}},
          .notices = {{"NewIcon", ""}, {"NewTitle", ""}, {"NewToolTip", ""}, {"XAyatanaNewLabel", "s s"}},
          .properties = [this] { return properties(); }};
}

QVariantMap StatusNotifier::properties() {
  if (pictures_.isEmpty()) {
    for (const auto& image : statusPictures(item_)) {
      pictures_.push_back(BusPicture::from(image));
    }
  }
  const auto tip = QString::fromStdString(item_.toolTip);
  const auto text = QString::fromStdString(item_.text);
  return {{"Category", "SystemServices"},
          {"Id", "tallowin"},
          {"Title", tip},
          {"Status", "Active"},
          {"WindowId", 0},
          {"IconName", ""},
          {"IconThemePath", ""},
          {"IconPixmap", QVariant::fromValue(pictures_)},
          {"OverlayIconName", ""},
          {"AttentionIconName", ""},
          {"ToolTip", QVariant::fromValue(BusToolTip{"", {}, tip.toHtmlEscaped(), ""})},
          {"ItemIsMenu", true},
          {"Menu", QVariant::fromValue(QDBusObjectPath(BusMenu::path))},
          {"XAyatanaLabel", text},
          {"XAyatanaLabelGuide", text}};
}

/// All of the methods take a number and something more.
void StatusNotifier::act(const QDBusMessage& call, const std::function<void(int first, int second)>& action) const {
  const auto arguments = call.arguments();
  object_.answer(call);
  action(arguments.at(0).toInt(), arguments.at(1).toInt());
}

void StatusNotifier::lookForPanel() {
  if (!bus_.isConnected()) {
    panelChanged_(false);  // calls would never end
    return;
  }
  auto* const asked = new QDBusPendingCallWatcher(bus_.asyncCall(busCall("NameHasOwner", {panelName})), &calls_);
  QObject::connect(asked, &QDBusPendingCallWatcher::finished, &calls_, [this, asked] {
    asked->deleteLater();
    if (const QDBusPendingReply<bool> has = *asked; has.isValid() && has.value()) {
      registerAtPanel();
    } else {
      panelChanged_(false);
    }
  });
}

void StatusNotifier::registerAtPanel() {
  auto call =
      QDBusMessage::createMethodCall(panelName, "/StatusNotifierWatcher", panelName, "RegisterStatusNotifierItem");
  call.setArguments({name_});
  auto* const asked = new QDBusPendingCallWatcher(bus_.asyncCall(call), &calls_);
  QObject::connect(asked, &QDBusPendingCallWatcher::finished, &calls_, [this, asked] {
    asked->deleteLater();
    panelChanged_(!asked->isError());
  });
}

}  // namespace tallowin
