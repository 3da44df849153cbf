#include "platform/linux/linux_smc_service.h"

#include <bit>
#include <cstddef>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr std::uint32_t handle = 1;

// Offsets and commands of the user client's parameter record.
constexpr std::size_t keyOffset = 0;
constexpr std::size_t sizeOffset = 28;
constexpr std::size_t typeOffset = 32;
constexpr std::size_t commandOffset = 42;
constexpr std::size_t bytesOffset = 48;
constexpr std::uint8_t readBytes = 5;
constexpr std::uint8_t readInformation = 9;

constexpr std::uint32_t packed(std::string_view text) {
    std::uint32_t code = 0;
    for (const char character : text) {
        code = code << 8 | static_cast<unsigned char>(character);
    }
    return code;
}

constexpr auto fanCountKey = packed("FNum");
constexpr auto actual = static_cast<std::uint16_t>(packed("Ac"));
constexpr auto minimum = static_cast<std::uint16_t>(packed("Mn"));
constexpr auto maximum = static_cast<std::uint16_t>(packed("Mx"));
constexpr auto target = static_cast<std::uint16_t>(packed("Tg"));

std::uint32_t load(const SMCRecord& record, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t index = 4; index-- > 0;) {
        value = value << 8 | record[offset + index];
    }
    return value;
}

void store(SMCRecord& record, std::size_t offset, std::uint32_t value) {
    for (std::size_t index = 0; index < 4; ++index) {
        record[offset + index] = static_cast<std::uint8_t>(value >> (8 * index));
    }
}

bool isDigit(std::uint32_t character) {
    return character >= '0' && character <= '9';
}

}  // namespace

LinuxSMCService::LinuxSMCService(const Clock& clock, std::string root) : clock_(clock), fans_(std::move(root)) {}

std::optional<std::uint32_t> LinuxSMCService::open() {
    fans_.refresh(clock_.monotonicNow());
    isOpen_ = fans_.count() > 0;
    return isOpen_ ? std::optional(handle) : std::nullopt;
}

void LinuxSMCService::close(std::uint32_t connection) {
    isOpen_ = isOpen_ && connection != handle;
}

std::optional<LinuxSMCService::FanKey> LinuxSMCService::fanKey(std::uint32_t key) const {
    const std::uint32_t first = key >> 24;
    const std::uint32_t second = key >> 16 & 0xFF;
    std::size_t fan = fans_.count();
    if (first == 'F' && isDigit(second)) {
        fan = second - '0';
    } else if (isDigit(first) && isDigit(second) && first != '0') {
        // A key holds four characters: with two digits, the leading letter has been shifted out.
        fan = (first - '0') * 10 + (second - '0');
    }
    const FanKey result{fan, static_cast<std::uint16_t>(key)};
    return fan < fans_.count() && hasFigure(result) ? std::optional(result) : std::nullopt;
}

bool LinuxSMCService::hasFigure(const FanKey& key) const {
    switch (key.figure) {
        case actual:
            return true;
        case minimum:
            return fans_.minimum(key.fan).has_value();
        case maximum:
            return fans_.maximum(key.fan).has_value();
        case target:
            return fans_.hasTarget(key.fan);
        default:
            return false;
    }
}

std::optional<double> LinuxSMCService::readFigure(const FanKey& key) {
    switch (key.figure) {
        case actual:
            return fans_.speed(key.fan);
        case minimum:
            return fans_.minimum(key.fan);
        case maximum:
            return fans_.maximum(key.fan);
        default:
            return fans_.target(key.fan);
    }
}

bool LinuxSMCService::callStructMethod(std::uint32_t connection, const SMCRecord& input, SMCRecord& output) {
    if (!isOpen_ || connection != handle) {
        return false;
    }
    output.fill(0);
    const auto key = load(input, keyOffset);
    const auto command = input[commandOffset];
    const bool isCount = key == fanCountKey;
    if (isCount && command == readInformation) {
        fans_.refresh(clock_.monotonicNow());
    }
    const auto fan = isCount ? std::nullopt : fanKey(key);
    if (!isCount && !fan) {
        return false;
    }
    const std::uint32_t size = isCount ? 1 : 4;
    store(output, keyOffset, key);
    if (command == readInformation) {
        store(output, sizeOffset, size);
        store(output, typeOffset, packed(isCount ? "ui8 " : "flt "));
        return true;
    }
    if (command != readBytes || load(input, sizeOffset) != size) {
        return false;
    }
    if (isCount) {
        output[bytesOffset] = static_cast<std::uint8_t>(fans_.count());
        return true;
    }
    const auto figure = readFigure(*fan);
    if (figure) {
        store(output, bytesOffset, std::bit_cast<std::uint32_t>(static_cast<float>(*figure)));
    }
    return figure.has_value();
}

}  // namespace kestro
