#pragma once

// Part of AppKit.h: the application, its events, the menu bar and what is shown there.

#pragma clang assume_nonnull begin

@class NSView;
@class NSWindow;

enum NSEventType : NSUInteger { NSEventTypeRightMouseUp = 4 };

using NSEventMask = unsigned long long;
enum : NSEventMask {
    NSEventMaskLeftMouseDown = 1ULL << 1,
    NSEventMaskLeftMouseUp = 1ULL << 2,
    NSEventMaskRightMouseDown = 1ULL << 3,
    NSEventMaskRightMouseUp = 1ULL << 4,
    NSEventMaskOtherMouseDown = 1ULL << 25,
};

using NSEventModifierFlags = NSUInteger;
enum : NSEventModifierFlags {
    NSEventModifierFlagShift = 1 << 17,
    NSEventModifierFlagControl = 1 << 18,
    NSEventModifierFlagOption = 1 << 19,
    NSEventModifierFlagCommand = 1 << 20,
};

@interface NSEvent : NSObject
@property(readonly) NSEventType type;
@property(readonly) NSEventModifierFlags modifierFlags;
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent* event))block;
+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask
                                            handler:(NSEvent* _Nullable (^)(NSEvent* event))block;
+ (void)removeMonitor:(id)eventMonitor;
@end

enum NSApplicationActivationPolicy : NSInteger {
    NSApplicationActivationPolicyRegular,
    NSApplicationActivationPolicyAccessory,
    NSApplicationActivationPolicyProhibited,
};

@interface NSApplication : NSObject
@property(nullable, readonly, strong) NSEvent* currentEvent;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(readonly) BOOL accessibilityDisplayShouldIncreaseContrast;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
@end

using NSFontWeight = CGFloat;

@interface NSFont : NSObject
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight;
@end

@interface NSColor : NSObject
@property(class, readonly, strong) NSColor* labelColor;
@property(class, readonly, strong) NSColor* secondaryLabelColor;
@property(class, readonly, strong) NSColor* systemOrangeColor;
@property(class, readonly, strong) NSColor* clearColor;
@property(class, readonly, strong) NSColor* blackColor;
- (void)set;
@end

@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end

@interface NSImage : NSObject
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description;
+ (NSImage*)imageWithSize:(NSSize)size
                  flipped:(BOOL)drawingHandlerShouldBeCalledWithFlippedContext
           drawingHandler:(BOOL (^)(NSRect dstRect))drawingHandler;
- (nullable NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
@end

using NSControlStateValue = NSInteger;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;

@class NSMenu;

@interface NSMenuItem : NSObject
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)string action:(nullable SEL)selector keyEquivalent:(NSString*)charCode;
@property NSEventModifierFlags keyEquivalentModifierMask;
@property(nullable, weak) id target;
@property(nullable, strong) id representedObject;
@property NSInteger tag;
@property(getter=isEnabled) BOOL enabled;
@property NSControlStateValue state;
@property(nullable, strong) NSImage* image;
@property(nullable, strong) NSMenu* submenu;
@end

@interface NSMenu : NSObject
- (instancetype)initWithTitle:(NSString*)title;
- (void)addItem:(NSMenuItem*)newItem;
@property BOOL autoenablesItems;
- (BOOL)popUpMenuPositioningItem:(nullable NSMenuItem*)item
                      atLocation:(NSPoint)location
                          inView:(nullable NSView*)view;
@end

@class NSStatusItem;
@class NSStatusBarButton;

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button;
@property(null_resettable, copy) NSString* autosaveName;
@property(nullable, strong) NSMenu* menu;
@end

static const CGFloat NSVariableStatusItemLength = -1.0;

extern "C" {

extern __kindof NSApplication* _Null_unspecified NSApp;
extern const NSFontWeight NSFontWeightMedium;
extern NSAttributedStringKey const NSFontAttributeName;
extern NSAttributedStringKey const NSForegroundColorAttributeName;
extern NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;

void NSRectFill(NSRect rect);
}

#pragma clang assume_nonnull end
