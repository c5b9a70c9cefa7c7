#pragma once

#include <array>
#include <string_view>

namespace tallowin {

/// What a desktop is called, and which symbol it shows, while the demonstration mode is on.
struct SampleSpace {
  std::string_view name;
  std::string_view symbol;
};

/// Desktop n takes entry (n - 1) modulo their number.
inline constexpr auto sampleSpaces = std::to_array<SampleSpace>({
    {"Mail", "envelope"},
    {"Code", "chevron.left.forwardslash.chevron.right"},
    {"Design", "paintbrush"},
    {"Research", "books.vertical"},
    {"Music", "music.note"},
    {"Home", "house"},
});

}  // namespace tallowin
