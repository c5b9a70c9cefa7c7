#include "presentation/link/messages.h"

#include <array>
#include <utility>

#include "base/json_text.h"
#include "base/settings_table.h"
#include "platform/property_list.h"

// How the library reads and writes what it does not know by itself: null for what is absent, settings' cases by their
// stored texts.
namespace nlohmann {

template <typename Value>
struct adl_serializer<std::optional<Value>> {
  static void to_json(auto& json, const std::optional<Value>& value) {
    if (value) {
      json = *value;
    } else {
      json = nullptr;
    }
  }
  static void from_json(const auto& json, std::optional<Value>& value) {
    value = json.is_null() ? std::nullopt : std::optional(json.template get<Value>());
  }
};

template <typename Case>
  requires(!tallowin::storedTexts<Case>.empty())
struct adl_serializer<Case> {
  static void to_json(auto& json, Case value) { json = tallowin::storedText(value); }
  static void from_json(const auto& json, Case& value) {
    value = tallowin::caseOfStoredText<Case>(json.template get<std::string>());
  }
};

}  // namespace nlohmann

namespace tallowin {

// The macros of the library write functions with these names; what is missing keeps its default.
NLOHMANN_JSON_SERIALIZE_ENUM(MenuEntry::Kind, {{MenuEntry::Kind::action, "action"},
                                               {MenuEntry::Kind::heading, "heading"},
                                               {MenuEntry::Kind::separator, "separator"},
                                               {MenuEntry::Kind::submenu, "submenu"}})
NLOHMANN_JSON_SERIALIZE_ENUM(MenuEntry::Mark, {{MenuEntry::Mark::none, "none"},
                                               {MenuEntry::Mark::check, "check"},
                                               {MenuEntry::Mark::radio, "radio"}})
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(MenuEntry, kind, label, request, asksForFile, mark, isMarked, colorHex,
                                                symbol, entries)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(SpaceRow, id, name, desktopNumber, symbol, colorHex, group, isActive,
                                                isVisible)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(StatusItem::Mark, text, colorHex, isActive)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(StatusItem, text, symbol, number, colorHex, marks, more, toolTip,
                                                scrollSwitches)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(HUD, id, name, symbol, colorHex, desktopNumber, line, size, position,
                                                seconds)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(Toast, text, symbol, isError)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(Alert, messageText, informativeText, buttons)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(NameQuestion, space, isNew, ownName, recentNames)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(NoteQuestion, space, text)

namespace ui {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(Hello, version)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(Feedback, sound, speech)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(AskAlert, number, question)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(AskName, number, question)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(AskNote, number, question)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(Withdraw, number)

namespace {

/// By the alternatives of Message, in their order.
constexpr auto kinds = std::to_array<std::string_view>(
    {"hello", "statusItem", "hud", "toast", "feedback", "alert", "askName", "askNote", "withdraw"});
static_assert(kinds.size() == std::variant_size_v<Message>);

/// Nothing for a kind that is not known, or a value that does not fit it: a newer program may have changed either.
template <std::size_t... Index>
std::optional<Message> messageOf(std::string_view kind, const PropertyList& value,
                                 std::index_sequence<Index...> /*all*/) {
  std::optional<Message> message;
  try {
    static_cast<void>(
        ((kind == kinds[Index] && (message = value.get<std::variant_alternative_t<Index, Message>>(), true)) || ...));
  } catch (const PropertyList::exception& /*mistake*/) {
    return std::nullopt;
  }
  return message;
}

/// What `read` makes of a JSON text; what is wrong with it in one line.
template <typename Read>
std::expected<std::invoke_result_t<Read, const PropertyList&>, std::string> readJSON(std::string_view text,
                                                                                     const Read& read) {
  const auto json = parseJSON(text);
  if (!json) {
    return std::unexpected(json.error());
  }
  try {
    return read(*json);
  } catch (const PropertyList::exception& mistake) {
    return std::unexpected(std::string(mistake.what()));
  }
}

}  // namespace

std::string encode(std::uint64_t number, const Message& message) {
  PropertyList json = {{"number", number}, {"kind", kinds.at(message.index())}};
  std::visit([&json](const auto& value) { json["value"] = value; }, message);
  return compactJSON(json);
}

std::expected<Arrived, std::string> decode(std::string_view text) {
  return readJSON(text, [](const PropertyList& json) {
    return Arrived{json.at("number").get<std::uint64_t>(),
                   messageOf(json.at("kind").get<std::string>(), json.at("value"),
                             std::make_index_sequence<std::variant_size_v<Message>>())};
  });
}

std::string encodeMenu(const Menu& menu) {
  return compactJSON(menu);
}

std::expected<Menu, std::string> decodeMenu(std::string_view text) {
  return readJSON(text, [](const PropertyList& json) { return json.get<Menu>(); });
}

}  // namespace ui

}  // namespace tallowin
