#pragma once

#include <QCoreApplication>

#include "platform/images.h"

namespace tallowin {

/// What the pictures module offers. It is a library of its own, loaded at the first picture, since the graphics
/// libraries that it needs take longer to load than everything else that a short command does.
struct PicturesModule {
  /// New image services. They need no application, but for sketches.
  Images* (*makeImages)();
  /// A new application whose fonts sketches are drawn with, on no screen. Arguments as of QGuiApplication.
  QCoreApplication* (*makeApplication)(int& argc, char** argv);
};

/// The name of the module's one C function, which takes nothing and returns a const PicturesModule*.
inline constexpr auto picturesModuleEntry = "tallowinPicturesModule";
using PicturesModuleEntry = const PicturesModule* (*)();

}  // namespace tallowin
