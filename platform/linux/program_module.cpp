#include "platform/linux/program_module.h"

#include <dlfcn.h>
#include <filesystem>

namespace tallowin {

void* programModuleFunction(const char* file, const char* function) {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  auto* const library = ::dlopen((program.parent_path() / file).c_str(), RTLD_LAZY | RTLD_LOCAL);
  return library != nullptr ? ::dlsym(library, function) : nullptr;
}

}  // namespace tallowin
