#pragma once

namespace tallowin {

/// The base of what stays where it was made, since others keep references to it: neither copied nor moved.
class Pinned {
 public:
  Pinned() = default;
  Pinned(const Pinned&) = delete;
  Pinned& operator=(const Pinned&) = delete;
};

}  // namespace tallowin
