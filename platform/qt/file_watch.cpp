#include "platform/qt/file_watch.h"

#include <array>
#include <cstring>
#include <memory>
#include <sys/inotify.h>
#include <unistd.h>

namespace tallowin {

namespace {

/// The events that have arrived, folded into one.
FileEvents readEvents(int descriptor) {
  FileEvents events;
  alignas(inotify_event) std::array<char, 4096> buffer{};
  for (ssize_t size = 0; (size = ::read(descriptor, buffer.data(), buffer.size())) > 0;) {
    for (std::size_t at = 0; at + sizeof(inotify_event) <= static_cast<std::size_t>(size);) {
      inotify_event event{};
      std::memcpy(&event, buffer.data() + at, sizeof event);
      events.written |= (event.mask & (IN_MODIFY | IN_CLOSE_WRITE)) != 0;
      events.deleted |= (event.mask & IN_DELETE_SELF) != 0;
      events.renamed |= (event.mask & IN_MOVE_SELF) != 0;
      at += sizeof event + event.len;
    }
  }
  return events;
}

}  // namespace

std::optional<Subscription> watchFile(Descriptors& descriptors, const std::filesystem::path& path,
                                      std::function<void(FileEvents)> onEvent) {
  const int descriptor = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (descriptor < 0) {
    return std::nullopt;
  }
  if (inotify_add_watch(descriptor, path.c_str(), IN_MODIFY | IN_CLOSE_WRITE | IN_DELETE_SELF | IN_MOVE_SELF) < 0) {
    ::close(descriptor);
    return std::nullopt;
  }
  // Owned by the subscription alone; a function object has to be copyable.
  auto watched =
      std::make_shared<Subscription>(descriptors.watchReadable(descriptor, [descriptor, onEvent = std::move(onEvent)] {
        const auto events = readEvents(descriptor);
        if (events.written || events.deleted || events.renamed) {
          onEvent(events);
        }
      }));
  return Subscription([descriptor, watched] {
    watched->cancel();
    ::close(descriptor);
  });
}

}  // namespace tallowin
