#include "platform/linux/system_loader.h"

#include <dlfcn.h>
#include <string>

namespace tallowin {

LibraryHandle SystemLoader::open(std::string_view path, int mode) {
  const int flags = RTLD_LAZY | ((mode & noLoad) != 0 ? RTLD_NOLOAD : 0);
  return ::dlopen(std::string(path).c_str(), flags);
}

void* SystemLoader::symbol(LibraryHandle library, std::string_view name) {
  return ::dlsym(library != nullptr ? library : RTLD_DEFAULT, std::string(name).c_str());
}

}  // namespace tallowin
