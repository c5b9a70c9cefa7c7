#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

#include "base/record_file.h"
#include "platform/identifiers.h"
#include "platform/property_list.h"

namespace tallowin {

/// Which desktop stands at which place, for systems that know desktops by their places only (EWMH has a number of
/// desktops and nothing else). Each desktop has an id that it keeps whatever comes and goes beside it, and that no
/// other one is ever given.
///
/// At first the ids are 1 to N. When the count shrinks the last ones are parked, as window managers rewrite the count
/// when they restart; when it grows, parked ones come back in their order, then there are new ones.
class DesktopPlaces {
 public:
  using IDs = std::vector<ManagedSpaceID>;

  /// From left to right; empty before a count was seen.
  [[nodiscard]] const IDs& ids() const { return ids_; }
  /// Those that a growing count takes back, the next one first.
  [[nodiscard]] const IDs& parked() const { return parked_; }

  /// The system was seen to have so many desktops, at least one. Whether that changed anything.
  bool countSeen(std::size_t count);

  /// The ids as they will be without the desktop at this place, which must exist.
  [[nodiscard]] IDs without(std::size_t place) const;
  /// With a new desktop at the right end, whose id was never used.
  [[nodiscard]] IDs withNew() const;
  /// In the order of `saved`, where those come back that are neither here nor parked; desktops that `saved` does not
  /// know are at the right end.
  [[nodiscard]] IDs withRemoved(const IDs& saved) const;

  /// The desktops are these now: others are gone for good.
  void assign(IDs ids);

  /// The desktops, as many as there are, get the ids of `saved` from left to right; what remains of either is parked.
  void adopt(const IDs& saved);

  /// {"ids", "parked", "highest"}: the last is the highest id that was ever used.
  [[nodiscard]] PropertyList toJson() const;
  /// Nothing for anything else, such as an id that stands twice.
  [[nodiscard]] static std::optional<DesktopPlaces> fromJson(const PropertyList& json);

  bool operator==(const DesktopPlaces&) const = default;

 private:
  IDs ids_;
  IDs parked_;
  ManagedSpaceID highest_ = 0;
};

/// Whether the ids are 1 to N, so that a place tells who stands there.
[[nodiscard]] bool areOneToN(const DesktopPlaces::IDs& ids);

/// Ids from left to right in a JSON list; nothing for anything else, such as an id that stands twice.
[[nodiscard]] std::optional<DesktopPlaces::IDs> desktopIDsFromJson(const PropertyList& json);

/// The places with the file that keeps them, which is written 0.3 s after the last change. Main thread only.
class KeptDesktopPlaces {
 public:
  /// The file's name in the program's data folder.
  static constexpr auto fileName = "desktops.json";

  /// Kept in memory only.
  KeptDesktopPlaces() = default;
  /// Reads the file. One that cannot be understood is kept aside; one that cannot be read is never replaced. Who is not
  /// `writing` leaves it as it is.
  KeptDesktopPlaces(Storage& storage, std::filesystem::path path, bool writing);
  KeptDesktopPlaces(const KeptDesktopPlaces&) = delete;
  KeptDesktopPlaces& operator=(const KeptDesktopPlaces&) = delete;

  [[nodiscard]] const DesktopPlaces& get() const { return places_; }

  // As those of DesktopPlaces.
  void countSeen(std::size_t count);
  void assign(DesktopPlaces::IDs ids);
  void adopt(const DesktopPlaces::IDs& saved);

 private:
  void saveSoon();

  std::optional<RecordFile> file_;
  bool writing_ = false;
  DesktopPlaces places_;
  DesktopPlaces saved_;
};

}  // namespace tallowin
