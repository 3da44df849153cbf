#pragma once

#include <QColor>

namespace kestro {

/// A colour that is resolved when painted, so that a palette change shows at the next redraw. Made from a role of
/// KestroTheme (`Ink(KestroTheme::accentCool)`) or from a fixed colour.
class Ink {
public:
    using Role = QColor (*)();

    constexpr Ink(Role role) : role_(role) {}              // NOLINT: implicit on purpose
    constexpr Ink(const QColor& fixed) : fixed_(fixed) {}  // NOLINT: implicit on purpose

    /// White at an opacity, for fills on the dark ground.
    static Ink white(double opacity) { return Ink(QColor(Qt::white)).faded(opacity); }

    /// The same ink with its opacity multiplied.
    constexpr Ink faded(double opacity) const {
        Ink ink = *this;
        ink.opacity_ *= opacity;
        return ink;
    }

    /// The current colour.
    QColor color() const {
        QColor color = role_ ? role_() : fixed_;
        color.setAlphaF(color.alphaF() * static_cast<float>(opacity_));
        return color;
    }

    friend bool operator==(const Ink&, const Ink&) = default;

private:
    Role role_ = nullptr;
    QColor fixed_;
    double opacity_ = 1;
};

}  // namespace kestro
