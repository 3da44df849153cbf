#include "platform/linux/sensors/linux_smc_service.h"

#include "core/base/text.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr std::uint32_t handle = 1;

constexpr auto fanCountKey = smc::code("FNum");
constexpr auto actual = static_cast<std::uint16_t>(smc::code("Ac"));
constexpr auto minimum = static_cast<std::uint16_t>(smc::code("Mn"));
constexpr auto maximum = static_cast<std::uint16_t>(smc::code("Mx"));
constexpr auto target = static_cast<std::uint16_t>(smc::code("Tg"));
constexpr auto label = static_cast<std::uint16_t>(smc::code("ID"));

constexpr std::uint32_t labelSize = 32;  // all bytes of a value

/// The longest beginning of valid UTF-8 that fits into `size` bytes without cutting a character.
std::string_view wholeCharacters(std::string_view text, std::size_t size) {
    std::size_t length = 0;
    while (length < text.size()) {
        const auto next = utf8SequenceLength(text.substr(length));
        if (next == 0 || length + next > size) {
            break;
        }
        length += next;
    }
    return text.substr(0, length);
}

bool isDigit(std::uint32_t character) {
    return character >= '0' && character <= '9';
}

}  // namespace

LinuxSMCService::LinuxSMCService(const Clock& clock, std::string root, std::shared_ptr<SleepingDevices> devices)
    : clock_(clock), fans_(std::move(root), std::move(devices)) {}

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
        // A key holds four characters: two digits shift out the leading letter.
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
        case label:
            return !fans_.label(key.fan).empty();
        default:
            return false;
    }
}

std::optional<double> LinuxSMCService::readFigure(const FanKey& key) {
    switch (key.figure) {
        case actual:
            return fans_.speed(key.fan, clock_.monotonicNow());
        case minimum:
            return fans_.minimum(key.fan);
        case maximum:
            return fans_.maximum(key.fan);
        default:
            return fans_.target(key.fan, clock_.monotonicNow());
    }
}

bool LinuxSMCService::callStructMethod(std::uint32_t connection, const SMCRecord& input, SMCRecord& output) {
    if (!isOpen_ || connection != handle) {
        return false;
    }
    output.fill(0);
    const auto key = smc::read32(input, smc::keyOffset);
    const auto command = input[smc::commandOffset];
    const bool isCount = key == fanCountKey;
    if (isCount && command == smc::readInformationCommand) {
        fans_.refresh(clock_.monotonicNow());
    }
    const auto fan = isCount ? std::nullopt : fanKey(key);
    if (!isCount && !fan) {
        return false;
    }
    const bool isLabel = fan && fan->figure == label;
    const std::uint32_t size = isCount ? 1 : isLabel ? labelSize : 4;
    smc::write32(output, smc::keyOffset, key);
    if (command == smc::readInformationCommand) {
        smc::write32(output, smc::sizeOffset, size);
        smc::write32(output, smc::typeOffset, smc::code(isCount ? "ui8 " : isLabel ? "ch8*" : "flt "));
        return true;
    }
    if (command != smc::readBytesCommand || smc::read32(input, smc::sizeOffset) != size) {
        return false;
    }
    if (isCount) {
        output[smc::bytesOffset] = static_cast<std::uint8_t>(fans_.count());
        return true;
    }
    return readBytes(*fan, output);
}

bool LinuxSMCService::readBytes(const FanKey& key, SMCRecord& output) {
    if (key.figure == label) {
        std::ranges::copy(wholeCharacters(fans_.label(key.fan), labelSize), output.begin() + smc::bytesOffset);
        return true;
    }
    const auto figure = readFigure(key);
    if (figure) {
        smc::write32(output, smc::bytesOffset, std::bit_cast<std::uint32_t>(static_cast<float>(*figure)));
    }
    return figure.has_value();
}

}  // namespace kestro
