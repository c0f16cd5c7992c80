#pragma once

#include "AlarmInfrastructure/AlarmPayload.h"
#include "AlarmInfrastructure/AlarmSoundPlayer.h"
#include "AlarmInfrastructure/RaisedVolume.h"

#include "SystemVolume.h"

#include "TinkraSystem/Desktop/OverlayPanel.h"
#include "TinkraSystem/Desktop/Screens.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Tinkra {

/// What the banner's view is made of. Both flags start false; the view sets them when it appears.
struct AlarmBanner {
    AlarmPayload payload;
    std::function<void()> onSnooze;
    std::function<void()> onDismiss;
    bool popped = false; ///< drives the mascot's pop
    bool bob = false; ///< drives its endless bobbing
};

/// Makes the view of a banner, filling `frame`.
using BannerViewMaker =
    std::function<std::unique_ptr<System::PanelContent>(AlarmBanner banner, System::Rect frame)>;

/// Puts a ringing alarm before the user: a panel that slides down over everything, a looping sound and, if
/// wished, a raised volume. At most one alarm rings at a time. Main thread only.
class AlarmPresenter {
public:
    static constexpr System::Size bannerSize{580, 104};

    /// What the presenter works with.
    struct Means {
        std::shared_ptr<System::Screens> screens;
        std::shared_ptr<System::OverlayPanels> panels;
        BannerViewMaker makeBannerView;
        AlarmSoundPlayer player;
        SystemVolume volume;
        RaisedVolume raisedVolume;
    };

    explicit AlarmPresenter(Means means);
    AlarmPresenter(const AlarmPresenter&) = delete;
    AlarmPresenter& operator=(const AlarmPresenter&) = delete;

    /// Rings; an alarm that rings already is taken down first and its callbacks are not called. Pressing a
    /// button takes the alarm down, if the presenter is still there, and then calls the callback in every
    /// case.
    void present(AlarmPayload payload, std::string soundName, bool raiseVolume,
        std::function<void()> onSnooze, std::function<void()> onDismiss);

    /// Takes down what rings; harmless when nothing does.
    void dismiss();

    bool isRinging() const { return m_panel != nullptr; }

private:
    void raiseVolume();
    void restoreVolume();
    void slideAway(std::shared_ptr<System::OverlayPanel> panel);
    System::Screen screenUnderPointer();
    std::function<void()> dismissingThen(std::function<void()> callback);

    struct Ring;

    Means m_means;
    std::shared_ptr<Ring> m_ring; ///< the one that shows
    std::shared_ptr<System::OverlayPanel> m_panel;
    std::optional<float> m_restoreVolume;
    std::shared_ptr<AlarmPresenter*> m_self; ///< held weakly by buttons, which may outlive the presenter
};

}
