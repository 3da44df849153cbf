#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace kestro {

/// A text argument: a UTF-8 literal, a core string, or a QString. Invalid UTF-8 becomes replacement characters.
class Words {
public:
    Words(const char* text) : text_(QString::fromUtf8(text)) {}              // NOLINT: implicit on purpose
    Words(const std::string& text) : text_(QString::fromStdString(text)) {}  // NOLINT
    Words(std::string_view text)                                             // NOLINT
        : text_(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))) {}
    Words(QString text) : text_(std::move(text)) {}  // NOLINT

    operator const QString&() const { return text_; }  // NOLINT

private:
    QString text_;
};

}  // namespace kestro
