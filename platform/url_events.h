#pragma once

#include <functional>
#include <string>

namespace tallowin {

/// URLs of the program's own scheme that the system hands over (the "get URL" Apple event). Main thread only.
class URLEvents {
 public:
  virtual ~URLEvents() = default;

  /// Makes `handler` the one receiver of the texts of such events; a later call replaces it.
  virtual void setHandler(std::function<void(const std::string& text)> handler) = 0;
};

}  // namespace tallowin
