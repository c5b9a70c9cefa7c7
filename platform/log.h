#pragma once

#include <string_view>

namespace tallowin {

/// The system log, subsystem "com.quorvex.tallowin". Any thread.
class Log {
 public:
  enum class Level { debug, info, error };

  virtual ~Log() = default;

  /// Writes one line. `category` is the name of the component's type; `message` is a fixed English text with its
  /// values filled in.
  virtual void write(Level level, std::string_view category, std::string_view message) = 0;

  /// For people who look for a fault; not kept by default.
  void debug(std::string_view category, std::string_view message) { write(Level::debug, category, message); }
  void info(std::string_view category, std::string_view message) { write(Level::info, category, message); }
  void error(std::string_view category, std::string_view message) { write(Level::error, category, message); }
};

}  // namespace tallowin
