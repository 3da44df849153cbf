#pragma once

#include "shell/status_bar.h"

#include <cassert>
#include <functional>
#include <map>
#include <vector>

namespace kestro::test {

/// An in-memory status bar: records what its items show, and clicks them.
class FakeStatusBar final : public StatusBar {
public:
    struct Item {
        StatusItemHandlers handlers;
        StatusContent content;
        int contentsSet = 0;
        int contentChanges = 0;
        int menusOpened = 0;
        QRect geometry;
    };

    std::unique_ptr<StatusItem> createItem(const QString& identifier, StatusItemHandlers handlers) override {
        assert(!items.contains(identifier));
        if (onCreate) {
            onCreate();
        }
        items[identifier].handlers = std::move(handlers);
        created.push_back(identifier);
        return std::make_unique<Handle>(*this, identifier);
    }

    QRect overlay() const override { return covered; }
    void onOverlayChanged(std::function<void()> onChange) override { overlayChanged = std::move(onChange); }

    bool contains(const QString& identifier) const { return items.contains(identifier); }
    Item& item(const QString& identifier) { return items.at(identifier); }
    Menu menu(const QString& identifier) { return items.at(identifier).handlers.buildMenu(); }

    /// Clicks an item as a panel reports it.
    void click(const QString& identifier, StatusClick click, bool controlHeld, const QRect& anchor) {
        Item& clicked = items.at(identifier);
        if (clicked.handlers.onClick) {
            clicked.handlers.onClick(click, controlHeld, anchor);
        } else {
            ++clicked.menusOpened;
        }
    }

    std::map<QString, Item> items;
    QRect covered;                         ///< the area that the bar covers
    std::function<void()> overlayChanged;  ///< as set by the application
    std::function<void()> onCreate;        ///< if set, called before each item is created
    std::vector<QString> created;          ///< in order, including destroyed ones

private:
    class Handle final : public StatusItem {
    public:
        Handle(FakeStatusBar& bar, const QString& identifier) : bar_(bar), identifier_(identifier) {}
        ~Handle() override { bar_.items.erase(identifier_); }
        Handle(const Handle&) = delete;
        Handle& operator=(const Handle&) = delete;

        void setContent(const StatusContent& content) override {
            Item& item = bar_.item(identifier_);
            ++item.contentsSet;
            item.contentChanges += content == item.content ? 0 : 1;
            item.content = content;
        }
        void openMenu(std::optional<QPoint>) override { ++bar_.item(identifier_).menusOpened; }
        QRect geometry() const override { return bar_.item(identifier_).geometry; }

    private:
        FakeStatusBar& bar_;
        const QString identifier_;
    };
};

}  // namespace kestro::test
