#pragma once

#include <QDBusArgument>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "presentation/model/menu.h"

namespace tallowin {

/// An entry of a menu as it travels by D-Bus, "(ia{sv}av)": its children are such too.
struct MenuNode {
  int id = 0;
  QVariantMap properties;
  QVariantList children;
};

/// An entry's properties alone, "(ia{sv})".
struct MenuNodeProperties {
  int id = 0;
  QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& out, const MenuNode& node);
const QDBusArgument& operator>>(const QDBusArgument& in, MenuNode& node);
QDBusArgument& operator<<(QDBusArgument& out, const MenuNodeProperties& node);
const QDBusArgument& operator>>(const QDBusArgument& in, MenuNodeProperties& node);

/// A menu as com.canonical.dbusmenu tells of it: entries by ids, 0 for the menu itself.
class MenuLayout {
 public:
  MenuLayout();

  /// Takes a menu in place of the last one. False when it is the same. An entry keeps its id as long as it is there
  /// with its label and its request; no id is given twice, so that a late click is not taken for another entry's.
  bool take(const Menu& menu);

  /// Goes up with every menu that differs from the one before.
  [[nodiscard]] unsigned revision() const { return revision_; }

  /// The entry with what is below it, so many levels deep (-1: all of them), and only the properties of these names
  /// (none: all of them). Nothing when there is no such entry.
  [[nodiscard]] std::optional<MenuNode> node(int id, int depth, const QStringList& names) const;
  /// The properties of these entries (none: of all of them). Those that there are not are left out.
  [[nodiscard]] QList<MenuNodeProperties> properties(const QList<int>& ids, const QStringList& names) const;

  /// Null when there is no such entry, and for the menu itself.
  [[nodiscard]] const MenuEntry* entry(int id) const;
  [[nodiscard]] bool has(int id) const { return items_.contains(id); }

 private:
  struct Item {
    const MenuEntry* entry = nullptr;  ///< in `menu_`
    QVariantMap properties;
    std::vector<int> children;
  };

  /// By what makes an entry the same: the way to it, its label, its request.
  using IDs = std::map<std::string, int>;

  /// What is the same as before keeps its properties, as pictures take long to encode.
  void add(int parent, const std::string& way, const Menu& entries, const MenuLayout& before);

  Menu menu_;
  std::map<int, Item> items_;
  IDs ids_;
  int lastID_ = 0;
  unsigned revision_ = 0;
};

}  // namespace tallowin
