#pragma once

#include "platform/dynamic_loader.h"

namespace tallowin {

/// Libraries and symbols of this process by dlopen(3) and dlsym(3). Its images are not listed: only a system that has
/// the private frameworks has any use for them.
class SystemLoader : public DynamicLoader {
 public:
  LibraryHandle open(std::string_view path, int mode) override;
  void* symbol(LibraryHandle library, std::string_view name) override;
  std::vector<LoadedImage> loadedImages() override { return {}; }
};

}  // namespace tallowin
