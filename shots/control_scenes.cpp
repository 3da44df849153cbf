#include "shots/scene.h"
#include "shots/sheet.h"
#include "ui/controls/badge.h"
#include "ui/controls/card.h"
#include "ui/controls/composition.h"
#include "ui/controls/option_tile.h"
#include "ui/controls/scroll_area.h"
#include "ui/controls/segmented_choice.h"
#include "ui/controls/setting_row.h"
#include "ui/controls/slider.h"
#include "ui/controls/swatch.h"
#include "ui/controls/tab_strip.h"
#include "ui/controls/toggle_switch.h"
#include "ui/menus/popup_menu.h"
#include "ui/paint/focus_ring.h"
#include "ui/paint/tooltip.h"
#include "ui/settings/settings_parts.h"

#include <QApplication>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <array>

namespace kestro::shots {

namespace {

enum class State { rest, hover, pressed, focus, disabled };

struct StateColumn {
    State state;
    const char* title;
};

constexpr std::array stateColumns{StateColumn{State::rest, "Rest"}, StateColumn{State::hover, "Hover"},
                                  StateColumn{State::pressed, "Pressed"}, StateColumn{State::focus, "Focus"},
                                  StateColumn{State::disabled, "Disabled"}};

void hover(QWidget& control) {
    const QPointF inside(control.width() - 8, control.height() / 2.0);
    QHoverEvent event(QEvent::HoverEnter, inside, control.mapToGlobal(inside), QPointF(-1, -1));
    QApplication::sendEvent(&control, &event);
}

void press(QWidget& control) {
    const QPointF inside = qobject_cast<Slider*>(&control) ? QPointF(control.width() / 2.0, control.height() / 2.0)
                                                           : QPointF(control.width() - 8, control.height() / 2.0);
    QMouseEvent event(QEvent::MouseButtonPress, inside, control.mapToGlobal(inside), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&control, &event);
}

/// Puts a control into a state as a user would. Every control shows the focus ring, though only one can have
/// focus.
void apply(State state, Control& control) {
    switch (state) {
        case State::rest:
            break;
        case State::hover:
            hover(control);
            break;
        case State::pressed:
            hover(control);
            press(control);
            break;
        case State::focus:
            new FocusRing(control, control);
            break;
        case State::disabled:
            control.setEnabled(false);
            break;
    }
}

Control* button(ButtonKind kind, const char* text) {
    auto* made = new Button(kind);
    made->setText(Words(text));
    return made;
}

Control* pinChip() {
    Button* made = chip(symbol("pin.fill", 11)).square(28).release();
    made->setOn(true);
    return made;
}

Control* choiceButton() {
    auto* choice = new Button(ButtonKind::choice);
    choice->setSymbol(QStringLiteral("bolt.fill"), 11);
    choice->setText(QStringLiteral("Normal (Auto)"));
    choice->setOn(true);
    return choice;
}

Control* segments() {
    auto* choice = new SegmentedChoice({{QStringLiteral("Top 6"), {}}, {QStringLiteral("Top 8"), {}}}, 28);
    choice->setChosen(0);
    choice->setFixedWidth(118);
    return choice;
}

Control* toggle(bool isOn) {
    auto* made = new ToggleSwitch;
    made->setOn(isOn);
    return made;
}

Control* slider() {
    auto* made = new Slider({0, 100, 1});
    made->setValue(45);
    made->setFixedWidth(118);
    return made;
}

Control* mark(RowMark kind, bool isOn) {
    auto* row = new SettingRow(kind, QString(), 22);
    row->setOn(isOn);
    row->setFixedWidth(40);
    return row;
}

struct StateRow {
    const char* title;
    std::function<std::vector<Control*>()> controls;
    int bareInset = 0;  ///< left empty at both sides of each control; neighbours may overlap it
};

std::vector<StateRow> stateRows() {
    return {
        {"Chip (icon)",
         [] {
             return std::vector<Control*>{chip(symbol("gearshape", 11)).square(28).release(), pinChip()};
         }},
        {"Chip (text)",
         [] {
             return std::vector<Control*>{chip("Open Dashboard", symbol("arrow.up.right.square", 10)).release()};
         }},
        {"Button", [] { return std::vector<Control*>{button(ButtonKind::regular, "Deactivate")}; }},
        {"Prominent", [] { return std::vector<Control*>{button(ButtonKind::prominent, "Activate Now")}; }},
        {"Choice button", [] { return std::vector<Control*>{choiceButton()}; }},
        {"Segment", [] { return std::vector<Control*>{segments()}; }},
        {"Switch",
         [] {
             return std::vector<Control*>{toggle(true), toggle(false)};
         }},
        {"Slider", [] { return std::vector<Control*>{slider()}; }},
        {"Check, radio",
         [] {
             return std::vector<Control*>{mark(RowMark::check, true), mark(RowMark::check, false),
                                          mark(RowMark::radio, true), mark(RowMark::radio, false)};
         },
         10},
    };
}

std::unique_ptr<QWidget> stateSheet(SimulatedServices&) {
    constexpr int firstColumn = 150;
    constexpr int columnWidth = 140;
    constexpr int firstRow = 79;
    constexpr int rowHeight = 54;
    auto sheet = std::make_unique<Sheet>(QSize(860, 560));
    TextStyle heading = text_styles::windowTitle;
    heading.tracking = 0.8;
    sheet->place(text("CONTROL STATES").style(heading).release(), QPoint(20, 11));
    for (size_t c = 0; c < stateColumns.size(); ++c) {
        const int x = firstColumn + columnWidth * static_cast<int>(c);
        sheet->place(text(stateColumns[c].title).style(text_styles::settingDescription).release(), QPoint(x, 39));
    }
    int middle = firstRow;
    for (const StateRow& row : stateRows()) {
        auto* title = text(row.title).style(text_styles::segment).release();
        sheet->place(title, QPoint(20, middle - title->sizeHint().height() / 2));
        for (size_t c = 0; c < stateColumns.size(); ++c) {
            int x = firstColumn + columnWidth * static_cast<int>(c) - row.bareInset;
            for (Control* control : row.controls()) {
                sheet->place(control, QPoint(x, middle - control->sizeHint().height() / 2));
                apply(stateColumns[c].state, *control);
                x += control->width() + 10 - 2 * row.bareInset;
            }
        }
        middle += rowHeight;
    }
    return sheet;
}

QWidget* rows() {
    const auto made = [](RowMark kind, int height, const char* title, const char* description, const char* name,
                         double size, bool isOn) {
        auto* row = new SettingRow(kind, Words(title), height);
        row->setDescription(Words(description));
        row->setSymbol(Words(name), size);
        row->setOn(isOn);
        return row;
    };
    auto* active = made(RowMark::chosen, 52, "Balanced (Automatic)", "Dynamically optimizes CPU/GPU frequencies",
                        "gauge.with.needle", 16, true);
    auto* badge = new Badge(BadgeKind::settings, QStringLiteral("ACTIVE"), KestroTheme::accentCool, active);
    badge->move(400 - 12 - 16 - 12 - badge->sizeHint().width(), 17);
    badge->resize(badge->sizeHint());
    return new settings_parts::RowCard(
        {made(RowMark::toggle, 44, "Dedicated Keep-Awake Status Bar Extra", "1-click toggle and preset countdowns",
              "cup.and.saucer.fill", 15, true),
         made(RowMark::toggle, 44, "R&D <b>plain</b> text", "Markup is never interpreted", "fanblades", 15, false),
         made(RowMark::radio, 46, "Average SoC Temp", "Smooth overall substrate temperature", "thermometer.medium",
              14, true),
         active});
}

QWidget* tiles() {
    const auto tile = [](const char* label, bool isChosen) {
        auto* made = new OptionTile(Words(label), 64, [](QPainter& painter, const QRectF& area) {
            painter.fillRect(area, QColor(30, 34, 44));
        });
        made->setOn(isChosen);
        return made;
    };
    return row(Spacing(12), tile("Header Band", true), tile("Thermal Plume", false)).release();
}

QWidget* swatches() {
    const auto swatch = [](ThemePalette palette, bool isChosen) {
        auto* made = new Swatch(Words(rawValue(palette)), primaryColor(palette));
        made->setOn(isChosen);
        return made;
    };
    return new Card(row(swatch(ThemePalette::cryogenic, true), swatch(ThemePalette::obsidian, false),
                        swatch(ThemePalette::monolith, false))
                        .release(),
                    nullptr);
}

QWidget* menu() {
    Menu entries{MenuEntry::header(QStringLiteral("Kestro Telemetry")), MenuEntry::separator()};
    const auto add = [&](const char* title, const char* shortcut, bool isChecked) {
        MenuEntry entry;
        entry.title = Words(title);
        entry.shortcut = Words(shortcut);
        entry.isChecked = isChecked;
        entries.push_back(std::move(entry));
    };
    add("Quick Glance Popover", "", false);
    add("Full Studio Dashboard", "Ctrl+D", false);
    add("R&D <b>plain</b>", "", true);
    add("Fan Performance", "", false);
    entries.back().submenu = {MenuEntry::separator()};
    PopupMenu popup(entries);
    popup.ensurePolished();
    popup.resize(popup.sizeHint());
    popup.setActiveAction(popup.actions()[3]);
    return new PictureOf(popup);
}

QWidget* tooltip() {
    Tooltip made(
        QStringLiteral("/usr/lib/browser -contentproc -childID 4 -isForBrowser -prefsLen 31234 "
                       "-parentBuildID 20240205133611 <b>plain</b> &text"));
    return new PictureOf(made);
}

QWidget* scrolling() {
    auto* content = column(Insets{8, 8, 8, 8}).release();
    auto* lines = static_cast<QVBoxLayout*>(content->layout());
    for (int i = 0; i < 16; ++i) {
        lines->addWidget(
            text(QStringLiteral("Scrolling line %1").arg(i)).style(text_styles::settingTitle).release());
    }
    content->setFixedHeight(400);
    return new ScrollArea(content);
}

std::unique_ptr<QWidget> partSheet(SimulatedServices&) {
    auto sheet = std::make_unique<Sheet>(QSize(860, 620));
    auto* tabs = new TabStrip({{QStringLiteral("Menu Bar"), QStringLiteral("menubar.dock.rectangle")},
                               {QStringLiteral("Keep-Awake"), QStringLiteral("cup.and.saucer.fill")},
                               {QStringLiteral("Cooling & Fans"), QStringLiteral("fanblades")},
                               {QStringLiteral("Sensors"), QStringLiteral("cpu")}});
    sheet->place(tabs, QRect(20, 16, 820, TabStrip::fixedHeight));
    sheet->place(groupHeading("Rows").release(), QPoint(20, 76));
    sheet->place(rows(), QRect(20, 97, 400, 200));
    sheet->place(groupHeading("Choices").release(), QPoint(440, 76));
    sheet->place(swatches(), QRect(440, 97, 400, 92));
    sheet->place(tiles(), QRect(440, 205, 400, 90));
    sheet->place(groupHeading("Badges").release(), QPoint(20, 316));
    int x = 20;
    for (const BadgeKind kind : {BadgeKind::section, BadgeKind::settings, BadgeKind::dot}) {
        auto* badge = new Badge(kind, QStringLiteral("Nominal"), KestroTheme::accentNominal);
        sheet->place(badge, QPoint(x, 338));
        x += badge->width() + 16;
    }
    sheet->place(groupHeading("Menu and tooltip").release(), QPoint(20, 376));
    sheet->place(menu(), QPoint(20, 397));
    sheet->place(tooltip(), QPoint(300, 397));
    sheet->place(scrolling(), QRect(600, 440, 240, 160));
    return sheet;
}

Scene scene(const char* name, std::unique_ptr<QWidget> (*make)(SimulatedServices&)) {
    Scene made;
    made.name = Words(name);
    made.make = make;
    made.atFractionalScales = true;
    return made;
}

}  // namespace

std::vector<Scene> controlScenes() {
    Scene light = scene("controls-states-monolith", stateSheet);
    light.drive = [](SimulatedServices& services) {
        services.settings().themePalette.set(ThemePalette::monolith);
    };
    Scene parts = scene("controls-parts", partSheet);
    parts.work = [](QWidget& sheet) { sheet.findChild<ScrollArea*>()->verticalScrollBar()->setValue(70); };
    return {scene("controls-states", stateSheet), std::move(light), std::move(parts)};
}

}  // namespace kestro::shots
