#include "base/url.h"

#include <functional>
#include <memory>
#include <uriparser/Uri.h>

#include "base/unicode.h"

namespace tallowin {

namespace {

std::string_view text(const UriTextRangeA& range) {
  return range.first != nullptr ? std::string_view(range.first, static_cast<std::size_t>(range.afterLast - range.first))
                                : std::string_view();
}

/// The text with its percent-escapes replaced by the bytes they stand for.
std::string decoded(std::string_view escaped) {
  std::string bytes(escaped);
  const char* const end = uriUnescapeInPlaceExA(bytes.data(), URI_FALSE, URI_BR_DONT_TOUCH);
  bytes.resize(static_cast<std::size_t>(end - bytes.data()));
  return bytes;
}

/// The text with every byte percent-escaped that does not stay as it is.
std::string escaped(std::string_view text, const std::function<bool(unsigned char)>& stays) {
  constexpr auto digits = "0123456789ABCDEF";
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (stays(byte)) {
      result.push_back(c);
    } else {
      result += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return result;
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
  // Text beyond ASCII is written so in a URL.
  const auto ascii = escaped(whole, [](unsigned char byte) { return byte < 0x80; });
  UriUriA uri{};
  const char* mistake = nullptr;
  if (uriParseSingleUriExA(&uri, ascii.data(), ascii.data() + ascii.size(), &mistake) != URI_SUCCESS) {
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
  return escaped(text, [kept](unsigned char byte) {
    constexpr std::string_view unreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    const char c = static_cast<char>(byte);
    return unreserved.find(c) != std::string_view::npos || kept.find(c) != std::string_view::npos;
  });
}

std::string fileURL(const std::filesystem::path& path) {
  return "file://" + percentEncoded(path.string(), "/");
}

}  // namespace tallowin
