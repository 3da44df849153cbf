#include "tests/support/symbol_words.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(SymbolNames, EveryNameInTheApplicationHasADrawing) {
    const QSet<QString> foreign{
        QStringLiteral("app/linux/application.cpp"),     QStringLiteral("app/application.h"),
        QStringLiteral("app/base/notification_names.h"), QStringLiteral("app/command_channel.cpp"),
        QStringLiteral("app/windows/popover_window.h"),
    };

    expectOnlySymbolNames(QStringLiteral("app"), {}, foreign);
}

}  // namespace
}  // namespace kestro
