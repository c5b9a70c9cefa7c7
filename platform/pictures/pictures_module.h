#pragma once

#include "platform/images.h"

namespace tallowin {

/// The name of the one C function of the pictures module: new image services, which the caller owns, and which draw the
/// labels of sketches or leave them out. It is a library of its own, loaded at the first picture, since the graphics
/// libraries that it needs take longer to load than everything else that a short command does.
inline constexpr auto picturesModuleEntry = "tallowinMakeImages";
using PicturesModuleEntry = Images* (*)(bool drawsLabels);

}  // namespace tallowin
