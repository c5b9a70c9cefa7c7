// The numbers of windows, of which the server gives one id to many: by themselves, and with clients of a real server.

#include "platform/x11/x11_window_numbers.h"

#include "platform/x11/x11_application_changes.h"
#include "platform/x11/x11_event_pump.h"
#include "tests/platform/x11/x11_windows_fixture.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::Optional;
using testing::SizeIs;

constexpr std::uint32_t resourceMask = 0x1FFFFF;
constexpr auto firstFresh = X11WindowNumbers::firstThatIsNoID;

xcb_generic_event_t destroyed(xcb_window_t window, std::uint32_t sequence) {
  xcb_generic_event_t event{};
  auto& destroy = reinterpret_cast<xcb_destroy_notify_event_t&>(event);
  destroy.response_type = XCB_DESTROY_NOTIFY;
  destroy.window = window;
  event.full_sequence = sequence;
  return event;
}

TEST(X11WindowNumbers, AreIDsUntilAnIDMayHaveBelongedToAnother) {
  X11WindowNumbers numbers(resourceMask, [](xcb_window_t) { return 1U; });
  numbers.noteManaged({0x400005, 0x400007, 0x600001});
  EXPECT_EQ(numbers.number(0x400005), 0x400005U);
  EXPECT_EQ(numbers.window(0x400005), 0x400005U);
  EXPECT_EQ(numbers.number(0x400006), std::nullopt) << "not managed";
  EXPECT_EQ(numbers.window(0x400006), 0x400006U) << "may be known from elsewhere";
  EXPECT_THAT(numbers.missingFrom({0x400007, 0x99}), ElementsAre(0x400005, 0x600001));

  numbers.noteGone(0x400007);
  EXPECT_EQ(numbers.number(0x400007), std::nullopt);
  EXPECT_EQ(numbers.window(0x400007), std::nullopt);
  EXPECT_EQ(numbers.number(0x400005), 0x400005U) << "is still there";

  struct Case {
    xcb_window_t window;
    WindowNumber number;
  };
  const Case cases[] = {
      {0x400007, firstFresh},      // the same id
      {0x400006, firstFresh + 1},  // one that may have come and gone unseen
      {0x400008, 0x400008},        // a later one of that client
      {0x600002, 0x600002},        // another client
  };
  for (const auto& [window, number] : cases) {
    numbers.noteManaged({window});
    EXPECT_EQ(numbers.number(window), number) << window;
    EXPECT_EQ(numbers.window(number), window) << window;
  }
  EXPECT_EQ(numbers.window(0x400007), std::nullopt) << "the one that has gone";
  numbers.noteGone(0x400007);
  EXPECT_EQ(numbers.window(firstFresh), std::nullopt);
  numbers.noteManaged({0x400007});
  EXPECT_EQ(numbers.number(0x400007), firstFresh + 2);
}

TEST(X11WindowNumbers, EndWithTheWindowThatWasWatched) {
  std::uint32_t sequence = 0xFFFFFFF0;
  X11WindowNumbers numbers(resourceMask, [&](xcb_window_t) { return sequence; });
  numbers.noteManaged({0x400005});
  EXPECT_FALSE(numbers.handle(destroyed(0x400005, 0xFFFFFFEF))) << "said of an earlier window";
  EXPECT_FALSE(numbers.handle(destroyed(0x400004, 5)));
  auto unmapped = destroyed(0x400005, 5);
  unmapped.response_type = XCB_UNMAP_NOTIFY;
  EXPECT_FALSE(numbers.handle(unmapped));
  EXPECT_EQ(numbers.number(0x400005), 0x400005U);
  EXPECT_TRUE(numbers.handle(destroyed(0x400005, 5))) << "sequence numbers wrap around";
  EXPECT_EQ(numbers.number(0x400005), std::nullopt);

  sequence = 6;
  numbers.noteManaged({0x400005});
  xcb_generic_event_t failure{};
  auto& error = reinterpret_cast<xcb_generic_error_t&>(failure);
  error.error_code = 3;
  error.resource_id = 0x400005;
  error.full_sequence = 6;
  error.major_code = XCB_CREATE_WINDOW;
  numbers.handle(failure);
  EXPECT_EQ(numbers.number(0x400005), firstFresh) << "not about the watching";
  error.major_code = XCB_CHANGE_WINDOW_ATTRIBUTES;
  numbers.handle(failure);
  EXPECT_EQ(numbers.number(0x400005), std::nullopt) << "it had gone before it was watched";
}

class X11ReusedWindowsTest : public X11WindowsTest {
 protected:
  void startListening() {
    start();
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_->raw(), connection_->root(), XCB_CW_EVENT_MASK, &mask);
    changes_.emplace(*connection_, windows_->reader, windows_->applications, loop_, center_);
    pump_.emplace(
        *connection_, loop_, loop_, [this](const xcb_generic_event_t& event) { changes_->handle(event); }, [] {});
  }

  /// The only window's number in the list, nothing while there is none.
  std::optional<WindowNumber> listed() {
    const auto list = *list_->CGWindowListCopyWindowInfo(0, 0);
    return list.empty() ? std::nullopt : std::optional(list.at(0)["kCGWindowNumber"].get<WindowNumber>());
  }

  BroadcastNotificationCenter center_;
  std::optional<X11ApplicationChanges> changes_;
  std::optional<X11EventPump> pump_;
};

TEST_F(X11ReusedWindowsTest, TheNextClientsWindowIsAnotherOneThoughItHasTheSameID) {
  startListening();
  std::optional<TestClient> client(std::in_place);
  const auto window = open(*client, "First");
  EXPECT_EQ(listed(), window);
  const auto first = element(window);
  EXPECT_EQ(accessibility_->AXUIElementCopyAttributeValue(first, "AXTitle"), AXValue(""));

  // Nothing here looks at the list while the one goes and the other comes.
  client.reset();
  ASSERT_TRUE(eventually([&] {
    return connection_->reply(xcb_get_geometry_reply, xcb_get_geometry(connection_->raw(), window)) == nullptr;
  }));
  client.emplace();
  ASSERT_EQ(client->open("Second", "second"), window) << "the server gives the ids of a client that ended to the next";
  ASSERT_TRUE(loop_.runUntil([&] { return listed().value_or(window) != window; }));
  const auto number = *listed();
  EXPECT_GE(number, X11WindowNumbers::firstThatIsNoID);

  const auto info = [&](WindowNumber of) {
    return list_->CGWindowListCopyWindowInfo(CGWindowListOption::includingWindow, of)->size();
  };
  EXPECT_EQ(info(window), 0U) << "that one has gone";
  EXPECT_EQ(info(number), 1U);
  EXPECT_FALSE(accessibility_->AXUIElementSetAttributeValue(first, "AXMinimized", true));
  const auto application = accessibility_->AXUIElementCreateApplication(getpid());
  const auto elements =
      std::get<std::vector<AXUIElement>>(accessibility_->AXUIElementCopyAttributeValue(application, "AXWindows"));
  ASSERT_THAT(elements, SizeIs(1));
  EXPECT_EQ(dynamic_cast<const X11WindowElement&>(*elements[0]).number(), number);
  EXPECT_TRUE(accessibility_->AXUIElementSetAttributeValue(elements[0], "AXMinimized", true));
  EXPECT_TRUE(read(window).hidden);
}

TEST_F(X11ReusedWindowsTest, OnlyAWindowThatTheWindowManagerLetsGoComesBackAsANewOne) {
  startListening();
  TestClient client;
  const auto window = open(client, "Tray");
  EXPECT_EQ(listed(), window);
  const auto root = connection_->root();
  xcb_delete_property(client.raw(), root, connection_->atom(X11Atom::netClientList));  // as a window manager that ends
  xcb_flush(client.raw());
  ASSERT_TRUE(eventually([&] { return !listed(); }));
  client.setWord(root, X11Atom::netClientList, XCB_ATOM_WINDOW, window);  // and its successor
  ASSERT_TRUE(eventually([&] { return listed().has_value(); }));
  EXPECT_EQ(listed(), window);

  xcb_unmap_window(client.raw(), window);
  xcb_flush(client.raw());
  ASSERT_TRUE(eventually([&] { return !listed(); }));
  xcb_map_window(client.raw(), window);
  xcb_flush(client.raw());
  ASSERT_TRUE(eventually([&] { return listed().has_value(); }));
  EXPECT_THAT(listed(), Optional(X11WindowNumbers::firstThatIsNoID));
}

}  // namespace
}  // namespace tallowin
