#pragma once

#include <set>
#include <string>
#include <string_view>

#include "platform/log.h"

namespace tallowin {

/// Says to the log what the settings ask for and cannot be had here, once for each thing.
class Lacks {
 public:
  /// `category` must outlive this.
  Lacks(Log& log, std::string_view category) : log_(log), category_(category) {}

  void lack(bool isWanted, const std::string& sentence) {
    if (isWanted && said_.insert(sentence).second) {
      log_.info(category_, sentence);
    }
  }

 private:
  Log& log_;
  const std::string_view category_;
  std::set<std::string> said_;
};

}  // namespace tallowin
