// Fills the program's tables into a document: tallowin-documents manual|markdown|shell|fish TEMPLATE OUTPUT.

#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "commands/outcome.h"
#include "packaging/documents/document_template.h"

namespace {

int fail(const std::string& message, int status) {
  std::cerr << "tallowin-documents: " << message << '\n';
  return status;
}

const std::map<std::string, tallowin::DocumentTables (*)()> kinds = {{"manual", tallowin::manualTables},
                                                                     {"markdown", tallowin::markdownTables},
                                                                     {"shell", tallowin::shellTables},
                                                                     {"fish", tallowin::fishTables}};

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  constexpr std::size_t expected = 3;
  if (arguments.size() != expected || !kinds.contains(arguments[0])) {
    return fail("it is called with manual, markdown, shell or fish, a template and an output",
                tallowin::exit_status::usage);
  }
  std::ifstream input(arguments[1], std::ios::binary);
  if (!input) {
    return fail("cannot read " + arguments[1], tallowin::exit_status::noInput);
  }
  const std::string text{std::istreambuf_iterator<char>(input), {}};
  const auto filled = tallowin::filledIn(text, kinds.at(arguments[0])());
  if (!filled) {
    return fail(arguments[1] + ": " + filled.error(), tallowin::exit_status::badData);
  }
  std::ofstream output(arguments[2], std::ios::binary);
  output << *filled << std::flush;
  return output ? tallowin::exit_status::success
                : fail("cannot write " + arguments[2], tallowin::exit_status::cannotCreate);
}
