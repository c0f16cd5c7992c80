#include "TinkraSystemMac/Desktop/OverlayPanelMac.h"

#include "TinkraSystemMac/Desktop/EmbeddedView.h"
#include "TinkraSystemMac/Desktop/GeometryMac.h"
#include "TinkraSystemMac/Desktop/ScreensMac.h"

#include <cassert>
#include <utility>

/// Takes the keyboard when its owner clicks into it, and never becomes the main window.
@interface TinkraOverlayPanel : NSPanel
@end

@implementation TinkraOverlayPanel

- (BOOL)canBecomeKeyWindow
{
    return YES;
}

- (BOOL)canBecomeMainWindow
{
    return NO;
}

@end

namespace Tinkra::System {

namespace {

CAMediaTimingFunctionName _Nonnull nameOf(AnimationTiming timing)
{
    switch (timing) {
    case AnimationTiming::EaseIn:
        return kCAMediaTimingFunctionEaseIn;
    case AnimationTiming::EaseOut:
        return kCAMediaTimingFunctionEaseOut;
    }
    return kCAMediaTimingFunctionEaseOut;
}

class OverlayPanelMac final : public OverlayPanel {
public:
    OverlayPanelMac(NSPanel* _Nonnull panel, const OverlayPanelProperties& properties,
        std::unique_ptr<PanelContent> content)
        : m_panel(panel)
        , m_view((__bridge void*)panel.contentView, properties.contentRect.size, std::move(content),
              properties.movableByBackground)
    {
    }

    Rect frame() override { return rectFrom(m_panel.frame); }
    std::optional<Screen> screen() override { return optionalScreenFrom(m_panel.screen); }
    void setFrame(Rect frame) override { [m_panel setFrame:nativeRect(frame) display:NO]; }
    void orderFrontRegardless() override { [m_panel orderFrontRegardless]; }
    void close() override { [m_panel close]; }

    void animateFrame(
        Rect frame, double duration, AnimationTiming timing, std::function<void()> completed) override
    {
        NSPanel* panel = m_panel;
        __block auto completion = std::move(completed);
        [NSAnimationContext
            runAnimationGroup:^(NSAnimationContext* context) {
                context.duration = duration;
                context.timingFunction = [CAMediaTimingFunction functionWithName:nameOf(timing)];
                [[panel animator] setFrame:nativeRect(frame) display:YES];
            }
            completionHandler:^{
                if (const auto call = std::exchange(completion, nullptr))
                    call();
            }];
    }

private:
    NSPanel* _Nonnull m_panel;
    EmbeddedView m_view; // goes before the view that it is in
};

NSPanel* _Nonnull nativePanel(const OverlayPanelProperties& properties)
{
    assert(properties.buffered); // this system has no other windows
    NSPanel* panel = [[TinkraOverlayPanel alloc] initWithContentRect:nativeRect(properties.contentRect)
                                                           styleMask:properties.styleMask
                                                             backing:NSBackingStoreBuffered
                                                               defer:properties.deferred];
    panel.floatingPanel = properties.floatingPanel;
    panel.level = properties.level;
    panel.collectionBehavior = properties.collectionBehavior;
    if (properties.clearBackground)
        panel.backgroundColor = NSColor.clearColor;
    panel.opaque = properties.opaque;
    panel.hasShadow = properties.hasShadow;
    panel.hidesOnDeactivate = properties.hidesOnDeactivate;
    panel.movableByWindowBackground = properties.movableByBackground;
    panel.releasedWhenClosed = properties.releasedWhenClosed;
    return panel;
}

}

std::shared_ptr<OverlayPanel> OverlayPanelsMac::makePanel(
    const OverlayPanelProperties& properties, std::unique_ptr<PanelContent> content)
{
    return std::make_shared<OverlayPanelMac>(nativePanel(properties), properties, std::move(content));
}

}
