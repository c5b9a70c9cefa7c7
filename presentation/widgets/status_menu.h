#pragma once

#include <QPointer>
#include <functional>
#include <optional>
#include <vector>

#include "platform/pinned.h"
#include "presentation/model/menu.h"
#include "presentation/widgets/instance.h"

class QFileDialog;
class QMenu;
class QPoint;

namespace tallowin {

/// The menu of the status item: as the instance tells it when it is opened, and what becomes of a choice. Main thread
/// only; nothing blocks.
class StatusMenu : Pinned {
 public:
  /// Told the menu as it is now; nothing when the instance does not say.
  using Fetched = std::function<void(const std::optional<Menu>& menu)>;

  explicit StatusMenu(Instance& instance) : instance_(instance) {}
  ~StatusMenu();

  void fetch(Fetched fetched);

  /// Does what an entry is for, first asking the user for a file where it takes one.
  void choose(const MenuEntry& entry);

  /// Opens the menu here, as soon as it is known. No effect while it is open.
  void openAt(const QPoint& place);

 private:
  void askForFile(const MenuEntry& entry);

  Instance& instance_;
  std::vector<Fetched> waiting_;  ///< for the answer to one question
  QPointer<QMenu> window_;        ///< while it is open, and before it is filled
  QPointer<QFileDialog> fileDialog_;
};

}  // namespace tallowin
