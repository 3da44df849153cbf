#include "shell/macos/native_visual_effects.h"

#include "core/model/appearance_enumerations.h"

#import <AppKit/AppKit.h>

namespace kestro {

namespace {

static_assert(NSVisualEffectMaterialPopover == static_cast<NSInteger>(VisualEffectMaterial::popover) &&
              NSVisualEffectMaterialHUDWindow == static_cast<NSInteger>(VisualEffectMaterial::hudWindow) &&
              NSVisualEffectMaterialUnderWindowBackground ==
                  static_cast<NSInteger>(VisualEffectMaterial::underWindowBackground));

NSString* const paneIdentifier = @"kestro-glass";

NSView* contentOf(NativeView view) {
    return ((__bridge NSView*)reinterpret_cast<void*>(view)).window.contentView;
}

/// nil: there is none.
NSVisualEffectView* paneBehind(NSView* content) {
    for (NSView* const sibling in content.superview.subviews) {
        if ([sibling.identifier isEqualToString:paneIdentifier]) {
            return static_cast<NSVisualEffectView*>(sibling);
        }
    }
    return nil;
}

/// Lit whether or not its window is active, and dark as every palette is.
NSVisualEffectView* layPaneBehind(NSView* content) {
    NSVisualEffectView* const pane = [[NSVisualEffectView alloc] initWithFrame:content.frame];
    pane.identifier = paneIdentifier;
    pane.blendingMode = NSVisualEffectBlendingModeBehindWindow;
    pane.state = NSVisualEffectStateActive;
    pane.appearance = [NSAppearance appearanceNamed:NSAppearanceNameVibrantDark];
    pane.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
    // The content view has to remain the toolkit's.
    [content.superview addSubview:pane positioned:NSWindowBelow relativeTo:content];
    return pane;
}

/// `parts` by value: the block, which runs later, does not keep what a reference refers to.
NSImage* maskOf(std::vector<NativeRect> parts, NSSize size) {
    return [NSImage imageWithSize:size
                          flipped:NO
                   drawingHandler:^BOOL(NSRect) {
                       [NSColor.blackColor set];
                       for (const NativeRect& part : parts) {
                           NSRectFill(NSMakeRect(part.x, part.y, part.width, part.height));
                       }
                       return YES;
                   }];
}

class AppKitVisualEffects final : public NativeVisualEffects {
public:
    void lay(NativeView view, std::int64_t material, const std::vector<NativeRect>& parts) override {
        NSView* const content = contentOf(view);
        NSVisualEffectView* pane = paneBehind(content);
        if (parts.empty() || content == nil) {
            [pane removeFromSuperview];
            return;
        }
        if (pane == nil) {
            pane = layPaneBehind(content);
        }
        pane.material = static_cast<NSVisualEffectMaterial>(material);
        pane.frame = content.frame;
        pane.maskImage = maskOf(parts, content.bounds.size);
    }

    void setMaterial(NativeView view, std::int64_t material) override {
        paneBehind(contentOf(view)).material = static_cast<NSVisualEffectMaterial>(material);
    }
};

}  // namespace

std::unique_ptr<NativeVisualEffects> makeNativeVisualEffects() {
    return std::make_unique<AppKitVisualEffects>();
}

}  // namespace kestro
