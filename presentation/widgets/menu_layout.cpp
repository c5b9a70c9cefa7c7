#include "presentation/widgets/menu_layout.h"

#include <QBuffer>
#include <QByteArray>
#include <QIODevice>
#include <QImage>
#include <QString>
#include <utility>

#include "presentation/widgets/space_pictures.h"

namespace tallowin {

namespace {

using EntryKind = MenuEntry::Kind;

QByteArray pictureOf(const MenuEntry& entry) {
  constexpr int extent = 32;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (const auto picture = menuPicture(entry, extent, anyGroundGrey);
      !picture.isNull() && buffer.open(QIODevice::WriteOnly)) {
    picture.save(&buffer, "PNG");
  }
  return bytes;
}

/// What differs from the defaults of the interface.
QVariantMap propertiesOf(const MenuEntry& entry) {
  if (entry.kind == EntryKind::separator) {
    return {{"type", "separator"}};
  }
  QVariantMap properties{{"label", QString::fromStdString(entry.label).replace('_', "__")}};
  if (entry.kind == EntryKind::heading) {
    properties["enabled"] = false;
  }
  if (entry.kind == EntryKind::submenu) {
    properties["children-display"] = "submenu";
  }
  if (entry.mark != MenuEntry::Mark::none) {
    properties["toggle-type"] = entry.mark == MenuEntry::Mark::radio ? "radio" : "checkmark";
    properties["toggle-state"] = entry.isMarked ? 1 : 0;
  }
  if (const auto picture = pictureOf(entry); !picture.isEmpty()) {
    properties["icon-data"] = picture;
  }
  return properties;
}

QVariantMap only(const QStringList& names, QVariantMap properties) {
  if (!names.isEmpty()) {
    properties.removeIf([&names](const auto& each) { return !names.contains(each.key()); });
  }
  return properties;
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& out, const MenuNode& node) {
  out.beginStructure();
  out << node.id << node.properties << node.children;
  out.endStructure();
  return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, MenuNode& node) {
  in.beginStructure();
  in >> node.id >> node.properties >> node.children;
  in.endStructure();
  return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const MenuNodeProperties& node) {
  out.beginStructure();
  out << node.id << node.properties;
  out.endStructure();
  return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, MenuNodeProperties& node) {
  in.beginStructure();
  in >> node.id >> node.properties;
  in.endStructure();
  return in;
}

MenuLayout::MenuLayout() {
  items_[0].properties = {{"children-display", "submenu"}};
}

bool MenuLayout::take(const Menu& menu) {
  if (menu == menu_) {
    return false;
  }
  const auto before = std::move(*this);
  menu_ = menu;
  items_ = {{0, {nullptr, before.items_.at(0).properties, {}}}};
  ids_ = {};
  ++revision_;
  add(0, "", menu_, before);
  return true;
}

void MenuLayout::add(int parent, const std::string& way, const Menu& entries, const MenuLayout& before) {
  for (const auto& entry : entries) {
    auto key = way + '\n' + entry.label;
    for (const auto& word : entry.request) {
      key += '\0' + word;
    }
    while (ids_.contains(key)) {
      key += '\n';  // separators, and Spaces of one name
    }
    const auto known = before.ids_.find(key);
    const int id = ids_[key] = known != before.ids_.end() ? known->second : ++lastID_;
    const auto* const last = before.entry(id);
    items_[parent].children.push_back(id);
    items_[id] = {
        &entry, last != nullptr && *last == entry ? before.items_.at(id).properties : propertiesOf(entry), {}};
    add(id, key, entry.entries, before);
  }
}

std::optional<MenuNode> MenuLayout::node(int id, int depth, const QStringList& names) const {
  const auto found = items_.find(id);
  if (found == items_.end()) {
    return std::nullopt;
  }
  MenuNode node{id, only(names, found->second.properties), {}};
  if (depth != 0) {
    for (const int child : found->second.children) {
      node.children.push_back(QVariant::fromValue(*this->node(child, depth - 1, names)));
    }
  }
  return node;
}

QList<MenuNodeProperties> MenuLayout::properties(const QList<int>& ids, const QStringList& names) const {
  QList<MenuNodeProperties> list;
  for (const auto& [id, item] : items_) {
    if (ids.isEmpty() || ids.contains(id)) {
      list.push_back({id, only(names, item.properties)});
    }
  }
  return list;
}

const MenuEntry* MenuLayout::entry(int id) const {
  const auto found = items_.find(id);
  return found != items_.end() ? found->second.entry : nullptr;
}

}  // namespace tallowin
