// The HTTP interface as a function of bytes, and the token.

#include "commands/http/local_api.h"

#include <gtest/gtest.h>

#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

constexpr auto tokenFile = "/home/user/.local/share/Tallowin/api-token.txt";
constexpr auto stateFile = "/home/user/.local/share/Tallowin/state.json";

class LocalAPITest : public testing::Test {
 protected:
  LocalAPITest() {
    files().replace(tokenFile, " s3cret\r\n");
    api->onCommand = [this](const SpaceCommand& command) { told.emplace_back(nameOf(command)); };
    api->onDoubledKey = [this](const DoubledQueryKey& mistake) { told.push_back(mistake.key); };
  }

  SimulatedFiles& files() { return program.desktop.parts().files; }

  /// The answer's status and body, and what the callbacks were told, such as "200 {"ok":true} step".
  std::string outcome(const std::string& request) {
    told.clear();
    const auto answer = api->respond(request);
    EXPECT_TRUE(told.empty()) << "on the main thread, later";
    program.time.advance(0s);
    auto seen = answer.empty() ? "none" : answer.substr(9, 3) + " " + answer.substr(answer.find("\r\n\r\n") + 4);
    for (const auto& what : told) {
      seen += " " + what;
    }
    return seen;
  }

  SimulatedProgram program{"{}"};
  AppPaths paths{program.desktop.files(), program.desktop.folders()};
  std::optional<LocalAPI> api{std::in_place, program.platform, paths, program.settings};
  std::vector<std::string> told;
};

constexpr auto ok = R"(200 {"ok":true})";
constexpr auto badRequest = R"(400 {"error":"bad request"})";
constexpr auto unknown = R"(400 {"error":"unknown command"})";
constexpr auto refused = R"(401 {"error":"missing or wrong token"})";
constexpr auto forbidden = R"(403 {"error":"forbidden host"})";
constexpr auto notFound = R"(404 {"error":"not found"})";

/// A request as long as the longest that is read.
std::string filled(const std::string& begin, const std::string& end) {
  return begin + std::string(largestTCPRequest - begin.size() - end.size(), 'x') + end;
}

TEST_F(LocalAPITest, EveryRequestHasItsAnswer) {
  files().replace(stateFile, "[]");
  const auto post = [](const std::string& rest) { return "POST /command" + rest; };
  const std::string authorised = " HTTP/1.1\r\nAuthorization: Bearer s3cret\r\n\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {"GET /spaces", "200 []"},
      {"GET /spaces?a=1&a=2#x HTTP/1.1\r\n\r\n", "200 []"},
      {"GET http://127.0.0.1:57301/%73paces", "200 []"},
      {"get /spaces", notFound},
      {"GET //spaces", notFound},
      {"GET /spaces%00", notFound},
      {"GET /%zz", notFound},
      {"GET /command?url=tallowin://next" + authorised, notFound},
      {"GET", badRequest},
      {"", badRequest},
      {"GET /spaces HTTP/1.1\r\nX: \xff\r\n\r\n", badRequest},

      {post("?url=tallowin://next" + authorised), std::string(ok) + " step"},
      {post("?url=tallowin://next HTTP/1.1\r\nauthorization:Bearer s3cret"), std::string(ok) + " step"},
      {post("?url=tallowin://next HTTP/1.1\r\nAUTHORIZATION: \t Bearer s3cret \r\n\r\n"), std::string(ok) + " step"},
      {post("?url=tallowin%3A%2F%2Frename%2F2%3Fname%3Da%2526b%26space%3D3" + authorised), std::string(ok) + " rename"},
      {post("?x=1&x=2&url=tallowin://switch/Nowhere" + authorised), std::string(ok) + " switchTo"},
      {post("?url=tallowin://frobnicate" + authorised), unknown},
      {post("?url=other://next?a=1%26a=2" + authorised), unknown},
      {post("?url=%ff" + authorised), unknown},
      {post("?url=tallowin://next&url=tallowin://next" + authorised), unknown},
      {post("?url=tallowin://next%3Fa=1%26b=2%26a=3" + authorised), "none a"},

      {post("?url=tallowin://frobnicate HTTP/1.1\r\n\r\n"), refused},
      {post("?url=tallowin://next%3Fa=1%26a=3 HTTP/1.1\r\n\r\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\r\nAuthorization: bearer s3cret\r\n\r\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\r\nAuthorization: Bearer  s3cret\r\n\r\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\r\nAuthorization: Bearer s3cre\r\n\r\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\r\nAuthorization: Bearer s3crets\r\n\r\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\r\nAuthorization:\r\n\r\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\r\nAuthorization : Bearer s3cret\r\n\r\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\r\n\r\nAuthorization: Bearer s3cret\r\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\nAuthorization: Bearer s3cret\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\r\nAuthorization: Bearer s3cret\r\nAuthorization: x\r\n"), refused},
      {post("?url=tallowin://next HTTP/1.1\r\nAuthorization: x\r\nnonsense\r\nAuthorization: Bearer s3cret\r\n"),
       std::string(ok) + " step"},

      // Only what would be granted is judged by the host that it names.
      {"GET /spaces HTTP/1.1\r\nHost: LocalHost:57301\r\nhost: [::1]\r\nHOST:127.0.0.1:\r\n\r\n", "200 []"},
      {"GET /spaces HTTP/1.1\r\nHost: localhost\r\nHost: evil.example\r\n\r\n", forbidden},
      {"GET /spaces HTTP/1.1\r\nHost: localhost.evil.example\r\n\r\n", forbidden},
      {"GET /spaces HTTP/1.1\r\nHost: localhost:80x\r\n\r\n", forbidden},
      {"GET /spaces HTTP/1.1\r\nHost: ::1\r\n\r\n", forbidden},
      {"GET /spaces HTTP/1.1\r\nHost:\r\n\r\n", forbidden},
      {"GET /windows HTTP/1.1\r\nHost: evil.example\r\n\r\n", notFound},
      {post("?url=tallowin://next HTTP/1.1\r\nHost: evil\r\nAuthorization: Bearer s3cret\r\n\r\n"), forbidden},
      {post("?url=tallowin://next HTTP/1.1\r\nHost: evil\r\nAuthorization: Bearer x\r\n\r\n"), refused},
      {post("?url=tallowin://dance HTTP/1.1\r\nHost: evil\r\nAuthorization: Bearer s3cret\r\n\r\n"), unknown},

      {filled("GET /spaces HTTP/1.1\r\nX: ", "\xf0\x9f\x98"), "200 []"},  // cut where reading ends, in a character
      {filled("GET /spaces HTTP/1.1\r\nX: ", "\xc3\xa4"), "200 []"},
      {filled("GET /spaces HTTP/1.1\r\nX: ", "\xff"), badRequest},
      {"GET /spaces HTTP/1.1\r\nX: \xf0\x9f\x98", badRequest},
  };
  for (const auto& [request, expected] : cases) {
    EXPECT_EQ(outcome(request), expected) << request;
  }
}

TEST_F(LocalAPITest, ATokenIsMadeWhereThereIsNone) {
  EXPECT_EQ(api->token(), "s3cret");
  files().replace(tokenFile, "any other text");
  EXPECT_EQ(api->token(), "any other text");
  EXPECT_EQ(api->token(), "any other text");
  EXPECT_EQ(program.take("restrictMode").size(), 1U) << "others may not read it any more";
  for (const auto* useless : {"", " \n", "\xff\xfe"}) {
    files().replace(tokenFile, useless);
    const auto made = api->token();
    ASSERT_TRUE(made);
    EXPECT_EQ(made->size(), 32U);
    EXPECT_EQ(made->find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_EQ(made->at(12), '4') << "a random UUID";
    EXPECT_EQ(files().read(tokenFile), *made);
    EXPECT_EQ(api->token(), made) << "it stays";
  }
}

TEST_F(LocalAPITest, NobodyIsLetInWithoutAToken) {
  files().take(tokenFile);
  files().setRoom(0);
  for (const auto* value : {"Bearer ", "Bearer", ""}) {
    EXPECT_EQ(
        outcome("POST /command?url=tallowin://next HTTP/1.1\r\nAuthorization: " + std::string(value) + "\r\n\r\n"),
        refused);
  }
  EXPECT_EQ(program.takeLog(), std::vector<std::string>{"could not write api-token.txt, so no command is let in"});
}

}  // namespace
}  // namespace tallowin
