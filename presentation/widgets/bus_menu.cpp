#include "presentation/widgets/bus_menu.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <optional>

namespace tallowin {

namespace {

/// What became of an entry that the user looks at: "isvu".
struct MenuEvent {
  int id = 0;
  QString name;
  QDBusVariant data;
  unsigned time = 0;
};

QDBusArgument& operator<<(QDBusArgument& out, const MenuEvent& event) {
  out.beginStructure();
  out << event.id << event.name << event.data << event.time;
  out.endStructure();
  return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, MenuEvent& event) {
  in.beginStructure();
  in >> event.id >> event.name >> event.data >> event.time;
  in.endStructure();
  return in;
}

template <typename Value>
QVariant value(const Value& of) {
  return QVariant::fromValue(of);
}

const QString noSuchEntry = QStringLiteral("There is no such entry");

}  // namespace

BusMenu::BusMenu(const QDBusConnection& bus, StatusMenu& menu) : menu_(menu), object_(bus, path, interface()) {
  qDBusRegisterMetaType<MenuNode>();
  qDBusRegisterMetaType<MenuNodeProperties>();
  qDBusRegisterMetaType<QList<MenuNodeProperties>>();
  qDBusRegisterMetaType<MenuEvent>();
  qDBusRegisterMetaType<QList<MenuEvent>>();
  qDBusRegisterMetaType<QList<int>>();
}

BusInterface BusMenu::interface() {
  const auto runs = [this](void (BusMenu::*method)(const QDBusMessage&)) {
    return [this, method](const QDBusMessage& call) { (this->*method)(call); };
  };
  return {.name = "com.canonical.dbusmenu",
          .methods = {{"GetLayout", "i i as", "u (ia{sv}av)", runs(&BusMenu::getLayout)},
                      {"GetGroupProperties", "ai as", "a(ia{sv})", runs(&BusMenu::getGroupProperties)},
                      {"GetProperty", "i s", "v", runs(&BusMenu::getProperty)},
                      {"Event", "i s v u", "", runs(&BusMenu::event)},
                      {"EventGroup", "a(isvu)", "ai", runs(&BusMenu::eventGroup)},
                      {"AboutToShow", "i", "b", runs(&BusMenu::aboutToShow)},
                      {"AboutToShowGroup", "ai", "ai ai", runs(&BusMenu::aboutToShowGroup)}},
          .notices = {{"LayoutUpdated", "u i"}},
          .properties = [] {
            return QVariantMap{
                {"Version", 3U}, {"TextDirection", "ltr"}, {"Status", "normal"}, {"IconThemePath", QStringList()}};
          }};
}

/// Fetches the menu anew. What stands here stays when the instance does not answer.
void BusMenu::refresh(const std::function<void(bool isNew)>& done) {
  menu_.fetch([this, done](const std::optional<Menu>& menu) {
    const bool isNew = menu && layout_.take(*menu);
    done(isNew);
    if (isNew) {
      object_.emitSignal("LayoutUpdated", {layout_.revision(), 0});
    }
  });
}

void BusMenu::happened(int id, const QString& event) {
  if (const auto* const entry = event == "clicked" ? layout_.entry(id) : nullptr; entry != nullptr) {
    menu_.choose(*entry);
  }
}

/// Panels that never say that they are about to show the menu still get one.
void BusMenu::getLayout(const QDBusMessage& call) {
  const auto answer = [this, call] {
    const auto arguments = call.arguments();
    const auto node = layout_.node(arguments.at(0).toInt(), arguments.at(1).toInt(), arguments.at(2).toStringList());
    if (node) {
      object_.answer(call, {layout_.revision(), value(*node)});
    } else {
      object_.refuse(call, noSuchEntry);
    }
  };
  if (layout_.revision() > 0) {
    answer();
  } else {
    refresh([answer](bool /*isNew*/) { answer(); });
  }
}

void BusMenu::getGroupProperties(const QDBusMessage& call) {
  const auto arguments = call.arguments();
  const auto ids = qdbus_cast<QList<int>>(arguments.at(0));
  object_.answer(call, {value(layout_.properties(ids, arguments.at(1).toStringList()))});
}

void BusMenu::getProperty(const QDBusMessage& call) {
  const auto arguments = call.arguments();
  const auto node = layout_.node(arguments.at(0).toInt(), 0, {});
  const auto property = node ? node->properties.value(arguments.at(1).toString()) : QVariant();
  if (property.isValid()) {
    object_.answer(call, {value(QDBusVariant(property))});
  } else {
    object_.refuse(call, noSuchEntry);
  }
}

void BusMenu::event(const QDBusMessage& call) {
  const auto arguments = call.arguments();
  object_.answer(call);
  happened(arguments.at(0).toInt(), arguments.at(1).toString());
}

void BusMenu::eventGroup(const QDBusMessage& call) {
  const auto events = qdbus_cast<QList<MenuEvent>>(call.arguments().at(0));
  QList<int> unknown;
  for (const auto& event : events) {
    if (!layout_.has(event.id)) {
      unknown.push_back(event.id);
    }
  }
  object_.answer(call, {value(unknown)});
  for (const auto& event : events) {
    happened(event.id, event.name);
  }
}

/// The whole menu is fetched at once, so submenus are up to date when they are opened.
void BusMenu::aboutToShow(const QDBusMessage& call) {
  if (const int id = call.arguments().at(0).toInt(); id == 0) {
    refresh([this, call](bool isNew) { object_.answer(call, {isNew}); });
  } else if (layout_.has(id)) {
    object_.answer(call, {false});
  } else {
    object_.refuse(call, noSuchEntry);
  }
}

void BusMenu::aboutToShowGroup(const QDBusMessage& call) {
  const auto ids = qdbus_cast<QList<int>>(call.arguments().at(0));
  QList<int> unknown;
  for (const int id : ids) {
    if (!layout_.has(id)) {
      unknown.push_back(id);
    }
  }
  if (ids.contains(0)) {
    refresh([this, call, unknown](bool isNew) {
      object_.answer(call, {value(isNew ? QList<int>{0} : QList<int>()), value(unknown)});
    });
  } else {
    object_.answer(call, {value(QList<int>()), value(unknown)});
  }
}

}  // namespace tallowin
