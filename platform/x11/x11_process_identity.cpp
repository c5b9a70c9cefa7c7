#include "platform/x11/x11_process_identity.h"

#include <algorithm>
#include <array>
#include <bit>
#include <filesystem>
#include <unistd.h>

namespace tallowin {

std::vector<std::string> localMachineNames() {
  std::vector<std::string> names = {"localhost"};
  std::array<char, 256> buffer{};
  if (gethostname(buffer.data(), buffer.size() - 1) == 0) {
    const std::string whole = buffer.data();
    names.push_back(whole);
    names.push_back(whole.substr(0, whole.find('.')));
  }
  return names;
}

std::optional<ProcessID> processOf(const ProcessEvidence& evidence, const std::vector<std::string>& localNames) {
  const auto isPid = [](std::optional<std::uint32_t> pid) { return pid && *pid > 0 && *pid < firstStandInPid; };
  const auto isLocal = [&](const std::string& name) { return std::ranges::find(localNames, name) != localNames.end(); };
  const bool local = isLocal(evidence.machine) || isLocal(evidence.machine.substr(0, evidence.machine.find('.')));
  if (!local && !evidence.machine.empty()) {
    return std::nullopt;
  }
  if (isPid(evidence.server)) {
    return static_cast<ProcessID>(*evidence.server);
  }
  return local && isPid(evidence.named) ? std::optional(static_cast<ProcessID>(*evidence.named)) : std::nullopt;
}

ProcessID standInPid(std::uint32_t window, std::uint32_t resourceMask) {
  return firstStandInPid + static_cast<ProcessID>((window & ~resourceMask) >> std::popcount(resourceMask));
}

std::string programName(ProcessID pid) {
  if (pid <= 0 || pid >= firstStandInPid) {
    return {};
  }
  std::error_code error;
  auto name = std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", error).filename().string();
  // What the kernel adds when the program's file has been replaced since, as by an update.
  constexpr std::string_view deleted = " (deleted)";
  return name.ends_with(deleted) ? name.substr(0, name.size() - deleted.size()) : name;
}

}  // namespace tallowin
