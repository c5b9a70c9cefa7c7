#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/resident_program.h"

namespace tallowin {

/// A Space as the simulated window server has it.
struct TrueSpace {
  std::string id;
  ManagedSpaceID managedID;
  std::string display;
  bool active;
  int number;  ///< of the desktop; 0 for a full-screen Space
};

/// What the invariants are about: the scenario, the program that lives through it, and the words for what is wrong.
struct SoakRun {
  const nlohmann::ordered_json& scenario;
  ResidentProgram& program;
  /// Says that an invariant does not hold.
  std::function<void(const std::string& invariant, const std::string& detail)> fail;

  [[nodiscard]] const DesktopState& state() const { return program.state(); }
  [[nodiscard]] Duration now() const { return program.time.elapsed(); }
  /// The Spaces visited, as the program remembers them.
  [[nodiscard]] std::vector<std::string> recent() const { return program.delegate->history().recent(); }
  [[nodiscard]] bool isCalm() const;         ///< neither the machine nor its user's programs misbehave
  [[nodiscard]] bool areByPlace() const;     ///< desktops have no identity of their own
  [[nodiscard]] bool canReadSpaces() const;  ///< the functions are there that tell which Spaces exist
  /// Whether the list is an intact one, from which everybody must read the same Spaces.
  [[nodiscard]] bool hasIntactSpaces() const;
  /// The Spaces of an intact list, in the order in which desktops are numbered.
  [[nodiscard]] std::vector<TrueSpace> spaces() const;
  /// The active Space of the menu-bar display, which is the first one if there is no other.
  [[nodiscard]] std::string activeID() const;
  /// The object in a file of the program; an empty one when there is none.
  [[nodiscard]] nlohmann::ordered_json supportFile(const std::string& name) const;
};

/// One thing that must be so, whatever happens. It works out from the journal what to expect.
class Invariant {
 public:
  explicit Invariant(const SoakRun& run) : run_(run) {}
  Invariant(const Invariant&) = delete;
  Invariant& operator=(const Invariant&) = delete;
  virtual ~Invariant() = default;

  /// A line of the journal, as it is written. The actions of the script come before they are carried out.
  virtual void hear(const nlohmann::ordered_json& /*record*/) {}
  /// The quit is about to come, long after anything has happened.
  virtual void settled() {}
  /// The program has ended.
  virtual void ended() {}

 protected:
  const SoakRun& run_;
  const bool isCalm_ = run_.isCalm();
};

using Invariants = std::vector<std::unique_ptr<Invariant>>;

template <typename... Each>
void add(const SoakRun& run, Invariants& invariants) {
  (invariants.push_back(std::make_unique<Each>(run)), ...);
}

void addDesktopInvariants(const SoakRun& run, Invariants& invariants);
void addFileInvariants(const SoakRun& run, Invariants& invariants);
void addNameInvariants(const SoakRun& run, Invariants& invariants);
void addWindowInvariants(const SoakRun& run, Invariants& invariants);

/// Whether a line of the journal has this text anywhere.
inline bool mentions(const nlohmann::ordered_json& record, std::string_view text) {
  return record.dump().find(text) != std::string::npos;
}

/// The action of the script that a line of the journal tells of; empty for other lines.
inline std::string actionIn(const nlohmann::ordered_json& record) {
  return record["op"] == "script" ? record["do"].get<std::string>() : "";
}

/// Whether it is an action after which not all visits may be told, since the overview is shown instead.
inline bool hidesVisits(const nlohmann::ordered_json& record) {
  return record["op"] == "script" && (mentions(record, "overview") || mentions(record, "demo-tour"));
}

/// The file of the program's data folder that a line of the journal tells to be written; empty for other lines.
inline std::string writtenFile(const nlohmann::ordered_json& record) {
  return record["op"] == "writeAtomically" ? record["path"].get<std::string>() : "";
}

/// The file that a line of the journal says the user or another program to have changed or deleted; empty for others.
std::string rewrittenFile(const nlohmann::ordered_json& record);

inline const std::string supportFolder = "/home/user/.local/share/Tallowin/";

}  // namespace tallowin
