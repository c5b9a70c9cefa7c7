#include "presentation/model/questions.h"

namespace tallowin {

const std::vector<std::string>& suggestedColors() {
  static const std::vector<std::string> colors = {"#FF3B30", "#FF9500", "#FFCC00", "#34C759", "#00C7BE",
                                                  "#007AFF", "#5856D6", "#AF52DE", "#FF2D55", "#8E8E93"};
  return colors;
}

const std::vector<std::string>& suggestedSymbols() {
  static const std::vector<std::string> symbols = {"rectangle.on.rectangle",
                                                   "envelope",
                                                   "message",
                                                   "globe",
                                                   "terminal",
                                                   "chevron.left.forwardslash.chevron.right",
                                                   "doc.text",
                                                   "folder",
                                                   "calendar",
                                                   "music.note",
                                                   "film",
                                                   "paintbrush",
                                                   "book",
                                                   "graduationcap",
                                                   "house",
                                                   "briefcase",
                                                   "person.2",
                                                   "gamecontroller",
                                                   "cart",
                                                   "gear",
                                                   "star",
                                                   "bolt",
                                                   "magnifyingglass",
                                                   "camera"};
  return symbols;
}

}  // namespace tallowin
