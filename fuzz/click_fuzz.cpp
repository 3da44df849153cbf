#include "fuzz/generated_values.h"
#include "fuzz/requirement.h"
#include "shell/linux/panel_anchor.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

namespace kestro {
namespace {

constexpr double scales[] = {1, 1.25, 1.5, 2, 3};

ScreenFrame screen(GeneratedValues& values) {
    const QRect geometry(static_cast<std::int16_t>(values.number()), static_cast<std::int16_t>(values.number()),
                         values.byte() * 32, values.byte() * 32);
    const int panel = values.byte();
    return {geometry, geometry.adjusted(0, panel, 0, 0), scales[values.byte() % std::size(scales)]};
}

}  // namespace
}  // namespace kestro

// Whatever position a host reports for a click, the anchor of what opens is a point or within a screen.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestro;
    GeneratedValues values({data, size});
    std::vector<ScreenFrame> screens;
    for (int left = values.byte() % 4; left > 0; --left) {
        screens.push_back(screen(values));
    }
    const QPoint reported(values.number(), values.number());
    const auto pointer = values.flag() ? std::optional(QPoint(values.number(), values.number())) : std::nullopt;
    const auto point = clickPoint(pointFromPanel(reported, screens), pointer, screens);
    const QRect anchor = panelAnchor(point, screens);
    require(point || anchor.isNull());
    return 0;
}
