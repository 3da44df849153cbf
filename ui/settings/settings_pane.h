#pragma once

#include "core/base/enumeration.h"
#include "core/settings/user_settings.h"
#include "ui/controls/segmented_choice.h"
#include "ui/controls/setting_row.h"
#include "ui/controls/slider.h"
#include "ui/controls/while_on_screen.h"
#include "ui/controls/words.h"
#include "ui/kestro_services.h"

#include <QWidget>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

class QVBoxLayout;

namespace kestro {

/// A column of settings that follows the values it shows, wherever they are changed. While hidden or in a
/// minimised window it does nothing; it catches up when visible again. Main thread.
class SettingsPane : public QWidget {
    Q_OBJECT

public:
    explicit SettingsPane(const KestroServices& services, QWidget* parent = nullptr);

protected:
    const KestroServices& services() const { return services_; }
    QVBoxLayout& stack() { return *stack_; }

    /// Appends a group to the column, or extra space before the next one.
    void add(QWidget* group);
    void addRoom(int height);

    /// Calls `show` now, after each assignment of one of `values` while the pane is on the screen, and whenever it
    /// appears there.
    template <typename... Values>
    void follow(std::function<void()> show, const Values&... values) {
        show();
        const std::size_t index = shows_.size();
        shows_.push_back(std::move(show));
        (onScreen_.follow(values, [this, index] { shows_[index](); }), ...);
    }

    /// A switch row with a two-way binding to a setting.
    SettingRow* switchRow(const Words& title, int height, Setting<bool>& setting);

    /// A segmented choice of all cases, labelled by their stored form, with a two-way binding to a setting.
    /// `changed` runs after the user's choice has been stored.
    template <ClosedEnumeration E>
    SegmentedChoice* choice(const Words& name, int height, Setting<E>& setting,
                            std::function<void()> changed = {}) {
        std::vector<Segment> segments;
        for (const E value : allCases<E>()) {
            segments.push_back({Words(rawValue(value)), QString()});
        }
        return choiceOf(name, height, std::move(segments), setting, std::move(changed));
    }

    /// The same with custom texts, one per case in order.
    template <ClosedEnumeration E>
    SegmentedChoice* choiceOf(const Words& name, int height, std::vector<Segment> segments, Setting<E>& setting,
                              std::function<void()> changed = {}) {
        auto* control = new SegmentedChoice(std::move(segments), height);
        control->setAccessibleName(name);
        control->onChosen([&setting, changed = std::move(changed)](int index) {
            setting.set(static_cast<E>(index));
            if (changed) {
                changed();
            }
        });
        follow([control, &setting] { control->setChosen(static_cast<int>(setting.get())); }, setting);
        return control;
    }

private:
    KestroServices services_;
    QVBoxLayout* stack_;
    std::vector<std::function<void()>> shows_;
    WhileOnScreen onScreen_{*this, [this] {
                                for (const auto& show : shows_) {
                                    show();
                                }
                            }};
};

}  // namespace kestro
