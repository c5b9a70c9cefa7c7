#pragma once

#include <optional>

#include "platform/desktop_service.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// A user's bus on which nobody but the program and the simulated user is; what is answered and signalled becomes lines
/// of the journal. Main thread only.
class SimulatedDesktopService : public DesktopService {
 public:
  explicit SimulatedDesktopService(Journal& journal) : journal_(journal) {}

  Subscription offer(ServiceDescription description, Handlers handlers) override;
  void tellChanged(const std::string& interface, const std::vector<std::string>& properties) override;

  /// Calls the method of this name, or reads the property.
  void call(const std::string& member, const PropertyList& arguments);

  /// Signals are written down from now on.
  void listen() { listens_ = true; }

 private:
  struct Offered {
    ServiceDescription description;
    Handlers handlers;
  };

  void answer(const std::string& member, const PropertyList& arguments, const Reply& reply) const;

  Journal& journal_;
  std::optional<Offered> offered_;
  bool listens_ = false;
};

}  // namespace tallowin
