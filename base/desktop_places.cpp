#include "base/desktop_places.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <set>

#include "base/json_text.h"
#include "base/property_list_reading.h"

namespace tallowin {

namespace {

constexpr auto desktopPlacesCategory = "DesktopPlaces";
constexpr Duration savingDelay = std::chrono::milliseconds(300);

/// Far beyond any number of desktops, and far from an overflow.
constexpr ManagedSpaceID highestReadable = std::numeric_limits<std::int32_t>::max();

using IDs = DesktopPlaces::IDs;

bool contains(const IDs& ids, ManagedSpaceID id) {
  return std::ranges::find(ids, id) != ids.end();
}

void appendMissing(IDs& ids, const IDs& more) {
  std::ranges::copy_if(more, std::back_inserter(ids), [&](ManagedSpaceID id) { return !contains(ids, id); });
}

}  // namespace

bool DesktopPlaces::countSeen(std::size_t count) {
  const auto before = ids_.size();
  if (count < before) {
    const auto first = ids_.begin() + static_cast<std::ptrdiff_t>(count);
    parked_.insert(parked_.begin(), first, ids_.end());
    ids_.erase(first, ids_.end());
  }
  const auto back = std::min(parked_.size(), count - ids_.size());
  const auto end = parked_.begin() + static_cast<std::ptrdiff_t>(back);
  ids_.insert(ids_.end(), parked_.begin(), end);
  parked_.erase(parked_.begin(), end);
  while (ids_.size() < count) {
    ids_.push_back(++highest_);
  }
  return count != before;
}

IDs DesktopPlaces::without(std::size_t place) const {
  auto ids = ids_;
  ids.erase(ids.begin() + static_cast<std::ptrdiff_t>(place));
  return ids;
}

IDs DesktopPlaces::withNew() const {
  auto ids = ids_;
  ids.push_back(highest_ + 1);
  return ids;
}

IDs DesktopPlaces::withRemoved(const IDs& saved) const {
  IDs ids;
  std::ranges::copy_if(saved, std::back_inserter(ids), [&](ManagedSpaceID id) { return !contains(parked_, id); });
  appendMissing(ids, ids_);
  return ids;
}

void DesktopPlaces::assign(IDs ids) {
  ids_ = std::move(ids);
  std::erase_if(parked_, [&](ManagedSpaceID id) { return contains(ids_, id); });
  highest_ = std::max(highest_, ids_.empty() ? 0 : std::ranges::max(ids_));
}

void DesktopPlaces::adopt(const IDs& saved) {
  const auto count = ids_.size();
  auto all = saved;
  appendMissing(all, ids_);
  appendMissing(all, parked_);
  parked_.clear();
  assign(std::move(all));
  countSeen(count);
}

PropertyList DesktopPlaces::toJson() const {
  return {{"ids", ids_}, {"parked", parked_}, {"highest", highest_}};
}

std::optional<DesktopPlaces> DesktopPlaces::fromJson(const PropertyList& json) {
  const auto* const ids = property_list::member(json, "ids");
  const auto* const parked = property_list::member(json, "parked");
  const auto highest = property_list::member(json, "highest", property_list::integer);
  if (ids == nullptr || parked == nullptr || !highest || !ids->is_array() || !parked->is_array()) {
    return std::nullopt;
  }
  auto all = *ids;
  all.insert(all.end(), parked->begin(), parked->end());
  const auto line = desktopIDsFromJson(all);
  if (!line || *highest > highestReadable) {
    return std::nullopt;
  }
  DesktopPlaces places;
  places.highest_ = *highest;
  places.assign(*line);
  places.countSeen(ids->size());
  return places;
}

bool areOneToN(const IDs& ids) {
  IDs oneToN(ids.size());
  std::iota(oneToN.begin(), oneToN.end(), 1);
  return ids == oneToN;
}

std::optional<IDs> desktopIDsFromJson(const PropertyList& json) {
  if (!json.is_array()) {
    return std::nullopt;
  }
  IDs ids;
  for (const auto& element : json) {
    const auto id = property_list::integer(element);
    if (!id || *id < 1 || *id > highestReadable) {
      return std::nullopt;
    }
    ids.push_back(*id);
  }
  return std::set(ids.begin(), ids.end()).size() == ids.size() ? std::optional(std::move(ids)) : std::nullopt;
}

KeptDesktopPlaces::KeptDesktopPlaces(Storage& storage, std::filesystem::path path, bool writing) : writing_(writing) {
  file_.emplace(storage, std::move(path), desktopPlacesCategory, SaveRule{.delay = savingDelay});
  const auto parse = [](std::string_view text) -> std::expected<DesktopPlaces, std::string> {
    const auto json = parseJSON(text);
    auto places = json ? DesktopPlaces::fromJson(*json) : std::nullopt;
    return places ? std::expected<DesktopPlaces, std::string>(*std::move(places))
                  : std::unexpected(json ? "it is no list of desktops" : json.error());
  };
  places_ = saved_ = file_->read(parse).value_or(DesktopPlaces());
  file_->onSaved = [this] { saved_ = places_; };
  if (writing_) {
    static_cast<void>(file_->makeReplaceable());  // the next save tells what keeps it from that
  }
}

void KeptDesktopPlaces::countSeen(std::size_t count) {
  if (places_.countSeen(count)) {
    saveSoon();
  }
}

void KeptDesktopPlaces::assign(DesktopPlaces::IDs ids) {
  places_.assign(std::move(ids));
  saveSoon();
}

void KeptDesktopPlaces::adopt(const DesktopPlaces::IDs& saved) {
  places_.adopt(saved);
  saveSoon();
}

void KeptDesktopPlaces::saveSoon() {
  if (writing_) {
    file_->changed([this]() -> RecordFile::Text {
      if (places_ == saved_) {
        return nullptr;
      }
      return [json = places_.toJson()] { return prettyJSON(json); };
    });
  }
}

}  // namespace tallowin
