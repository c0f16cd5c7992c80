#include "RecordingDesktop.h"

#include <algorithm>
#include <sstream>

namespace Tinkra {

using namespace System;

namespace {

std::string describe(double number)
{
    std::ostringstream text;
    text << number;
    return text.str();
}

std::string describe(Rect rect)
{
    return "(" + describe(rect.origin.x) + ", " + describe(rect.origin.y) + ", " + describe(rect.size.width)
        + " x " + describe(rect.size.height) + ")";
}

class FakeSound final : public Sound {
public:
    FakeSound(DesktopLog& log, int& playing, std::string name)
        : m_log(log)
        , m_playing(playing)
        , m_name(std::move(name))
    {
    }

    void setLoops(bool loops) override { m_log.push_back(m_name + (loops ? " loops" : " plays once")); }
    bool play() override
    {
        m_log.push_back(m_name + " plays");
        ++m_playing;
        return true;
    }
    void stop() override
    {
        m_log.push_back(m_name + " stops");
        --m_playing;
    }

private:
    DesktopLog& m_log;
    int& m_playing;
    std::string m_name;
};

}

std::unique_ptr<Sound> FakeSoundLibrary::sound(std::string_view name)
{
    if (std::find(names.begin(), names.end(), name) == names.end())
        return nullptr;
    return std::make_unique<FakeSound>(m_log, playing, std::string{name});
}

std::shared_ptr<OverlayPanel> FakePanels::makePanel(
    const OverlayPanelProperties& wanted, std::unique_ptr<PanelContent> content)
{
    properties.push_back(wanted);
    auto panel = std::make_shared<Panel>(*this, properties.size(), std::move(content));
    panels.push_back(panel);
    return panel;
}

void FakePanels::finishAnimations()
{
    while (!m_completions.empty()) {
        const auto completed = std::move(m_completions.front());
        m_completions.pop_front();
        if (completed)
            completed();
    }
}

FakePanels::Panel::Panel(FakePanels& owner, std::size_t number, std::unique_ptr<PanelContent> content)
    : m_owner(owner)
    , m_number(number)
    , m_content(std::move(content))
{
    log("made");
}

void FakePanels::Panel::setFrame(Rect frame)
{
    current = frame;
    log("put at " + describe(frame));
}

void FakePanels::Panel::orderFrontRegardless()
{
    log("ordered front");
}

void FakePanels::Panel::animateFrame(
    Rect frame, double duration, AnimationTiming timing, std::function<void()> completed)
{
    current = frame;
    log("moves to " + describe(frame) + " in " + describe(duration) + " s "
        + (timing == AnimationTiming::EaseIn ? "ease-in" : "ease-out"));
    m_owner.m_completions.push_back(std::move(completed));
}

void FakePanels::Panel::close()
{
    log("closed");
}

void FakePanels::Panel::log(const std::string& what)
{
    m_owner.m_log.push_back("panel " + std::to_string(m_number) + " " + what);
}

std::optional<std::string> FakeRaisedVolumeDefaults::data(std::string_view key)
{
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional{found->second};
}

void FakeRaisedVolumeDefaults::setData(std::string_view key, std::string_view bytes)
{
    m_log.emplace_back(bytes.empty() ? "volume forgotten" : "volume remembered");
    values[std::string{key}] = bytes;
}

AlarmPresenter::Means RecordingDesktop::means()
{
    return {
        .screens = screens,
        .panels = panels,
        .makeBannerView =
            [this](AlarmBanner banner, Rect frame) {
                log.emplace_back("view made");
                banners.push_back(std::move(banner));
                viewFrames.push_back(frame);
                return std::make_unique<PanelContent>();
            },
        .player = AlarmSoundPlayer{sounds},
        .volume = SystemVolume{audio},
        .raisedVolume = RaisedVolume{defaults},
    };
}

}
