#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/messages.h"
#include "presentation/model/hud.h"
#include "presentation/model/menu.h"
#include "presentation/model/questions.h"
#include "presentation/model/status_item.h"

/// What the resident program tells the ui process, as functions of texts.
///
/// The ui process asks with the words "ui attach VERSION", by the same socket as everybody, and the answer goes on as
/// long as both live: each message is a JSON object in a frame of its own (channel_protocol.h), with "number", from 1
/// on, "kind" and "value". The ui process says with "ui seen NUMBER" which ones it has taken. Members and kinds that
/// the reader does not know are passed over, as either side may be newer.
namespace tallowin::ui {

/// The first message: who speaks.
struct Hello {
  std::string version;
  bool operator==(const Hello&) const = default;
};

/// What the user hears of a switch.
struct Feedback {
  std::string sound;   ///< name of a sound of the system's, or empty
  std::string speech;  ///< to be spoken, or empty
  bool operator==(const Feedback&) const = default;
};

/// A question in a dialog of its own, until it is answered with "ui answer NUMBER [WORD...]" (without a word: closed
/// unanswered), or withdrawn.
template <typename Question>
struct Ask {
  std::uint64_t number = 0;
  Question question;
  bool operator==(const Ask&) const = default;
};
using AskAlert = Ask<Alert>;        ///< answered with the index of the button
using AskName = Ask<NameQuestion>;  ///< answered with "name=…", and with "symbol=…" and "color=…" if these are given
using AskNote = Ask<NoteQuestion>;  ///< answered with the text

/// A question that is no longer open.
struct Withdraw {
  std::uint64_t number = 0;
  bool operator==(const Withdraw&) const = default;
};

using Message = std::variant<Hello, StatusItem, HUD, Toast, Feedback, AskAlert, AskName, AskNote, Withdraw>;

/// A message as it arrives.
struct Arrived {
  std::uint64_t number = 0;
  std::optional<Message> message;  ///< nothing when its kind is not known here, or its value is another
};

[[nodiscard]] std::string encode(std::uint64_t number, const Message& message);
/// The error is one line that says what is wrong.
[[nodiscard]] std::expected<Arrived, std::string> decode(std::string_view text);

/// A menu as "menu --json" prints it, on one line.
[[nodiscard]] std::string encodeMenu(const Menu& menu);
/// The error is one line that says what is wrong.
[[nodiscard]] std::expected<Menu, std::string> decodeMenu(std::string_view text);

}  // namespace tallowin::ui
