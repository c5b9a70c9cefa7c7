#include "presentation/model/questions.h"

namespace tallowin {

const std::vector<Suggestion>& suggestedColors() {
  static const std::vector<Suggestion> colors = {
      {"#FF3B30", "Red"},  {"#FF9500", "Orange"}, {"#FFCC00", "Yellow"}, {"#34C759", "Green"}, {"#00C7BE", "Mint"},
      {"#007AFF", "Blue"}, {"#5856D6", "Indigo"}, {"#AF52DE", "Purple"}, {"#FF2D55", "Pink"},  {"#8E8E93", "Gray"}};
  return colors;
}

const std::vector<Suggestion>& suggestedSymbols() {
  static const std::vector<Suggestion> symbols = {{"rectangle.on.rectangle", "Windows"},
                                                  {"envelope", "Envelope"},
                                                  {"message", "Message"},
                                                  {"globe", "Globe"},
                                                  {"terminal", "Terminal"},
                                                  {"chevron.left.forwardslash.chevron.right", "Code"},
                                                  {"doc.text", "Document"},
                                                  {"folder", "Folder"},
                                                  {"calendar", "Calendar"},
                                                  {"music.note", "Music"},
                                                  {"film", "Film"},
                                                  {"paintbrush", "Paintbrush"},
                                                  {"book", "Book"},
                                                  {"graduationcap", "Graduation cap"},
                                                  {"house", "House"},
                                                  {"briefcase", "Briefcase"},
                                                  {"person.2", "People"},
                                                  {"gamecontroller", "Game controller"},
                                                  {"cart", "Shopping cart"},
                                                  {"gear", "Gear"},
                                                  {"star", "Star"},
                                                  {"bolt", "Lightning"},
                                                  {"magnifyingglass", "Magnifying glass"},
                                                  {"camera", "Camera"}};
  return symbols;
}

}  // namespace tallowin
