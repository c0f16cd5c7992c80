#include "AlarmInfrastructure/AlarmPresenter.h"

#include <algorithm>
#include <utility>

namespace Tinkra {

using System::Rect;

namespace {

constexpr float kRingingVolume = 0.7F;
constexpr double kGapBelowMenuBar = 8;
constexpr double kSlideInSeconds = 0.45;
constexpr double kSlideOutSeconds = 0.25;

constexpr Rect kBannerFrame{{0, 0}, AlarmPresenter::bannerSize};
constexpr Rect kFrameWithoutScreen{{0, 0}, {1440, 900}};

constexpr System::OverlayPanelProperties kPanelProperties{
    .contentRect = kBannerFrame,
    .styleMask = System::kNonactivatingPanelStyle,
    .buffered = true,
    .deferred = false,
    .floatingPanel = true,
    .level = System::kScreenSaverWindowLevel,
    .collectionBehavior =
        System::CanJoinAllSpaces | System::Stationary | System::IgnoresCycle | System::FullScreenAuxiliary,
    .clearBackground = true,
    .opaque = false,
    .hasShadow = false,
    .hidesOnDeactivate = false,
    .movableByBackground = true,
    .releasedWhenClosed = false,
};

}

/// One alarm on screen. Its buttons can still be reached while it slides away, and do nothing then.
struct AlarmPresenter::Ring {
    bool isOver = false;
};

AlarmPresenter::AlarmPresenter(Means means)
    : m_means(std::move(means))
    , m_self(std::make_shared<AlarmPresenter*>(this))
{
}

void AlarmPresenter::present(AlarmPayload payload, std::string soundName, bool raise,
    std::function<void()> onSnooze, std::function<void()> onDismiss)
{
    dismiss();
    if (raise)
        raiseVolume();
    m_ring = std::make_shared<Ring>();

    auto view = m_means.makeBannerView({.payload = std::move(payload),
                                           .onSnooze = dismissingThen(std::move(onSnooze)),
                                           .onDismiss = dismissingThen(std::move(onDismiss))},
        kBannerFrame);
    auto panel = m_means.panels->makePanel(kPanelProperties, std::move(view));

    const auto [frame, visibleFrame] = screenUnderPointer();
    const double x = visibleFrame.midX() - bannerSize.width / 2;
    panel->setFrame({{x, frame.maxY() + bannerSize.height}, bannerSize});
    panel->orderFrontRegardless();
    const Rect resting{{x, visibleFrame.maxY() - bannerSize.height - kGapBelowMenuBar}, bannerSize};
    panel->animateFrame(resting, kSlideInSeconds, System::AnimationTiming::EaseOut, nullptr);

    m_panel = std::move(panel);
    m_means.player.startLooping(std::move(soundName));
}

void AlarmPresenter::dismiss()
{
    m_means.player.stop();
    restoreVolume();
    if (const auto ring = std::exchange(m_ring, nullptr))
        ring->isOver = true;
    if (auto panel = std::exchange(m_panel, nullptr))
        slideAway(std::move(panel));
}

void AlarmPresenter::raiseVolume()
{
    m_restoreVolume = m_means.volume.currentVolume();
    if (m_restoreVolume)
        m_means.raisedVolume.remember(*m_restoreVolume);
    // The setter also unmutes, so it runs even when the volume is high enough already.
    m_means.volume.setVolume(std::max(m_restoreVolume.value_or(0), kRingingVolume));
}

void AlarmPresenter::restoreVolume()
{
    const auto level = std::exchange(m_restoreVolume, std::nullopt);
    if (!level)
        return;
    m_means.volume.setVolume(*level);
    m_means.raisedVolume.forget();
}

void AlarmPresenter::slideAway(std::shared_ptr<System::OverlayPanel> panel)
{
    const Rect frame = panel->frame();
    auto screen = panel->screen();
    if (!screen)
        screen = m_means.screens->mainScreen();
    const Rect reference = screen ? screen->frame : frame;

    // Upward, wholly out of sight, from wherever the user has dragged it to.
    const Rect end{{frame.origin.x, reference.maxY() + frame.size.height}, frame.size};
    auto& moving = *panel;
    moving.animateFrame(end, kSlideOutSeconds, System::AnimationTiming::EaseIn,
        [panel = std::move(panel)] { panel->close(); });
}

System::Screen AlarmPresenter::screenUnderPointer()
{
    const auto pointer = m_means.screens->pointerLocation();
    const auto screens = m_means.screens->screens();
    const auto under = std::find_if(screens.begin(), screens.end(),
        [&](const System::Screen& screen) { return screen.frame.holdsPointer(pointer); });
    if (under != screens.end())
        return *under;
    if (const auto main = m_means.screens->mainScreen())
        return *main;
    return screens.empty() ? System::Screen{kFrameWithoutScreen, kFrameWithoutScreen} : screens.front();
}

std::function<void()> AlarmPresenter::dismissingThen(std::function<void()> callback)
{
    return [weak = std::weak_ptr(m_self), ring = m_ring, callback = std::move(callback)] {
        if (std::exchange(ring->isOver, true))
            return;
        const auto then = callback; // dismissing may destroy the view, and this function with it
        if (const auto self = weak.lock())
            (*self)->dismiss();
        if (then)
            then();
    };
}

}
