#include "windows/application_opening.h"

namespace tallowin {

bool openApplication(const std::string& bundleID, Workspace& workspace, Log& log, std::string_view category,
                     const OpenConfiguration& configuration) {
  const auto application = workspace.URLForApplicationWithBundleIdentifier(bundleID);
  if (!application) {
    log.info(category, "no application " + bundleID + " to open");
    return false;
  }
  workspace.openApplicationAtURL(
      *application, configuration,
      [&log, category = std::string(category), bundleID](std::expected<void, std::string> opened) {
        if (!opened) {
          log.error(category, "cannot open " + bundleID + ": " + opened.error());
        }
      });
  return true;
}

}  // namespace tallowin
