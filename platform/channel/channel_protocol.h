#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What goes over the command channel, as functions of bytes. Included by the small program that every command starts,
/// so it uses little of the standard library.
///
/// The caller sends one request: its length (32 bits, little-endian), then texts that each end in a zero byte: the
/// protocol's name, the working directory, the arguments. The answer is a sequence of frames, each a kind (one byte), a
/// length (32 bits, little-endian) and so many bytes; an `exit` frame ends it, and says who has answered.
namespace tallowin::channel {

/// Changes with every change that an older caller or listener would not understand.
inline constexpr std::string_view protocolName = "tallowin/1";

/// No request may be longer than this.
inline constexpr std::size_t maximumRequest = std::size_t{1} << 20;
inline constexpr std::size_t lengthSize = 4;
inline constexpr std::size_t frameHeaderSize = 1 + lengthSize;

/// What a frame's bytes are.
enum class FrameKind : char {
  out = 'o',   ///< text for standard output
  err = 'e',   ///< text for standard error
  exit = 'x',  ///< one byte, the exit status; behind it, as of version 0.2.0, an Answerer
};

/// The program that answers.
struct Answerer {
  std::string version;  ///< such as "0.1.0"; empty from one that is older than this member
  std::string display;  ///< the value of DISPLAY, as in X(7), of the X server that it works on; empty without one
};

inline void appendLength(std::string& bytes, std::size_t length) {
  constexpr unsigned byteBits = 8;
  for (std::size_t i = 0; i < lengthSize; ++i) {
    bytes.push_back(static_cast<char>(length >> (byteBits * i) & 0xFF));
  }
}

/// The length that four bytes stand for.
inline std::size_t readLength(std::string_view bytes) {
  constexpr unsigned byteBits = 8;
  std::size_t length = 0;
  for (std::size_t i = 0; i < lengthSize; ++i) {
    length |= static_cast<std::size_t>(static_cast<unsigned char>(bytes[i])) << (byteBits * i);
  }
  return length;
}

/// A whole request as it is sent. An argument ends at its first zero byte, if it has one.
inline std::string encodeRequest(std::string_view workingDirectory, const std::vector<std::string>& arguments) {
  std::string texts;
  const auto append = [&texts](std::string_view text) {
    texts.append(text.substr(0, text.find('\0')));
    texts.push_back('\0');
  };
  append(protocolName);
  append(workingDirectory);
  for (const auto& argument : arguments) {
    append(argument);
  }
  std::string bytes;
  appendLength(bytes, texts.size());
  return bytes + texts;
}

/// One frame as it is sent.
inline std::string encodeFrame(FrameKind kind, std::string_view payload) {
  std::string bytes(1, static_cast<char>(kind));
  appendLength(bytes, payload.size());
  return bytes.append(payload);
}

/// The frame that ends an answer.
inline std::string encodeExit(int status, const Answerer& answerer) {
  return encodeFrame(FrameKind::exit,
                     std::string(1, static_cast<char>(status)) + answerer.version + '\0' + answerer.display);
}

/// Who sent an exit frame with these bytes.
inline Answerer readAnswerer(std::string_view payload) {
  payload.remove_prefix(payload.empty() ? 0 : 1);
  const auto end = payload.find('\0');
  return {std::string(payload.substr(0, end)),
          end == std::string_view::npos ? std::string() : std::string(payload.substr(end + 1))};
}

/// The frame at the beginning of what has arrived: its kind and its bytes. Nothing while it is not complete.
inline std::optional<std::pair<FrameKind, std::string_view>> firstFrame(std::string_view arrived) {
  if (arrived.size() < frameHeaderSize) {
    return std::nullopt;
  }
  const auto length = readLength(arrived.substr(1));
  if (arrived.size() - frameHeaderSize < length) {
    return std::nullopt;
  }
  return std::pair(static_cast<FrameKind>(arrived[0]), arrived.substr(frameHeaderSize, length));
}

}  // namespace tallowin::channel
