#include "platform/desktop/wayland_wire.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace kestro {

namespace {

constexpr std::size_t wordSize = sizeof(std::uint32_t);
constexpr std::size_t headerSize = 2 * wordSize;

/// The size and the number of a message share a word.
constexpr int sizeShift = 16;
constexpr std::uint32_t opcodeMask = 0xffff;

void appendWord(std::string& bytes, std::uint32_t word) {
    bytes.append(reinterpret_cast<const char*>(&word), wordSize);
}

/// `bytes` has at least one word.
std::uint32_t firstWord(std::string_view bytes) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.data(), wordSize);
    return word;
}

std::size_t wholeWords(std::size_t size) {
    return (size + wordSize - 1) / wordSize * wordSize;
}

}  // namespace

WaylandRequest::WaylandRequest(std::uint32_t object, std::uint16_t opcode) : object_(object), opcode_(opcode) {}

WaylandRequest& WaylandRequest::number(std::uint32_t value) {
    appendWord(arguments_, value);
    return *this;
}

WaylandRequest& WaylandRequest::text(std::string_view value) {
    const std::size_t size = value.size() + 1;  // with the null character
    appendWord(arguments_, static_cast<std::uint32_t>(size));
    arguments_ += value;
    arguments_.append(wholeWords(size) - value.size(), '\0');
    return *this;
}

std::string WaylandRequest::bytes() const {
    std::string bytes;
    appendWord(bytes, object_);
    appendWord(bytes, static_cast<std::uint32_t>(headerSize + arguments_.size()) << sizeShift | opcode_);
    return bytes + arguments_;
}

std::uint32_t WaylandArguments::number() {
    if (rest_.size() < wordSize) {
        rest_ = {};
        return 0;
    }
    const std::uint32_t value = firstWord(rest_);
    rest_.remove_prefix(wordSize);
    return value;
}

std::string_view WaylandArguments::text() {
    const std::size_t size = number();
    if (size == 0 || size > rest_.size()) {
        rest_ = {};
        return {};
    }
    const auto value = rest_.substr(0, size - 1);
    rest_.remove_prefix(std::min(wholeWords(size), rest_.size()));
    return value;
}

std::optional<WaylandEvent> WaylandEventStream::next() {
    if (isMalformed_ || bytes_.size() < headerSize) {
        return std::nullopt;
    }
    const std::uint32_t second = firstWord(std::string_view(bytes_).substr(wordSize));
    const std::size_t size = second >> sizeShift;
    isMalformed_ = size < headerSize || size % wordSize != 0;
    if (isMalformed_ || bytes_.size() < size) {
        return std::nullopt;
    }
    WaylandEvent event{firstWord(bytes_), static_cast<std::uint16_t>(second & opcodeMask),
                       bytes_.substr(headerSize, size - headerSize)};
    bytes_.erase(0, size);
    return event;
}

}  // namespace kestro
