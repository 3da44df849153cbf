#pragma once

#include <QString>
#include <QVariant>
#include <QVariantList>

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestro {

/// Turns the fuzzer's bytes into the arguments of bus messages. Past the end every byte is 0.
class GeneratedValues {
public:
    explicit GeneratedValues(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint8_t byte() {
        if (next_ >= bytes_.size()) {
            return 0;
        }
        return bytes_[next_++];
    }
    bool flag() { return (byte() & 1U) != 0; }
    std::int32_t number();

    /// Mostly a small one, as identifiers are.
    std::int32_t identifier();

    /// One that a message can contain.
    QString text();

    /// The length of a list or map: below eight, or more than the parsers accept of a map.
    int length();

    /// A list made by `make`.
    template <typename Element, typename Make>
    QList<Element> list(Make make) {
        QList<Element> made;
        for (int left = length(); left > 0 && next_ < bytes_.size(); --left) {
            made.append(make());
        }
        return made;
    }

    /// A value of any type.
    QVariant any(int depth = 0);

    /// Up to seven values of any type.
    QVariantList arguments();

private:
    QVariantMap map(int depth);

    std::span<const std::uint8_t> bytes_;
    std::size_t next_ = 0;
};

}  // namespace kestro
