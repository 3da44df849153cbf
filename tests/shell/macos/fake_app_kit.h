#pragma once

#include "shell/macos/native_accessibility.h"
#include "shell/macos/native_application.h"
#include "shell/macos/native_status_item.h"
#include "shell/macos/native_visual_effects.h"
#include "shell/macos/native_windows.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestro::test {

/// A watch that a test triggers.
class FakeWatch final : public NativeWatch {
public:
    FakeWatch(std::function<void()>& place, std::function<void()> handler) : place_(place) {
        place_ = std::move(handler);
    }
    ~FakeWatch() override { place_ = nullptr; }
    FakeWatch(const FakeWatch&) = delete;
    FakeWatch& operator=(const FakeWatch&) = delete;

private:
    std::function<void()>& place_;
};

/// The menu bar, with its items by identifier.
class FakeMenuBar {
public:
    struct Item {
        std::function<void(NativeClick)> onClick;
        std::vector<NativeStatusContent> shown;
        std::optional<NativeRect> frame;
        std::optional<NativeMenu> menu;  ///< the last one that was opened
        std::optional<NativePoint> menuPosition;
    };

    NativeStatusItemFactory factory() {
        return [this](const std::string& identifier, std::function<void(NativeClick)> onClick) {
            items[identifier].onClick = std::move(onClick);
            return std::make_unique<Handle>(*this, identifier);
        };
    }

    std::map<std::string, Item> items;
    std::function<void()> whileMenuIsOpen;  ///< if set, called once

private:
    class Handle final : public NativeStatusItem {
    public:
        Handle(FakeMenuBar& bar, std::string identifier) : bar_(bar), identifier_(std::move(identifier)) {}
        ~Handle() override { bar_.items.erase(identifier_); }
        Handle(const Handle&) = delete;
        Handle& operator=(const Handle&) = delete;

        void show(const NativeStatusContent& content) override { item().shown.push_back(content); }
        std::optional<NativeRect> frame() const override { return item().frame; }
        void popUp(const NativeMenu& menu, std::optional<NativePoint> position) override {
            item().menu = menu;
            item().menuPosition = position;
            if (const auto happens = std::exchange(bar_.whileMenuIsOpen, nullptr)) {
                happens();
            }
        }

    private:
        Item& item() const { return bar_.items.at(identifier_); }

        FakeMenuBar& bar_;
        const std::string identifier_;
    };
};

class FakeWindows final : public NativeWindows {
public:
    struct Window {
        std::optional<NativeWindowStyle> style;
        std::optional<std::int64_t> level;
        std::optional<std::uint64_t> collectionBehavior;
    };

    void dress(NativeView view, const NativeWindowStyle& style) override { windows[view].style = style; }
    void setLevel(NativeView view, std::int64_t level) override { windows[view].level = level; }
    void dressPopover(NativeView view, std::uint64_t collectionBehavior) override {
        windows[view].collectionBehavior = collectionBehavior;
    }
    void orderAbove(NativeView view, NativeView other) override { ordered.emplace_back(view, other); }

    std::map<NativeView, Window> windows;
    std::vector<std::pair<NativeView, NativeView>> ordered;
};

class FakeVisualEffects final : public NativeVisualEffects {
public:
    struct Pane {
        std::int64_t material = 0;
        std::vector<NativeRect> parts;
        bool operator==(const Pane&) const = default;
    };

    void lay(NativeView view, std::int64_t material, const std::vector<NativeRect>& parts) override {
        panes[view] = {material, parts};
        if (parts.empty()) {
            panes.erase(view);
        }
    }
    void setMaterial(NativeView view, std::int64_t material) override {
        if (panes.contains(view)) {
            panes[view].material = material;
        }
    }

    std::map<NativeView, Pane> panes;
};

class FakeApplication final : public NativeApplication {
public:
    void becomeAccessory() override {}
    void preventAppNap() override {}
    void activate() override { ++activations; }
    void handleEvents(std::function<void()>, std::function<void()>) override {}
    std::unique_ptr<NativeWatch> watchPresses(std::function<void()> onPress) override {
        return refusesWatches ? nullptr : std::make_unique<FakeWatch>(press, std::move(onPress));
    }

    int activations = 0;
    bool refusesWatches = false;
    std::function<void()> press;  ///< empty: nothing watches
};

class FakeAccessibility final : public NativeAccessibility {
public:
    AccessibilityDisplayOptions options() const override { return current; }
    std::unique_ptr<NativeWatch> watch(std::function<void()> handler) override {
        return std::make_unique<FakeWatch>(change, std::move(handler));
    }

    AccessibilityDisplayOptions current;
    std::function<void()> change;  ///< empty: nothing watches
};

}  // namespace kestro::test
