#pragma once

// Part of AppKit.h: views, buttons and windows.

#pragma clang assume_nonnull begin

using NSUserInterfaceItemIdentifier = NSString*;
using NSAppearanceName = NSString*;

@interface NSAppearance : NSObject
+ (nullable NSAppearance*)appearanceNamed:(NSAppearanceName)name;
@end

enum NSWindowOrderingMode : NSInteger { NSWindowAbove = 1, NSWindowBelow = -1, NSWindowOut = 0 };

using NSAutoresizingMaskOptions = NSUInteger;
enum : NSAutoresizingMaskOptions { NSViewWidthSizable = 2, NSViewHeightSizable = 16 };

@interface NSResponder : NSObject
@end

@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frameRect;
@property(nullable, readonly, unsafe_unretained) NSWindow* window;
@property(nullable, readonly, unsafe_unretained) NSView* superview;
@property(copy) NSArray<__kindof NSView*>* subviews;
@property(nullable, copy) NSUserInterfaceItemIdentifier identifier;
@property(nullable, strong) NSAppearance* appearance;
@property NSRect frame;
@property NSRect bounds;
@property NSAutoresizingMaskOptions autoresizingMask;
@property BOOL postsFrameChangedNotifications;
@property(getter=isHidden) BOOL hidden;
@property(nullable, copy) NSString* toolTip;
- (void)addSubview:(NSView*)view positioned:(NSWindowOrderingMode)place relativeTo:(nullable NSView*)otherView;
- (void)removeFromSuperview;
- (NSRect)convertRect:(NSRect)rect toView:(nullable NSView*)view;
- (void)setAccessibilityLabel:(nullable NSString*)accessibilityLabel;
@end

enum NSCellImagePosition : NSUInteger { NSImageLeading = 7 };

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
- (NSInteger)sendActionOn:(NSEventMask)mask;
- (void)performClick:(nullable id)sender;
@end

@interface NSButton : NSControl
@property(nullable, strong) NSImage* image;
@property NSCellImagePosition imagePosition;
@property(copy) NSAttributedString* attributedTitle;
@end

@interface NSStatusBarButton : NSButton
@end

enum NSVisualEffectMaterial : NSInteger {
    NSVisualEffectMaterialPopover = 6,
    NSVisualEffectMaterialHUDWindow = 13,
    NSVisualEffectMaterialUnderWindowBackground = 21,
};
enum NSVisualEffectBlendingMode : NSInteger {
    NSVisualEffectBlendingModeBehindWindow,
    NSVisualEffectBlendingModeWithinWindow,
};
enum NSVisualEffectState : NSInteger {
    NSVisualEffectStateFollowsWindowActiveState,
    NSVisualEffectStateActive,
    NSVisualEffectStateInactive,
};

@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@property NSVisualEffectState state;
@property(nullable, strong) NSImage* maskImage;
@end

using NSWindowStyleMask = NSUInteger;
enum : NSWindowStyleMask {
    NSWindowStyleMaskTitled = 1 << 0,
    NSWindowStyleMaskClosable = 1 << 1,
    NSWindowStyleMaskMiniaturizable = 1 << 2,
    NSWindowStyleMaskResizable = 1 << 3,
    NSWindowStyleMaskFullScreen = 1 << 14,
    NSWindowStyleMaskFullSizeContentView = 1 << 15,
};
using NSWindowCollectionBehavior = NSUInteger;
enum : NSWindowCollectionBehavior {
    NSWindowCollectionBehaviorMoveToActiveSpace = 1 << 1,
    NSWindowCollectionBehaviorManaged = 1 << 2,
    NSWindowCollectionBehaviorTransient = 1 << 3,
    NSWindowCollectionBehaviorIgnoresCycle = 1 << 6,
    NSWindowCollectionBehaviorFullScreenPrimary = 1 << 7,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};
enum NSWindowAnimationBehavior : NSInteger { NSWindowAnimationBehaviorUtilityWindow = 4 };
enum NSWindowTitleVisibility : NSInteger { NSWindowTitleVisible = 0, NSWindowTitleHidden = 1 };
enum NSWindowButton : NSUInteger { NSWindowCloseButton, NSWindowMiniaturizeButton, NSWindowZoomButton };
using NSWindowLevel = NSInteger;

@interface NSWindow : NSResponder
@property(nullable, strong) __kindof NSView* contentView;
@property NSWindowStyleMask styleMask;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property NSWindowAnimationBehavior animationBehavior;
@property BOOL titlebarAppearsTransparent;
@property NSWindowTitleVisibility titleVisibility;
@property(getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
@property(getter=isOpaque) BOOL opaque;
@property(null_resettable, copy) NSColor* backgroundColor;
@property BOOL hasShadow;
@property BOOL hidesOnDeactivate;
@property(readonly) NSInteger windowNumber;
@property(nullable, readonly, weak) NSResponder* firstResponder;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
- (nullable NSButton*)standardWindowButton:(NSWindowButton)button;
- (NSRect)convertRectToScreen:(NSRect)rect;
- (void)orderWindow:(NSWindowOrderingMode)place relativeTo:(NSInteger)otherWin;
@end

extern "C" NSAppearanceName const NSAppearanceNameVibrantDark;

#pragma clang assume_nonnull end
