// The command channel over real sockets: whole and broken requests, callers that leave or stall, one instance at a
// time.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

#include "platform/channel/channel_client.h"
#include "platform/channel/channel_folder.h"
#include "platform/channel/channel_peer.h"
#include "platform/channel/socket_command_channel.h"
#include "tests/lines_log.h"
#include "tests/platform/test_loop.h"

namespace tallowin {
namespace {

/// What the other end of a connection sees.
class RawClient {
 public:
  explicit RawClient(const std::string& path) : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const auto address = unixAddress(path);
    connected = ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  ~RawClient() { ::close(socket_); }
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  void send(std::string_view bytes) const {
    EXPECT_EQ(::send(socket_, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
  }

  /// Takes what has arrived; false once the other end has closed.
  bool read() {
    char bytes[65536];
    const auto count = ::recv(socket_, bytes, sizeof bytes, MSG_DONTWAIT);
    if (count > 0) {
      arrived.append(bytes, static_cast<std::size_t>(count));
    }
    return count > 0 || (count < 0 && errno == EAGAIN);
  }

  /// The frames so far: a kind's letter and the text each, without what is said of who answers.
  [[nodiscard]] std::vector<std::string> frames() const {
    std::vector<std::string> list;
    std::string_view rest = arrived;
    while (const auto frame = channel::firstFrame(rest)) {
      const bool isExit = frame->first == channel::FrameKind::exit;
      list.push_back(static_cast<char>(frame->first) +
                     std::string(frame->second.substr(0, isExit ? 1 : frame->second.npos)));
      rest.remove_prefix(channel::frameHeaderSize + frame->second.size());
    }
    return list;
  }

  bool connected = false;
  std::string arrived;

 private:
  const int socket_;
};

class ChannelTest : public testing::Test {
 protected:
  ChannelTest() {
    std::string pattern = testing::TempDir() + "/tallowin-XXXXXX";
    folder = ::mkdtemp(pattern.data());
    folder +=
        "/a folder with a name that is much longer than the address of a socket may be, which is a hundred and "
        "eight bytes on Linux";
  }

  /// An instance that answers what a test wants.
  std::unique_ptr<SocketCommandChannel> listen(CommandChannel::Handler handler) {
    auto channel =
        SocketCommandChannel::open({loop, loop, log, {"0.3.10", ":7"}}, std::make_unique<InstanceLock>(folder));
    EXPECT_TRUE(channel.has_value());
    if (handler) {
      (*channel)->setHandler(std::move(handler));
    }
    return *std::move(channel);
  }

  /// Hands over on a thread of its own, as another process would, while the loop runs.
  HandOver ask(const std::vector<std::string>& arguments) {
    std::optional<HandOver> result;
    std::atomic<bool> done = false;
    std::thread client([&] {
      result = handOver(folder, arguments);
      done = true;
    });
    EXPECT_TRUE(loop.runUntil([&] { return done.load(); }));
    client.join();
    return *result;
  }

  /// A short name of the socket, good as long as the test runs.
  [[nodiscard]] std::string socketPath() {
    if (!opened) {
      opened.emplace(folder, true);
    }
    return opened->shortPath(channelSocketName);
  }

  std::string folder;
  std::optional<PrivateFolder> opened;
  TestLoop loop;
  LinesLog log;
};

TEST(RequestReader, TakesWholeRequestsAndRefusesBrokenOnes) {
  const auto whole = channel::encodeRequest("/home/me", {"switch", "", "Mäil \n"});
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const auto read = readRequest(std::string_view(whole).substr(0, length));
    ASSERT_TRUE(read && !*read) << "after " << length << " bytes";
  }
  EXPECT_EQ(**readRequest(whole), (Request{{"switch", "", "Mäil \n"}, "/home/me"}));
  EXPECT_EQ(**readRequest(whole + "more"), **readRequest(whole)) << "what follows is ignored";

  const auto framed = [](const std::string& texts) {
    std::string bytes;
    channel::appendLength(bytes, texts.size());
    return bytes + texts;
  };
  using namespace std::string_literals;
  EXPECT_EQ(readRequest("\xFF\xFF\xFF\xFF").error(), "the request is too long");
  EXPECT_NE(readRequest(framed("")).error().find("another version"), std::string::npos);
  EXPECT_NE(readRequest(framed("tallowin/99\0/\0"s)).error().find("another version"), std::string::npos);
  EXPECT_EQ(readRequest(framed("tallowin/1\0"s)).error(), "the request is not complete");
  EXPECT_EQ(readRequest(framed("tallowin/1\0/\0list"s)).error(), "the request is not complete");
}

TEST_F(ChannelTest, RequestsWaitForAHandler) {
  const auto instance = listen(nullptr);
  RawClient early(socketPath());
  early.send(channel::encodeRequest("/", {"current"}));
  loop.runReady();
  instance->setHandler([](const Request& request, std::unique_ptr<Caller> caller) {
    caller->out(request.arguments.front());
    caller->err("careful");
    caller->exit(3);
    EXPECT_FALSE(caller->out("too late"));
  });
  ASSERT_TRUE(loop.runUntil([&] { return !early.read(); })) << "the connection closes after the answer";
  EXPECT_EQ(early.frames(), (std::vector<std::string>{"ocurrent", "ecareful", "x\3"}));
}

TEST_F(ChannelTest, ACallerThatIsForgottenIsToldThatNobodyAnswered) {
  EXPECT_EQ(ask({"list"}).outcome, HandOver::Outcome::notRunning) << "there is not even a folder";
  const auto instance = listen([](const Request&, std::unique_ptr<Caller>) {});
  EXPECT_EQ(ask({"list"}).outcome, HandOver::Outcome::notRunning);
}

TEST_F(ChannelTest, NonsenseIsRefusedAndHarmsNobodyElse) {
  int handled = 0;
  const auto instance = listen([&](const Request&, std::unique_ptr<Caller> caller) {
    ++handled;
    caller->exit(0);
  });
  RawClient nonsense(socketPath());
  nonsense.send("GET / HTTP/1.1\r\n\r\n");
  ASSERT_TRUE(loop.runUntil([&] { return !nonsense.read(); }));
  EXPECT_EQ(nonsense.frames().front(), "etallowin: the request is too long\n");
  {
    const RawClient leaver(socketPath());
    leaver.send("\x10");
  }
  const auto answer = ask({"list"});
  EXPECT_EQ(answer.outcome, HandOver::Outcome::answered);
  EXPECT_EQ(answer.answerer.version + answer.answerer.display, "0.3.10:7");
  EXPECT_EQ(handled, 1);
}

TEST_F(ChannelTest, AStalledReaderIsDroppedWithANoticeAndSlowsNobody) {
  std::unique_ptr<Caller> watching;
  const auto instance = listen([&](const Request&, std::unique_ptr<Caller> caller) { watching = std::move(caller); });
  RawClient stalled(socketPath());
  stalled.send(channel::encodeRequest("/", {"watch"}));
  ASSERT_TRUE(loop.runUntil([&] { return watching != nullptr; }));
  const std::string line(10000, 'a');
  int lines = 0;
  while (watching->out(line)) {
    ASSERT_LT(++lines, 1000) << "nobody reads this";
  }
  EXPECT_FALSE(watching->out(line));
  ASSERT_TRUE(loop.runUntil([&] { return !stalled.read(); }));
  const auto frames = stalled.frames();
  ASSERT_GT(frames.size(), 2U);
  EXPECT_EQ(frames[frames.size() - 2], "etallowin: dropped, as nobody read for too long\n");
  EXPECT_EQ(frames.back(), "x\x45");
  EXPECT_EQ(frames.front(), "o" + line) << "what was read before is whole";
}

TEST_F(ChannelTest, ALongFrameIsNoStall) {
  const auto instance = listen([](const Request&, std::unique_ptr<Caller> caller) {
    EXPECT_TRUE(caller->out(std::string(2 * ChannelPeer::maximumWaiting, 'a')));
    EXPECT_TRUE(caller->out("b"));
    caller->exit(0);
  });
  RawClient client(socketPath());
  client.send(channel::encodeRequest("/", {"menu"}));
  ASSERT_TRUE(loop.runUntil([&] { return !client.read(); }));
  EXPECT_EQ(client.frames().at(1), "ob");
}

TEST_F(ChannelTest, MoreThanSoManyAtOnceAreTurnedAway) {
  std::vector<std::unique_ptr<Caller>> watching;
  const auto instance =
      listen([&](const Request&, std::unique_ptr<Caller> caller) { watching.push_back(std::move(caller)); });
  std::vector<std::unique_ptr<RawClient>> clients;
  for (std::size_t i = 0; i <= SocketCommandChannel::maximumPeers; ++i) {
    clients.push_back(std::make_unique<RawClient>(socketPath()));
    clients.back()->send(channel::encodeRequest("/", {"watch"}));
  }
  ASSERT_TRUE(loop.runUntil([&] { return !clients.back()->read(); }));
  EXPECT_EQ(clients.back()->frames().front(), "etallowin: too many programs ask at once\n");
  ASSERT_TRUE(loop.runUntil([&] { return watching.size() == SocketCommandChannel::maximumPeers; }));
  clients.front().reset();
  EXPECT_TRUE(loop.runUntil([&] {
    RawClient next(socketPath());
    next.send(channel::encodeRequest("/", {"watch"}));
    loop.runReady();
    return watching.size() > SocketCommandChannel::maximumPeers;
  })) << "one that left makes room";
}

TEST_F(ChannelTest, WhoHasConnectedAndNotAskedGivesWay) {
  const auto instance = listen([](const Request&, std::unique_ptr<Caller> caller) { caller->exit(0); });
  std::vector<std::unique_ptr<RawClient>> idle;
  for (std::size_t i = 0; i < SocketCommandChannel::maximumPeers; ++i) {
    idle.push_back(std::make_unique<RawClient>(socketPath()));
  }
  EXPECT_EQ(ask({"list"}).outcome, HandOver::Outcome::answered);
  EXPECT_FALSE(idle.front()->read()) << "the one that has waited longest";
  EXPECT_TRUE(idle.back()->read());
}

TEST(HandOver, TellsOfWhoAnsweredWhatAUserShouldKnow) {
  const auto* const older = "tallowin: the running Tallowin is older than this one; restart it\n";
  const auto* const elsewhere = "tallowin: the running Tallowin works on display :7.0, not on :8\n";
  const struct {
    channel::Answerer answerer;
    const char* display;
    std::string expected;
  } cases[] = {
      {{"", ""}, nullptr, older},         {{"0.9.10", ""}, ":8", older},
      {{"0.10", ""}, ":8", ""},           {{"0.10.0", ":7"}, ":7.1", ""},
      {{"1.0", ":7.0"}, ":8", elsewhere}, {{"1.0", ":7"}, "", ""},
      {{"1.0", "a.b:1"}, "a.b:1.0", ""},  {{"0.9", ":7.0"}, ":8", std::string(older) + elsewhere},
  };
  for (const auto& [answerer, display, expected] : cases) {
    EXPECT_EQ(remarksOn(answerer, "0.10.0", display), expected) << answerer.version << " " << answerer.display;
  }
  EXPECT_EQ(channel::readAnswerer(std::string_view("\0", 1)).version, "") << "as the first version sent it";
}

TEST_F(ChannelTest, TheEndOfTheInstanceLetsTheNextOneStartBeforeItIsTold) {
  bool asked = false;
  auto instance = listen([&](const Request&, std::unique_ptr<Caller> caller) {
    caller->exitAtEnd(0);
    asked = true;
  });
  RawClient client(socketPath());
  client.send(channel::encodeRequest("/", {"quit"}));
  ASSERT_TRUE(loop.runUntil([&] { return asked; }));
  EXPECT_EQ(InstanceLock(folder).state(), InstanceLock::State::taken);
  instance.reset();
  while (client.read()) {
  }
  EXPECT_EQ(client.frames(), (std::vector<std::string>{std::string("x\0", 2)}));
  EXPECT_EQ(InstanceLock(folder).state(), InstanceLock::State::held);
  EXPECT_EQ(ask({}).outcome, HandOver::Outcome::notRunning);
}

TEST_F(ChannelTest, WithoutDescriptorsItTriesAgainSoon) {
  const auto instance = listen([](const Request&, std::unique_ptr<Caller> caller) { caller->exit(0); });
  // The undefined-behaviour sanitizer takes a descriptor where it meets a class for the first time, as what it is or as
  // one that it is made of.
  const auto nothing = static_cast<MainQueue&>(loop).after(std::chrono::seconds(1), [] {});
  static_cast<Log&>(log).error("", "");
  log.lines.clear();
  loop.runReady();
  RawClient client(socketPath());
  client.send(channel::encodeRequest("/", {"list"}));
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none{0, before.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &none);
  loop.runReady();
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(log.lines, (std::vector<std::string>{"cannot accept a connection: Too many open files"})) << "said once";
  ASSERT_TRUE(loop.runUntil([&] { return !client.read(); }));
  EXPECT_EQ(client.frames(), (std::vector<std::string>{std::string("x\0", 2)}));
}

TEST(InstanceLock, SaysWhyItCannotBeHad) {
  const std::pair<const char*, const char*> cases[] = {
      {"/dev/null/folder", "cannot open the folder /dev/null/folder: "},
      {"/proc/self/task", "the folder /proc/self/task is open to others"}};
  for (const auto& [folder, why] : cases) {
    const InstanceLock lock(folder);
    EXPECT_EQ(lock.state(), InstanceLock::State::failed);
    EXPECT_EQ(lock.error().find(why), 0U) << lock.error();
  }
}

TEST_F(ChannelTest, AFolderThatOthersCanUseIsNotTrusted) {
  const auto instance = listen([](const Request&, std::unique_ptr<Caller> caller) { caller->exit(0); });
  ::chmod(folder.c_str(), 0777);
  const auto answer = ask({});
  EXPECT_EQ(answer.outcome, HandOver::Outcome::unreachable);
  EXPECT_NE(answer.why.find("is open to others"), std::string::npos);
  const PrivateFolder mended(folder, true);
  struct stat status{};
  ::fstat(mended.descriptor(), &status);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

}  // namespace
}  // namespace tallowin
