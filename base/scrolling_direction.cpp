#include "base/scrolling_direction.h"

#include "base/property_list_reading.h"

namespace tallowin {

bool isNaturalScrolling(const std::optional<PropertyList>& preference) {
  if (!preference) {
    return true;
  }
  const auto flag = property_list::boolean(*preference);
  return flag ? *flag : property_list::integer(*preference).value_or(1) != 0;
}

}  // namespace tallowin
