#include "platform/simulated/journal.h"

#include <cassert>

namespace tallowin {

namespace {

std::string text(const nlohmann::ordered_json& value) {
  return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

std::string secondsWithMilliseconds(Duration elapsed) {
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count();
  const auto fraction = std::to_string(1000 + milliseconds % 1000);
  return std::to_string(milliseconds / 1000) + "." + fraction.substr(1);
}

}  // namespace

void Journal::record(std::string_view op, const nlohmann::ordered_json& arguments) {
  assert(arguments.is_object() || arguments.is_null());
  std::string line = R"({"t":)" + secondsWithMilliseconds(clock_.elapsed()) + R"(,"op":)" + text(op);
  // The arguments' own text, without its opening brace, goes on where the line has got to.
  line += arguments.empty() ? "}" : "," + text(arguments).substr(1);
  sink_(line);
}

}  // namespace tallowin
