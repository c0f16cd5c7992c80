#pragma once

#include "AlarmInfrastructure/AlarmPresenter.h"

#include "TinkraTestSupport/FakeAudioDevice.h"

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Tinkra {

/// What was asked of the system, in order, one line a call.
using DesktopLog = std::vector<std::string>;

/// Sounds that are known by name and say what is done to them.
class FakeSoundLibrary final : public System::SoundLibrary {
public:
    explicit FakeSoundLibrary(DesktopLog& log)
        : m_log(log)
    {
    }

    std::vector<std::string> names{"Glass", "Ping"};
    int playing = 0; ///< how many sounds are heard now

    std::unique_ptr<System::Sound> sound(std::string_view name) override;

private:
    DesktopLog& m_log;
};

class FakeScreens final : public System::Screens {
public:
    std::vector<System::Screen> all{{{{0, 0}, {1440, 900}}, {{0, 0}, {1440, 875}}}};
    std::optional<System::Screen> main = all.front();
    System::Point pointer{700, 400};

    std::vector<System::Screen> screens() override { return all; }
    std::optional<System::Screen> mainScreen() override { return main; }
    System::Point pointerLocation() override { return pointer; }
};

/// The panels that were made. Animations end when the test says so.
class FakePanels final : public System::OverlayPanels {
public:
    class Panel;

    explicit FakePanels(DesktopLog& log)
        : m_log(log)
    {
    }

    std::shared_ptr<System::OverlayPanel> makePanel(const System::OverlayPanelProperties& properties,
        std::unique_ptr<System::PanelContent> content) override;

    std::vector<System::OverlayPanelProperties> properties;
    std::vector<std::weak_ptr<Panel>> panels;

    /// Ends the animations that run, in the order in which they began.
    void finishAnimations();

private:
    DesktopLog& m_log;
    std::deque<std::function<void()>> m_completions;
};

class FakePanels::Panel final : public System::OverlayPanel {
public:
    Panel(FakePanels& owner, std::size_t number, std::unique_ptr<System::PanelContent> content);

    System::Rect current;
    std::optional<System::Screen> on;

    System::Rect frame() override { return current; }
    std::optional<System::Screen> screen() override { return on; }
    void setFrame(System::Rect frame) override;
    void orderFrontRegardless() override;
    void animateFrame(System::Rect frame, double duration, System::AnimationTiming timing,
        std::function<void()> completed) override;
    void close() override;

private:
    void log(const std::string& what);

    FakePanels& m_owner;
    std::size_t m_number;
    std::unique_ptr<System::PanelContent> m_content;
};

/// One value per key, in memory.
class FakeRaisedVolumeDefaults final : public System::Defaults {
public:
    explicit FakeRaisedVolumeDefaults(DesktopLog& log)
        : m_log(log)
    {
    }

    std::map<std::string, std::string, std::less<>> values;

    std::optional<std::string> data(std::string_view key) override;
    void setData(std::string_view key, std::string_view bytes) override;

private:
    DesktopLog& m_log;
};

/// A presenter among fakes that share one log.
struct RecordingDesktop {
    DesktopLog log;
    std::shared_ptr<System::FakeAudioDevice> audio = std::make_shared<System::FakeAudioDevice>(
        [this](std::string call) { log.push_back(std::move(call)); });
    std::shared_ptr<FakeSoundLibrary> sounds = std::make_shared<FakeSoundLibrary>(log);
    std::shared_ptr<FakeScreens> screens = std::make_shared<FakeScreens>();
    std::shared_ptr<FakePanels> panels = std::make_shared<FakePanels>(log);
    std::shared_ptr<FakeRaisedVolumeDefaults> defaults = std::make_shared<FakeRaisedVolumeDefaults>(log);
    std::vector<AlarmBanner> banners; ///< of the views that were made
    std::vector<System::Rect> viewFrames;

    AlarmPresenter::Means means();

    /// What was logged since the last time this was asked.
    DesktopLog takeLog() { return std::exchange(log, {}); }
};

}
