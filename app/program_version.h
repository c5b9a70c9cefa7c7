#pragma once

#include "automation/diagnostics_text.h"

namespace tallowin {

/// Which program this is.
[[nodiscard]] ProgramVersion programVersion();

}  // namespace tallowin
