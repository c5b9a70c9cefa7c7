#include "base/url.h"

#include <memory>
#include <uriparser/Uri.h>

#include "base/unicode.h"

namespace tallowin {

namespace {

std::string_view text(const UriTextRangeA& range) {
  return range.first != nullptr ? std::string_view(range.first, static_cast<std::size_t>(range.afterLast - range.first))
                                : std::string_view();
}

int digit(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// The text with its percent-escapes replaced by the bytes they stand for. The parser has seen to it that each is
/// whole.
std::string decoded(std::string_view escaped) {
  std::string bytes;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] == '%' && i + 2 < escaped.size()) {
      bytes.push_back(static_cast<char>(digit(escaped[i + 1]) * 16 + digit(escaped[i + 2])));
      i += 2;
    } else {
      bytes.push_back(escaped[i]);
    }
  }
  return bytes;
}

/// The text with every byte beyond ASCII percent-escaped, which is how such text is written in a URL.
std::string escapedBeyondASCII(std::string_view text) {
  constexpr auto digits = "0123456789ABCDEF";
  std::string escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      escaped.push_back(c);
    } else {
      escaped += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return escaped;
}

std::vector<std::string> pathComponents(const UriPathSegmentA* segment) {
  std::vector<std::string> components;
  for (; segment != nullptr; segment = segment->next) {
    auto component = decoded(text(segment->text));
    if (!component.empty() && component != "/") {
      components.push_back(std::move(component));
    }
  }
  return components;
}

std::string wholePath(const UriUriA& uri) {
  const bool hasAuthority = uri.hostText.first != nullptr;
  std::string path = uri.absolutePath != 0 || (hasAuthority && uri.pathHead != nullptr) ? "/" : "";
  for (const auto* segment = uri.pathHead; segment != nullptr; segment = segment->next) {
    path += decoded(text(segment->text));
    path += segment->next != nullptr ? "/" : "";
  }
  return path;
}

std::vector<URLQueryItem> queryItems(std::string_view query) {
  std::vector<URLQueryItem> items;
  while (!query.empty()) {
    const auto item = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(query.size(), item.size() + 1));
    const auto equals = item.find('=');
    if (equals != std::string_view::npos) {
      items.push_back({decoded(item.substr(0, equals)), decoded(item.substr(equals + 1))});
    } else if (!item.empty()) {
      items.push_back({decoded(item), std::nullopt});
    }
  }
  return items;
}

bool isText(const URL& url) {
  bool valid = isValidUTF8(url.host.value_or(""));
  for (const auto& component : url.pathComponents) {
    valid = valid && isValidUTF8(component);
  }
  for (const auto& item : url.queryItems) {
    valid = valid && isValidUTF8(item.name) && isValidUTF8(item.value.value_or(""));
  }
  return valid;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view whole) {
  auto url = parseReference(whole);
  return url && !url->scheme.empty() && isText(*url) ? std::move(url) : std::nullopt;
}

std::optional<URL> URL::parseReference(std::string_view whole) {
  const auto escaped = escapedBeyondASCII(whole);
  UriUriA uri{};
  const char* mistake = nullptr;
  if (uriParseSingleUriExA(&uri, escaped.data(), escaped.data() + escaped.size(), &mistake) != URI_SUCCESS) {
    return std::nullopt;
  }
  const std::unique_ptr<UriUriA, decltype(&uriFreeUriMembersA)> members(&uri, uriFreeUriMembersA);
  URL url;
  url.scheme = text(uri.scheme);
  if (const auto host = text(uri.hostText); !host.empty()) {
    url.host = decoded(host);
  }
  url.path = wholePath(uri);
  url.pathComponents = tallowin::pathComponents(uri.pathHead);
  url.queryItems = tallowin::queryItems(text(uri.query));
  return url;
}

std::string percentEncoded(std::string_view text, std::string_view kept) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  constexpr std::string_view unreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  constexpr unsigned base = 16;
  std::string encoded;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (unreserved.find(character) != std::string_view::npos || kept.find(character) != std::string_view::npos) {
      encoded += character;
    } else {
      encoded.append("%").append(1, digits[byte / base]).append(1, digits[byte % base]);
    }
  }
  return encoded;
}

std::string fileURL(const std::filesystem::path& path) {
  return "file://" + percentEncoded(path.string(), "/");
}

}  // namespace tallowin
