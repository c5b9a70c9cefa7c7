#pragma once

#include "platform/desktop_label.h"
#include "platform/dock_guard.h"
#include "platform/feedback.h"
#include "platform/guided_tour.h"
#include "platform/hud.h"
#include "platform/overview_panel.h"
#include "platform/overview_trigger.h"
#include "platform/preview_display.h"
#include "platform/rename_dialog.h"
#include "platform/search_panels.h"
#include "platform/settings_window.h"
#include "platform/space_dock.h"

namespace tallowin {

/// What the user sees and hears of the program beside messages and questions, and what it notices of his hands.
struct Presentation {
  HUD& hud;
  OverviewPanel& overview;
  SearchPanels& panels;
  SettingsWindow& settingsWindow;
  RenameDialog& renameDialog;
  Feedback& feedback;
  DockGuard& dockGuard;
  DesktopLabel& desktopLabel;
  SpaceDock& spaceDock;
  OverviewTrigger& edges;
  OverviewTrigger& touch;
  GuidedTour& tour;
  PreviewDisplay& previews;
};

}  // namespace tallowin
