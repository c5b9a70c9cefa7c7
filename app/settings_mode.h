#pragma once

#include <ostream>
#include <string>

#include "base/settings.h"

namespace tallowin {

/// The settings on the command line. Each answers the exit status; a mistake, or preferences that cannot be read, is
/// one line on `error`.

/// `--settings-list`: one line for each setting, with its value ("*" where the user has set it) and what it does.
int listSettings(const Settings& settings, std::ostream& out, std::ostream& error);

/// `--get KEY`: the value on a line of its own; `failure` and no line for a setting that has none.
int getSetting(const Settings& settings, const std::string& key, std::ostream& out, std::ostream& error);

/// `--set KEY VALUE`.
int setSetting(const Settings& settings, const std::string& key, const std::string& value, std::ostream& error);

/// `--unset KEY`.
int unsetSetting(const Settings& settings, const std::string& key, std::ostream& error);

}  // namespace tallowin
