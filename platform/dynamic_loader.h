#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// An opened library. Null is none.
using LibraryHandle = void*;

/// An image (executable or library) that is loaded into this process.
struct LoadedImage {
  std::string path;
  std::span<const std::byte> bytes;  ///< from its header on, as mapped; valid while the image stays loaded
  std::int64_t slide = 0;            ///< how far it was moved from the addresses that it was linked for
  std::uint64_t loadAddress = 0;     ///< the address of bytes[0] in this process
};

/// Finds functions by name at run time (dlfcn.h, mach-o/dyld.h). Any thread.
class DynamicLoader {
 public:
  /// Mode bits of open(), with their values in the dlfcn.h of the system that the libraries belong to.
  static constexpr int lazy = 1;
  static constexpr int noLoad = 16;

  virtual ~DynamicLoader() = default;

  /// The library at `path`; null when it cannot be opened or, with `noLoad`, is not loaded already.
  virtual LibraryHandle open(std::string_view path, int mode) = 0;

  /// The address of a symbol in a library, or in the process's default namespace when `library` is null; null when
  /// there is none.
  virtual void* symbol(LibraryHandle library, std::string_view name) = 0;

  /// The loaded images, in load order; empty where the system does not tell.
  virtual std::vector<LoadedImage> loadedImages() = 0;
};

}  // namespace tallowin
