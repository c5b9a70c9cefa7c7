#include "platform/simulated/scenario_value.h"

#include <algorithm>
#include <cmath>

namespace tallowin {

namespace {

std::string kind(const PropertyList& json) {
  switch (json.type()) {
    case PropertyList::value_t::null:
      return "nothing";
    case PropertyList::value_t::boolean:
      return "a truth value";
    case PropertyList::value_t::string:
      return "a text";
    case PropertyList::value_t::array:
      return "a list";
    case PropertyList::value_t::object:
      return "an object";
    default:
      return "the number " + json.dump();
  }
}

std::string member(const std::string& path, std::string_view name) {
  return path.empty() ? std::string(name) : path + "." + std::string(name);
}

}  // namespace

void ScenarioValue::fail(std::string_view what) const {
  if (mistake_->empty()) {
    *mistake_ = (path_.empty() ? "the scenario" : path_) + ": " + std::string(what);
  }
}

void ScenarioValue::expected(std::string_view what) const {
  fail("expected " + std::string(what) + ", found " + kind(*json_));
}

void ScenarioValue::read(bool& value) const {
  if (!json_->is_boolean()) {
    expected("true or false");
  }
  value = *json_ == true;
}

void ScenarioValue::read(std::string& value) const {
  if (!isText()) {
    expected("a text");
  }
  value = isText() ? json_->get<std::string>() : "";
}

void ScenarioValue::read(double& value) const {
  // A number too large for a double is read as an infinity or refused by the parser, never as a finite one.
  const bool isFinite = json_->is_number() && std::isfinite(json_->get<double>());
  if (!isFinite) {
    expected("a number");
  }
  value = isFinite ? json_->get<double>() : 0;
}

void ScenarioValue::read(Duration& value) const {
  constexpr double most = 1e9;
  const double seconds = json_->is_number() ? json_->get<double>() : -1;
  const bool isValid = seconds >= 0 && seconds <= most;
  if (!isValid) {
    expected("a number of seconds");
  }
  // Rounded, so that 1.1 s is a whole number of milliseconds.
  value = Duration{isValid ? std::llround(seconds * 1e9) : 0};
}

std::vector<double> ScenarioValue::numbers(std::size_t count, std::string_view what) const {
  if (!json_->is_array() || json_->size() != count) {
    expected(what);
    return std::vector<double>(count);
  }
  std::vector<double> result;
  for (const auto& element : list()) {
    // Far beyond any screen, and far within what whole numbers of points can hold.
    constexpr double most = 1e6;
    const double number = element.as<double>();
    if (std::abs(number) > most) {
      element.expected("at most a million points");
    }
    result.push_back(std::clamp(number, -most, most));
  }
  return result;
}

void ScenarioValue::read(CGPoint& value) const {
  const auto members = numbers(2, "a point [x, y]");
  value = {members[0], members[1]};
}

void ScenarioValue::read(CGRect& value) const {
  const auto members = numbers(4, "a rectangle [x, y, width, height]");
  if (members[2] < 0 || members[3] < 0) {
    fail("width and height are not negative");
  }
  value = {{members[0], members[1]}, {members[2], members[3]}};
}

std::int64_t ScenarioValue::integerBetween(std::int64_t least, std::int64_t most) const {
  const bool tooLarge = json_->is_number_unsigned() && json_->get<std::uint64_t>() > INT64_MAX;
  if (!json_->is_number_integer() || tooLarge || json_->get<std::int64_t>() < least ||
      json_->get<std::int64_t>() > most) {
    expected("a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    return 0;
  }
  return json_->get<std::int64_t>();
}

std::vector<ScenarioValue> ScenarioValue::list() const {
  std::vector<ScenarioValue> elements;
  if (!json_->is_array()) {
    expected("a list");
    return elements;
  }
  for (const auto& element : *json_) {
    elements.emplace_back(element, path_ + "[" + std::to_string(elements.size()) + "]", *mistake_);
  }
  return elements;
}

std::vector<std::pair<std::string, ScenarioValue>> ScenarioValue::entries() const {
  std::vector<std::pair<std::string, ScenarioValue>> result;
  if (!json_->is_object()) {
    expected("an object");
    return result;
  }
  for (const auto& [name, value] : json_->items()) {
    result.emplace_back(name, ScenarioValue(value, member(path_, name), *mistake_));
  }
  return result;
}

ScenarioObject::ScenarioObject(const ScenarioValue& value) : value_(value) {
  if (!value_.json().is_object()) {
    value_.expected("an object");
  }
}

ScenarioObject::~ScenarioObject() {
  if (!value_.json().is_object() || !value_.mistake_->empty()) {
    return;
  }
  for (const auto& [name, unused] : value_.json().items()) {
    if (!known_.contains(name)) {
      *value_.mistake_ = "unknown member " + PropertyList(name).dump() + " in " +
                         (value_.path().empty() ? "the scenario" : value_.path());
      return;
    }
  }
}

std::optional<ScenarioValue> ScenarioObject::find(std::string_view name) {
  known_.emplace(name);
  const auto& json = value_.json();
  const auto found = json.is_object() ? json.find(name) : json.end();
  if (!json.is_object() || found == json.end()) {
    return std::nullopt;
  }
  return ScenarioValue(*found, member(value_.path(), name), *value_.mistake_);
}

ScenarioValue ScenarioObject::require(std::string_view name) {
  if (auto found = find(name)) {
    return *found;
  }
  if (value_.json().is_object()) {
    value_.fail("\"" + std::string(name) + "\" is missing");
  }
  static const PropertyList absent;
  return {absent, member(value_.path(), name), *value_.mistake_};
}

}  // namespace tallowin
