#include "presentation/widgets/status_menu.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFont>
#include <QFontMetrics>
#include <QIcon>
#include <QMenu>
#include <QPalette>
#include <QPixmap>
#include <QPoint>
#include <QString>
#include <QStyle>
#include <utility>

#include "presentation/link/messages.h"
#include "presentation/widgets/space_pictures.h"
#include "presentation/widgets/x11_window.h"

namespace tallowin {

namespace {

using Choose = std::function<void(const MenuEntry& entry)>;

/// Not wider than is useful, and with nothing in it that a menu would take for a mnemonic or a shortcut.
QString plainLabel(const std::string& label, const QMenu& menu) {
  constexpr int widthInLines = 30;
  const auto metrics = menu.fontMetrics();
  const auto text = QString::fromStdString(label).replace('\t', ' ');
  return metrics.elidedText(text, Qt::ElideRight, widthInLines * metrics.height()).replace('&', "&&");
}

void addHeading(QMenu& menu, const MenuEntry& entry) {
  auto* const heading = menu.addAction(plainLabel(entry.label, menu));
  auto font = heading->font();
  font.setBold(true);
  heading->setFont(font);
  heading->setEnabled(false);
}

/// Many styles show either an icon or a check mark, so what can be marked has an icon, which is the mark.
QIcon menuIcon(const MenuEntry& entry, const QMenu& menu) {
  const int extent = menu.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &menu);
  const auto ink = menu.palette().color(QPalette::WindowText);
  const bool isChecked = entry.mark == MenuEntry::Mark::check && entry.isMarked;
  QIcon icon;
  for (const int pixels : {extent, 2 * extent}) {
    const auto picture = isChecked ? checkPicture(entry, pixels, ink) : menuPicture(entry, pixels, ink);
    if (!picture.isNull()) {
      icon.addPixmap(QPixmap::fromImage(picture));
    } else if (entry.mark == MenuEntry::Mark::check) {
      QPixmap empty(pixels, pixels);
      empty.fill(Qt::transparent);
      icon.addPixmap(empty);
    }
  }
  return icon;
}

void addAction(QMenu& menu, QActionGroup& choices, const MenuEntry& entry, const Choose& choose) {
  auto* const action = menu.addAction(menuIcon(entry, menu), plainLabel(entry.label, menu));
  action->setIconVisibleInMenu(true);
  action->setCheckable(entry.mark != MenuEntry::Mark::none);
  if (entry.mark == MenuEntry::Mark::radio) {
    action->setActionGroup(&choices);
  }
  action->setChecked(entry.isMarked);
  QObject::connect(action, &QAction::triggered, action, [choose, entry] { choose(entry); });
}

void fill(QMenu& menu, const Menu& entries, const Choose& choose) {
  QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu] { setWindowInstance(menu, "tallowin-menu"); });
  auto* const choices = new QActionGroup(&menu);
  for (const auto& entry : entries) {
    switch (entry.kind) {
      case MenuEntry::Kind::action:
        addAction(menu, *choices, entry, choose);
        break;
      case MenuEntry::Kind::heading:
        addHeading(menu, entry);
        break;
      case MenuEntry::Kind::separator:
        menu.addSeparator();
        break;
      case MenuEntry::Kind::submenu:
        fill(*menu.addMenu(plainLabel(entry.label, menu)), entry.entries, choose);
        break;
    }
  }
}

}  // namespace

StatusMenu::~StatusMenu() {
  delete window_;
  delete fileDialog_;
}

void StatusMenu::fetch(Fetched fetched) {
  waiting_.push_back(std::move(fetched));
  if (waiting_.size() > 1) {
    return;
  }
  instance_.ask({"menu", "--json"}, [this](const InstanceAnswer& answer) {
    const auto menu = answer.status == 0 ? ui::decodeMenu(answer.out) : std::unexpected(answer.error);
    for (const auto& each : std::exchange(waiting_, {})) {
      each(menu ? std::optional(*menu) : std::nullopt);
    }
  });
}

void StatusMenu::choose(const MenuEntry& entry) {
  if (entry.asksForFile) {
    askForFile(entry);
  } else if (!entry.request.empty()) {
    instance_.perform(entry.request);
  }
}

void StatusMenu::openAt(const QPoint& place) {
  if (window_) {
    return;
  }
  window_ = new QMenu;
  window_->setObjectName("statusMenu");
  window_->setWindowTitle(QCoreApplication::applicationName());
  window_->setAccessibleName(QCoreApplication::applicationName());
  window_->setAttribute(Qt::WA_DeleteOnClose);
  fetch([this, place](const std::optional<Menu>& menu) {
    if (!menu || menu->empty()) {
      delete window_;
      return;
    }
    fill(*window_, *menu, [this](const MenuEntry& entry) { choose(entry); });
    window_->popup(place);
  });
}

void StatusMenu::askForFile(const MenuEntry& entry) {
  delete fileDialog_;
  fileDialog_ = new QFileDialog;
  fileDialog_->setOption(QFileDialog::DontUseNativeDialog);  // those of other libraries cannot be told from outside
  fileDialog_->setObjectName("fileDialog");
  fileDialog_->setAttribute(Qt::WA_DeleteOnClose);
  fileDialog_->setDirectory(QDir::homePath());
  fileDialog_->setFileMode(QFileDialog::ExistingFile);
  fileDialog_->setWindowTitle(QString::fromStdString(entry.label).remove(QChar(0x2026)));
  QObject::connect(fileDialog_, &QFileDialog::fileSelected, fileDialog_,
                   [this, request = entry.request](const QString& path) {
                     auto words = request;
                     words.push_back(path.toStdString());
                     instance_.perform(std::move(words));
                   });
  setWindowInstance(*fileDialog_, "tallowin-file");
  fileDialog_->show();
  fileDialog_->raise();
  fileDialog_->activateWindow();
}

}  // namespace tallowin
