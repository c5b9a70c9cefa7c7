#include "core/driven/symbol_lookup.h"

#include "platform/private_functions.h"

namespace tallowin {

void* SymbolLookup::resolve(std::string_view primary, std::string_view fallback) {
  std::call_once(opened_, [this] {
    framework_ = loader_.open(private_functions::skyLight, DynamicLoader::lazy | DynamicLoader::noLoad);
    if (framework_ == nullptr) {
      framework_ = loader_.open(private_functions::skyLight, DynamicLoader::lazy);
    }
  });
  if (framework_ != nullptr) {
    if (auto* found = resolveIn(framework_, primary, fallback)) {
      return found;
    }
  }
  return resolveIn(nullptr, primary, fallback);
}

void* SymbolLookup::resolveInDefaultNamespace(std::string_view name) const {
  return loader_.symbol(nullptr, name);
}

void* SymbolLookup::resolveIn(LibraryHandle library, std::string_view primary, std::string_view fallback) const {
  auto* found = loader_.symbol(library, primary);
  return found == nullptr && !fallback.empty() ? loader_.symbol(library, fallback) : found;
}

}  // namespace tallowin
