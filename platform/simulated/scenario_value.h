#pragma once

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/geometry.h"
#include "platform/main_queue.h"
#include "platform/property_list.h"

namespace tallowin {

/// The first thing that is wrong with a scenario; empty while nothing is.
using ScenarioMistake = std::string;

/// A value somewhere in a scenario file, which knows its path for messages such as "windows[0].frame: expected a list
/// of four numbers". Reading a wrong type notes the mistake and answers a default, so that readers need no branches.
/// The JSON and the mistake must outlive it.
class ScenarioValue {
 public:
  ScenarioValue(const PropertyList& json, std::string path, ScenarioMistake& mistake)
      : json_(&json), path_(std::move(path)), mistake_(&mistake) {}

  /// Puts it where it belongs, as what belongs there: a truth value, a whole number that fits, a finite number, a text,
  /// a time span of 0 to a thousand million seconds, a point [x, y], a rectangle [x, y, width, height] or any JSON. The
  /// elements of a list are put behind those that are there, the members of an object into a map. A type of one's own
  /// comes with readValue(const ScenarioValue&, Type&), or with readRecord(ScenarioObject&, Type&) where it is an
  /// object whose members have fixed names.
  template <typename Target>
  void into(Target& target) const;
  template <typename Target>
  [[nodiscard]] Target as() const {
    Target target{};
    into(target);
    return target;
  }
  /// What one of these names stands for; the first where it is none of them.
  template <typename Meaning>
  [[nodiscard]] Meaning oneOf(std::initializer_list<std::pair<std::string_view, Meaning>> names) const {
    std::string known;
    for (const auto& each : names) {
      if (*json_ == each.first) {
        return each.second;
      }
      known += (known.empty() ? "\"" : &each == names.end() - 1 ? " or \"" : ", \"") + std::string(each.first) + '"';
    }
    expected(known);
    return names.begin()->second;
  }
  [[nodiscard]] std::vector<ScenarioValue> list() const;
  /// The members of an object whose names are free, such as file paths.
  [[nodiscard]] std::vector<std::pair<std::string, ScenarioValue>> entries() const;

  [[nodiscard]] bool isNull() const { return json_->is_null(); }
  [[nodiscard]] bool isText() const { return json_->is_string(); }
  [[nodiscard]] const PropertyList& json() const { return *json_; }
  [[nodiscard]] const std::string& path() const { return path_; }

  /// Notes that something else was expected here, such as "a colour".
  void expected(std::string_view what) const;
  /// Notes a mistake in one's own words, which go behind the path.
  void fail(std::string_view what) const;

 private:
  friend class ScenarioObject;
  void read(bool& value) const;
  void read(double& value) const;
  void read(std::string& value) const;
  void read(Duration& value) const;
  void read(CGPoint& value) const;
  void read(CGRect& value) const;
  void read(PropertyList& value) const { value = *json_; }
  [[nodiscard]] std::int64_t integerBetween(std::int64_t least, std::int64_t most) const;
  [[nodiscard]] std::vector<double> numbers(std::size_t count, std::string_view what) const;

  const PropertyList* json_;
  std::string path_;
  ScenarioMistake* mistake_;
};

/// An object of a scenario file whose members have fixed names. A member that nobody has asked for when the object goes
/// away is a mistake.
class ScenarioObject {
 public:
  explicit ScenarioObject(const ScenarioValue& value);
  ~ScenarioObject();
  ScenarioObject(const ScenarioObject&) = delete;
  ScenarioObject& operator=(const ScenarioObject&) = delete;

  /// The member, when it is there.
  [[nodiscard]] std::optional<ScenarioValue> find(std::string_view name);
  /// Puts the member, when it is there, where it belongs.
  template <typename Target>
  void read(std::string_view name, Target& target) {
    if (const auto member = find(name)) {
      member->into(target);
    }
  }
  /// The member; without it the mistake is noted, and the answer reads as null.
  [[nodiscard]] ScenarioValue require(std::string_view name);
  template <typename Target>
  void require(std::string_view name, Target& target) {
    require(name).into(target);
  }

 private:
  const ScenarioValue value_;
  std::set<std::string, std::less<>> known_;
};

/// A value for which null stands for nothing.
template <typename Value>
struct Nullable {
  std::optional<Value> value;
};
template <typename Value>
void readValue(const ScenarioValue& from, Nullable<Value>& nullable) {
  if (!from.isNull()) {
    from.into(nullable.value);
  }
}

template <typename Target>
void ScenarioValue::into(Target& target) const {
  if constexpr (requires { readValue(*this, target); }) {
    readValue(*this, target);
  } else if constexpr (requires(ScenarioObject& object) { readRecord(object, target); }) {
    ScenarioObject object(*this);
    readRecord(object, target);
  } else if constexpr (std::is_integral_v<Target> && !std::is_same_v<Target, bool>) {
    using Limits = std::numeric_limits<Target>;
    constexpr auto most = std::in_range<std::int64_t>(Limits::max()) ? static_cast<std::int64_t>(Limits::max())
                                                                     : std::numeric_limits<std::int64_t>::max();
    target = static_cast<Target>(integerBetween(static_cast<std::int64_t>(Limits::min()), most));
  } else if constexpr (requires { read(target); }) {
    read(target);
  } else if constexpr (requires { target.has_value(); }) {
    into(target.emplace());
  } else if constexpr (requires { typename Target::mapped_type; }) {
    for (const auto& [name, entry] : entries()) {
      entry.into(target[name]);
    }
  } else {
    for (const auto& element : list()) {
      target.insert(target.end(), element.as<typename Target::value_type>());
    }
  }
}

}  // namespace tallowin
