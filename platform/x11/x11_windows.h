#pragma once

#include <memory>

#include "platform/processes.h"
#include "platform/x11/x11_applications.h"
#include "platform/x11/x11_elements.h"
#include "platform/x11/x11_glance.h"
#include "platform/x11/x11_launcher.h"
#include "platform/x11/x11_refusals.h"
#include "platform/x11/x11_window_actions.h"
#include "platform/x11/x11_window_reader.h"

namespace tallowin {

/// What the services about windows and applications share, put together.
struct X11Windows {
  /// `self` is the process whose windows are left out.
  X11Windows(X11Connection& connection, X11DesktopReader& desktops, Processes& processes, MainQueue& queue,
             ProcessID self)
      : reader(connection, self),
        installed(processXdgEnvironment()),
        moment(connection, queue),
        glance(connection, desktops, moment),
        applications(reader, installed, moment, glance),
        refusals(desktops),
        actions(connection, reader, desktops, refusals),
        launcher(installed, processes),
        context(std::make_shared<X11ElementContext>(X11ElementContext{reader, applications, actions})) {}

  X11WindowReader reader;
  InstalledApplications installed;
  X11Moment moment;
  X11Glance glance;
  X11Applications applications;
  X11Refusals refusals;
  X11WindowActions actions;
  X11Launcher launcher;
  /// Owned here, by the workspace and by accessibility.
  std::shared_ptr<X11ElementContext> context;
};

}  // namespace tallowin
