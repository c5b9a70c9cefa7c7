#include "windows/layout_files.h"

#include "base/json_text.h"
#include "base/keep_aside.h"
#include "windows/layout_file_name.h"

namespace tallowin {

namespace {

constexpr auto category = "LayoutManager";
constexpr unsigned privateFolder = 0700;
constexpr unsigned privateFile = 0600;

}  // namespace

std::filesystem::path LayoutFiles::folder() const {
  return paths_.supportDirectory() / "Layouts";
}

void LayoutFiles::write(const WindowLayout& layout, std::string_view name) {
  const auto file = folder() / layoutFileName(name, layout.displaySetup);
  auto written = files_.createDirectory(folder(), privateFolder);
  if (written) {
    const auto isLayout = [](const PropertyList& json) { return layoutFromJson(json).has_value(); };
    const auto before = contentToReplace({files_, clock_, log_}, category, file, isLayout);
    written = before ? files_.writeAtomically(file, prettyJSON(toJson(layout)), privateFile)
                     : std::unexpected(before.error());
  }
  if (!written) {
    log_.error(category, "cannot write " + file.string() + ": " + written.error().description);
  }
}

std::optional<WindowLayout> LayoutFiles::read(std::string_view name, std::string_view displaySetup) {
  const auto file = folder() / layoutFileName(name, displaySetup);
  const auto text = files_.read(file);
  if (!text) {
    if (!text.error().notFound) {
      log_.error(category, "cannot read " + file.string() + ": " + text.error().description);
    }
    return std::nullopt;
  }
  const auto json = parseJSON(*text);
  auto layout = json ? layoutFromJson(*json) : std::nullopt;
  if (!layout) {
    const auto& why = json ? "the record has the wrong form" : json.error();
    log_.error(category, "cannot understand " + file.string() + " (" + why + ")");
  }
  return layout;
}

}  // namespace tallowin
