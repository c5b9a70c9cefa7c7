#pragma once

#include <chrono>
#include <deque>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/lifetime.h"
#include "platform/clock.h"
#include "platform/dbus/bus_link.h"
#include "platform/dbus/bus_values.h"
#include "platform/log.h"
#include "platform/pinned.h"
#include "platform/ways_in.h"

namespace tallowin {

/// The program's object on the user's bus, under its name there.
///
/// Calls are handled from the main queue, one after the other, with the bus at rest, so that a handler may do anything.
/// Properties are read in the same way, since they may have to be waited for.
/// While another process has the name this one waits in the bus's line for it. Without a bus, or when it goes, the log
/// tells once; the next change of a property, at most every 30 s, looks whether there is one again, so that nothing
/// wakes a program that is idle. Main thread only.
class BusService : public DesktopService, Pinned {
 public:
  BusService(BusLink& link, MainQueue& queue, const Clock& clock, Log& log);

  Subscription offer(ServiceDescription description, Handlers handlers) override;
  void tellChanged(const std::string& interface, const std::vector<std::string>& properties) override;

 private:
  struct Offered {
    ServiceDescription description;
    Handlers handlers;
    std::list<BusVtable> interfaces;
  };

  void connect();
  void opened();
  void lost();
  void withdraw();
  [[nodiscard]] int addObject(sd_bus* bus);
  /// Fills in a reply. Negative, as of errno(3), when that cannot be done.
  using Filling = std::function<int(sd_bus_message* reply)>;

  void take(sd_bus_message* call);
  void answerNext();
  void answerCall(const std::shared_ptr<const Offered>& offered, BusMessage call);
  void answerReading(const std::shared_ptr<const Offered>& offered, BusMessage call);
  void reply(sd_bus_message* call, const Filling& fill) const;
  void refuse(sd_bus_message* call, const ServiceError& error) const;
  void send(sd_bus_message* reply) const;
  [[nodiscard]] bool canReply(sd_bus_message* call) const;
  [[nodiscard]] bool has(const std::string& interface, const PropertyList& property) const;
  void sayOnce(std::string_view what);

  static int called(sd_bus_message* call, void* self, sd_bus_error* error);
  static int filtered(sd_bus_message* message, void* self, sd_bus_error* error);
  static int named(sd_bus_message* reply, void* self, sd_bus_error* error);
  static int get(sd_bus* bus, const char* path, const char* interface, const char* property, sd_bus_message* reply,
                 void* self, sd_bus_error* error);

  BusLink& link_;
  MainQueue& queue_;
  const Clock& clock_;
  Log& log_;
  Subscription openedListener_;
  Subscription lostListener_;
  // Shared with a call that is being answered, which may be the end of the offer: its message refers to the vtable.
  std::shared_ptr<const Offered> offered_;
  std::vector<BusSlot> slots_;    ///< on the present connection; none while there is none
  std::deque<BusMessage> calls_;  ///< to be answered
  WorkItem answering_;
  std::optional<std::chrono::nanoseconds> retryAt_;  ///< in system uptime
  std::string said_;
  Lifetime lifetime_;
};

}  // namespace tallowin
