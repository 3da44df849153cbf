#include "platform/desktop/wayland_wire.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

/// What a stream yields whose bytes arrive in pieces of that size: each event with its arguments, read as texts.
std::string contents(std::string_view bytes, std::size_t piece) {
    kestro::WaylandEventStream stream;
    std::string found;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
        stream.append(bytes.substr(0, piece));
        while (const auto event = stream.next()) {
            kestro::WaylandArguments arguments(event->arguments);
            found += std::to_string(event->object) + ' ' + std::to_string(event->opcode) + ' ';
            found += std::to_string(arguments.number()) + ' ' + std::string(arguments.text()) + '\n';
        }
    }
    return found + (stream.isMalformed() ? "malformed" : "");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (contents(bytes, 4096) != contents(bytes, 3)) {
        std::abort();
    }
    return 0;
}
