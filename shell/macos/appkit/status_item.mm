#include "shell/macos/native_status_item.h"

#import <AppKit/AppKit.h>

#include <utility>

using kestro::NativeClick;

static_assert(NSEventModifierFlagShift == kestro::shiftModifier &&
              NSEventModifierFlagControl == kestro::controlModifier &&
              NSEventModifierFlagOption == kestro::optionModifier &&
              NSEventModifierFlagCommand == kestro::commandModifier);

/// The target of an item's button.
@interface KestroStatusItemTarget : NSObject {
@public
    std::function<void(NativeClick)> onClick;
}
@end

@implementation KestroStatusItemTarget

- (void)clicked:(id)__unused sender {
    NSEvent* const event = NSApp.currentEvent;
    const bool isSecondary = event.type == NSEventTypeRightMouseUp;
    const bool controlHeld = (event.modifierFlags & NSEventModifierFlagControl) != 0;
    if (const auto handler = onClick) {  // it may remove the item
        handler({isSecondary, controlHeld});
    }
}

@end

/// The target of a menu's entries, which keep it.
@interface KestroMenuTarget : NSObject {
@public
    std::function<void(std::size_t)> choose;
}
@end

@implementation KestroMenuTarget

- (void)chosen:(NSMenuItem*)entry {
    choose(static_cast<std::size_t>(entry.tag));
}

@end

namespace kestro {

namespace {

/// Empty for text that is not UTF-8.
NSString* textOf(const std::string& text) {
    NSString* const made = [[NSString alloc] initWithBytes:text.data()
                                                    length:text.size()
                                                  encoding:NSUTF8StringEncoding];
    return made != nil ? made : @"";
}

/// nil: this system has no such symbol.
NSImage* symbolOf(const NativeStatusContent& content) {
    if (content.symbol.empty()) {
        return nil;
    }
    NSImage* const symbol = [NSImage imageWithSystemSymbolName:textOf(content.symbol)
                                      accessibilityDescription:textOf(content.symbolDescription)];
    return [symbol imageWithSymbolConfiguration:[NSImageSymbolConfiguration
                                                    configurationWithPointSize:content.symbolPointSize
                                                                        weight:NSFontWeightMedium]];
}

NSColor* colorOf(NativeColor color) {
    switch (color) {
        case NativeColor::label:
            return NSColor.labelColor;
        case NativeColor::secondaryLabel:
            return NSColor.secondaryLabelColor;
        case NativeColor::systemOrange:
            return NSColor.systemOrangeColor;
    }
    return NSColor.labelColor;
}

/// The title, in figures of equal width.
NSAttributedString* titleOf(const NativeStatusContent& content, bool hasSymbol) {
    // An item that shows nothing could not be clicked.
    const bool isNameless = content.title.empty() && !hasSymbol;
    return [[NSAttributedString alloc]
        initWithString:textOf(isNameless ? content.symbolDescription : content.title)
            attributes:@{
                NSFontAttributeName : [NSFont monospacedDigitSystemFontOfSize:content.titlePointSize
                                                                       weight:content.titleWeight],
                NSForegroundColorAttributeName : colorOf(content.titleColor)
            }];
}

NSMenu* menuOf(const std::vector<NativeMenuEntry>& entries, KestroMenuTarget* target);

NSMenuItem* menuItemOf(const NativeMenuEntry& entry, KestroMenuTarget* target) {
    if (entry.isSeparator) {
        return [NSMenuItem separatorItem];
    }
    NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:textOf(entry.title)
                                                        action:@selector(chosen:)
                                                 keyEquivalent:textOf(entry.keyEquivalent.key)];
    item.keyEquivalentModifierMask = entry.keyEquivalent.modifiers;
    item.target = target;
    item.representedObject = target;  // targets are not retained
    item.tag = static_cast<NSInteger>(entry.number);
    item.enabled = entry.isEnabled;
    item.state = entry.isChecked ? NSControlStateValueOn : NSControlStateValueOff;
    if (!entry.symbol.empty()) {
        item.image = [NSImage imageWithSystemSymbolName:textOf(entry.symbol) accessibilityDescription:nil];
    }
    if (!entry.submenu.empty()) {
        item.submenu = menuOf(entry.submenu, target);
    }
    return item;
}

NSMenu* menuOf(const std::vector<NativeMenuEntry>& entries, KestroMenuTarget* target) {
    NSMenu* const menu = [[NSMenu alloc] initWithTitle:@""];
    menu.autoenablesItems = NO;
    for (const NativeMenuEntry& entry : entries) {
        [menu addItem:menuItemOf(entry, target)];
    }
    return menu;
}

class AppKitStatusItem final : public NativeStatusItem {
public:
    AppKitStatusItem(const std::string& identifier, std::function<void(NativeClick)> onClick)
        : item_([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength]),
          target_([[KestroStatusItemTarget alloc] init]) {
        target_->onClick = std::move(onClick);
        item_.autosaveName = textOf(identifier);
        NSStatusBarButton* const button = item_.button;
        button.target = target_;
        button.action = @selector(clicked:);
        button.imagePosition = NSImageLeading;
        [button sendActionOn:NSEventMaskLeftMouseUp | NSEventMaskRightMouseUp];
    }
    ~AppKitStatusItem() override {
        target_->onClick = nullptr;
        [NSStatusBar.systemStatusBar removeStatusItem:item_];
    }
    AppKitStatusItem(const AppKitStatusItem&) = delete;
    AppKitStatusItem& operator=(const AppKitStatusItem&) = delete;

    void show(const NativeStatusContent& content) override {
        // AppKit empties its own pool after an event, and a program without windows may receive none for days.
        @autoreleasepool {
            NSStatusBarButton* const button = item_.button;
            NSImage* const symbol = symbolOf(content);
            button.image = symbol;
            button.attributedTitle = titleOf(content, symbol != nil);
            button.toolTip = content.toolTip.empty() ? nil : textOf(content.toolTip);
            [button setAccessibilityLabel:textOf(content.accessibilityLabel)];
        }
    }

    std::optional<NativeRect> frame() const override {
        NSStatusBarButton* const button = item_.button;
        NSWindow* const window = button.window;
        if (window == nil) {
            return std::nullopt;
        }
        const NSRect frame = [window convertRectToScreen:[button convertRect:button.bounds toView:nil]];
        return NativeRect{frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
    }

    void popUp(const NativeMenu& menu, std::optional<NativePoint> position) override {
        NSStatusItem* const item = item_;  // this object may be destroyed while the menu is open
        KestroMenuTarget* const target = [[KestroMenuTarget alloc] init];
        target->choose = menu.choose;
        NSMenu* const opened = menuOf(menu.entries, target);
        if (position) {
            [opened popUpMenuPositioningItem:nil atLocation:NSMakePoint(position->x, position->y) inView:nil];
            return;
        }
        // A menu that stayed with the item would open instead of the next click's action.
        item.menu = opened;
        [item.button performClick:nil];
        item.menu = nil;
    }

private:
    NSStatusItem* const item_;
    KestroStatusItemTarget* const target_;
};

}  // namespace

std::unique_ptr<NativeStatusItem> makeNativeStatusItem(const std::string& identifier,
                                                       std::function<void(NativeClick)> onClick) {
    return std::make_unique<AppKitStatusItem>(identifier, std::move(onClick));
}

}  // namespace kestro
