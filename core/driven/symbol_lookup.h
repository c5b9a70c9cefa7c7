#pragma once

#include <mutex>
#include <string_view>

#include "platform/dynamic_loader.h"

namespace tallowin {

/// Finds the window server's private functions by name. Any thread.
class SymbolLookup {
 public:
  explicit SymbolLookup(DynamicLoader& loader) : loader_(loader) {}

  /// The address of a function: in the private framework by its primary name, then by its fallback name, then in the
  /// process's default namespace by both; null when it is nowhere. An empty fallback is none.
  [[nodiscard]] void* resolve(std::string_view primary, std::string_view fallback = {});

  /// The same in the default namespace alone.
  [[nodiscard]] void* resolveInDefaultNamespace(std::string_view name) const;

  [[nodiscard]] DynamicLoader& loader() const { return loader_; }

 private:
  [[nodiscard]] void* resolveIn(LibraryHandle library, std::string_view primary, std::string_view fallback) const;

  DynamicLoader& loader_;
  std::once_flag opened_;
  LibraryHandle framework_ = nullptr;
};

/// One private function: looked up at its first use, then remembered, also when it is missing. Any thread.
template <typename Function>
class PrivateFunction {
 public:
  explicit PrivateFunction(std::string_view primary, std::string_view fallback = {})
      : primary_(primary), fallback_(fallback) {}

  /// Null when the function is missing.
  [[nodiscard]] Function get(SymbolLookup& lookup) {
    std::call_once(done_, [&] { address_ = reinterpret_cast<Function>(lookup.resolve(primary_, fallback_)); });
    return address_;
  }

 private:
  const std::string_view primary_;
  const std::string_view fallback_;
  std::once_flag done_;
  Function address_ = nullptr;
};

}  // namespace tallowin
