// Unicode text, URLs and UUIDs: tables of what is equal, of how URLs come apart, and of what random bits become.

#include <gtest/gtest.h>

#include "base/unicode.h"
#include "base/url.h"
#include "base/words.h"

namespace tallowin {
namespace {

TEST(Unicode, CaseIsIgnoredAndAccentsAreNot) {
  struct Case {
    const char* a;
    const char* b;
    bool equal;
  };
  const Case cases[] = {
      {"Mail", "mAIL", true}, {"Größe", "GRÖSSE", true},    {"Größe", "Grosse", false}, {"café", "cafe\u0301", true},
      {"café", "CAFÉ", true}, {"ΣΊΣΥΦΟΣ", "σίσυφος", true}, {"I", "ı", false},          {"", "", true},
      {"\xff", "\xff", true}, {"\xff", "\xfe", false},      {"日本", "日本", true},     {"a", "a ", false},
  };
  for (const auto& [a, b, equal] : cases) {
    EXPECT_EQ(equalIgnoringCase(a, b), equal) << a << " " << b;
  }
  EXPECT_EQ(lowerCased("ÉCOLE Nº1"), "école nº1");
  EXPECT_EQ(lowerCased(std::string("A\0B", 3)), std::string("a\0b", 3));
  EXPECT_TRUE(isValidUTF8("日本\xf0\x9f\x98\x80"));
  for (const auto* bad : {"\x80", "\xc0\x80", "\xed\xa0\x80", "\xf5\x80\x80\x80", "abc\xe6\x97"}) {
    EXPECT_FALSE(isValidUTF8(bad));
  }
}

TEST(Unicode, TrimmingTakesWhiteSpaceOfAllKinds) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},          {" \t\r\n", ""}, {" a b ", "a b"},     {"\u00A0\u2003\u2028x\u0085\u3000", "x"},
      {"\xff ", "\xff"}, {"é", "é"},      {"\u200B", "\u200B"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(trimmed(text), expected) << text;
  }
}

TEST(URL, ComesApartBeforeItIsDecoded) {
  const URL expected{"Tallowin",
                     "Switch",
                     "/Deep Work////a/b/",
                     {"Deep Work", "a/b"},
                     {{"na=me", "x&y"}, {"empty", ""}, {"none", {}}}};
  EXPECT_EQ(URL::parse("Tallowin://Switch/Deep%20Work//%2F/a%2fb/?na%3Dme=x%26y&empty=&&none#fragment?a=b"), expected);
  EXPECT_EQ(URL::parse("tallowin://switch/a+b?name=c+d")->pathComponents, std::vector<std::string>{"a+b"});
  EXPECT_EQ(URL::parse("tallowin://switch/a+b?name=c+d")->queryItems.at(0).value, "c+d");
  EXPECT_EQ(URL::parse("tallowin://switch/Größe")->pathComponents, std::vector<std::string>{"Größe"});
  EXPECT_EQ(URL::parse("tallowin:switch")->host, std::nullopt);
  EXPECT_EQ(URL::parse("tallowin://user@host:99/x")->host, "host");
}

TEST(URL, AnythingElseIsNoURL) {
  for (const auto* text :
       {"", "switch", "//switch/3", "tallowin://a b", "tallowin://x/%zz", "tallowin://x/%f", "tallowin://x/%ff",
        "tallowin://x?%80=1", "tallowin://\xff", "1tallowin://x", "tallowin://x\n"}) {
    EXPECT_EQ(URL::parse(text), std::nullopt) << text;
  }
}

TEST(RandomUUID, HasItsVersionAndVariantWhateverTheBits) {
  EXPECT_EQ(randomUUID([] { return std::uint64_t{0}; }), "00000000-0000-4000-8000-000000000000");
  EXPECT_EQ(randomUUID([] { return ~std::uint64_t{0}; }), "FFFFFFFF-FFFF-4FFF-BFFF-FFFFFFFFFFFF");
  std::uint64_t next = 0x0123'4567'89AB'CDEF;
  EXPECT_EQ(randomUUID([&next] { return std::exchange(next, 0xFEDC'BA98'7654'3210); }),
            "01234567-89AB-4DEF-BEDC-BA9876543210");
}

}  // namespace
}  // namespace tallowin
