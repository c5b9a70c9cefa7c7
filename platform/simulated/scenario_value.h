#pragma once

#include <cstdint>
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

  [[nodiscard]] bool boolean() const;
  [[nodiscard]] std::string text() const;
  /// A finite number.
  [[nodiscard]] double number() const;
  /// A time span of at least 0 and at most a thousand million seconds.
  [[nodiscard]] Duration seconds() const;
  [[nodiscard]] CGPoint point() const;  ///< [x, y]
  [[nodiscard]] CGRect rect() const;    ///< [x, y, width, height]
  template <typename Integer>
  [[nodiscard]] Integer integer() const {
    using Limits = std::numeric_limits<Integer>;
    return static_cast<Integer>(
        integerBetween(static_cast<std::int64_t>(Limits::min()), std::in_range<std::int64_t>(Limits::max())
                                                                     ? static_cast<std::int64_t>(Limits::max())
                                                                     : std::numeric_limits<std::int64_t>::max()));
  }
  /// Puts it where it belongs, as what belongs there; the elements of a list are put behind those that are there.
  template <typename Target>
  void into(Target& target) const {
    if constexpr (std::is_same_v<Target, bool>) {
      target = boolean();
    } else if constexpr (std::is_integral_v<Target>) {
      target = integer<Target>();
    } else if constexpr (std::is_same_v<Target, std::string>) {
      target = text();
    } else if constexpr (std::is_same_v<Target, Duration>) {
      target = seconds();
    } else if constexpr (std::is_same_v<Target, CGPoint>) {
      target = point();
    } else if constexpr (std::is_same_v<Target, CGRect>) {
      target = rect();
    } else if constexpr (requires { target.has_value(); }) {
      into(target.emplace());
    } else {
      for (const auto& element : list()) {
        typename Target::value_type value{};
        element.into(value);
        target.insert(target.end(), std::move(value));
      }
    }
  }
  /// What one of these names stands for; the first where it is none of them.
  template <typename Meaning, std::size_t count>
  [[nodiscard]] Meaning oneOf(const std::pair<std::string_view, Meaning> (&names)[count]) const {
    std::string known;
    for (std::size_t i = 0; i < count; ++i) {
      if (isText() && json_->get_ref<const std::string&>() == names[i].first) {
        return names[i].second;
      }
      known += (i == 0 ? "\"" : i + 1 < count ? ", \"" : " or \"") + std::string(names[i].first) + '"';
    }
    expected(known);
    return names[0].second;
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

  [[nodiscard]] const ScenarioValue& value() const { return value_; }

 private:
  const ScenarioValue value_;
  std::set<std::string, std::less<>> known_;
};

}  // namespace tallowin
