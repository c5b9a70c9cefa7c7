#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/resident_program.h"
#include "tests/soak/busy_desktop.h"

namespace tallowin {

/// What the invariants are about: the scenario, the program that lives through it, and the words for what is wrong.
struct SoakRun {
  const nlohmann::ordered_json& scenario;
  ResidentProgram& program;
  /// Says that an invariant does not hold.
  std::function<void(const std::string& invariant, const std::string& detail)> fail;

  [[nodiscard]] const DesktopState& state() const { return program.state(); }
  [[nodiscard]] Duration now() const { return program.time.elapsed(); }
  [[nodiscard]] bool isCalm() const;         ///< neither the machine nor its user's programs misbehave
  [[nodiscard]] bool canReadSpaces() const;  ///< the functions are there that tell which Spaces exist
  /// Whether the list is an intact one, from which everybody must read the same Spaces.
  [[nodiscard]] bool hasIntactSpaces() const;
  /// The Spaces of an intact list.
  [[nodiscard]] std::vector<TrueSpace> spaces() const { return trueSpaces(state()); }
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
};

using Invariants = std::vector<std::unique_ptr<Invariant>>;

void addDesktopInvariants(const SoakRun& run, Invariants& invariants);
void addFileInvariants(const SoakRun& run, Invariants& invariants);
void addNameInvariants(const SoakRun& run, Invariants& invariants);
void addWindowInvariants(const SoakRun& run, Invariants& invariants);

/// The file that a line of the journal says the user or another program to have changed or deleted; empty for others.
std::string rewrittenFile(const nlohmann::ordered_json& record);

inline const std::string supportFolder = "/home/user/.local/share/Tallowin/";

}  // namespace tallowin
