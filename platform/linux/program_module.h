#pragma once

namespace tallowin {

/// The function of this name in the library `file` from the folder of the running program, which is loaded for good;
/// null when there is none.
[[nodiscard]] void* programModuleFunction(const char* file, const char* function);

}  // namespace tallowin
