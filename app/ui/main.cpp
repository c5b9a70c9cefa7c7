#include <QApplication>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <xcb/xcb.h>

#include "app/ui/instance_link.h"
#include "platform/channel/channel_folder.h"
#include "presentation/link/messages.h"
#include "presentation/widgets/surfaces.h"

namespace tallowin {

namespace {

constexpr int usageMistake = 64;  // EX_USAGE of sysexits(3)

constexpr auto helpText =
    "Shows the windows of the running Tallowin, which starts this program by itself.\n"
    "\n"
    "  tallowin-ui [--home DIR]        Show them; DIR as given to tallowin.\n"
    "  tallowin-ui --version           Print the version.\n"
    "  tallowin-ui --help              Print this text.\n";

/// The state of the process between the first message and the last.
class AttachedUi : Pinned {
 public:
  explicit AttachedUi(const std::string& folder)
      : instance_(folder),
        link_(folder, {"ui", "attach", TALLOWIN_VERSION},
              {.onFrame = [this](channel::FrameKind kind, std::string_view bytes) { take(kind, bytes); },
               .onEnd = [this] { QCoreApplication::exit(status_.value_or(notReached)); }}) {}

 private:
  void take(channel::FrameKind kind, std::string_view bytes) {
    if (kind == channel::FrameKind::exit) {
      status_ = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.front());
      return;
    }
    const auto arrived = kind == channel::FrameKind::out ? ui::decode(bytes) : std::unexpected(std::string(bytes));
    if (!arrived) {
      std::cerr << "tallowin-ui: " << bytes;  // a sentence for people, such as that there is another one
      return;
    }
    if (!surfaces_) {
      surfaces_.emplace(instance_);  // not for a process that is not wanted
    }
    if (arrived->message) {
      surfaces_->show(*arrived->message);
    }
    instance_.ask({"ui", "seen", std::to_string(arrived->number)}, [](const InstanceAnswer& /*answer*/) {});
  }

  SocketInstance instance_;
  std::optional<Surfaces> surfaces_;
  std::optional<int> status_;
  InstanceCall link_;
};

bool reachesDisplay() {
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  const bool reached = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return reached;
}

/// Nothing when the arguments are no such; `home` is the folder after --home.
int run(int argc, char** argv, const std::optional<std::string>& home) {
  const char* const platform = std::getenv("QT_QPA_PLATFORM");
  const bool offscreen = platform != nullptr && std::string_view(platform) == "offscreen";
  if (!offscreen && !reachesDisplay()) {
    std::cerr << "tallowin-ui: cannot reach the X server that DISPLAY names\n";
    return notReached;
  }
  if (!offscreen) {
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);  // what is asked of the X server is said by way of it
  }
  QApplication::setApplicationName("Tallowin");
  QApplication::setDesktopFileName("tallowin");
  QApplication::setQuitOnLastWindowClosed(false);
  const QApplication application(argc, argv);
  const AttachedUi ui(channelFolder(home ? home->c_str() : nullptr));
  return QApplication::exec();
}

int main(int argc, char** argv) {
  std::optional<std::string> home;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--version") {
      std::cout << "tallowin-ui " << TALLOWIN_VERSION << '\n';
      return 0;
    }
    if (argument == "--help") {
      std::cout << helpText;
      return 0;
    }
    if (argument != "--home" || i + 1 == argc) {
      std::cerr << "tallowin-ui: " << argument << "? --help tells what there is\n";
      return usageMistake;
    }
    home = argv[++i];
  }
  return run(argc, argv, home);
}

}  // namespace

}  // namespace tallowin

int main(int argc, char** argv) {
  return tallowin::main(argc, argv);
}
