#include "AlarmInfrastructure/RaisedVolume.h"

#include <array>
#include <charconv>
#include <utility>

namespace Tinkra {

namespace {

constexpr auto kKey = "tinkra.volumeToRestore";

}

RaisedVolume::RaisedVolume(std::shared_ptr<System::Defaults> defaults)
    : m_defaults(std::move(defaults))
{
}

void RaisedVolume::remember(float volumeToRestore)
{
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), volumeToRestore);
    m_defaults->setData(kKey, {text.data(), static_cast<std::size_t>(end - text.data())});
}

void RaisedVolume::forget()
{
    m_defaults->setData(kKey, "");
}

std::optional<float> RaisedVolume::left() const
{
    const auto text = m_defaults->data(kKey);
    if (!text)
        return std::nullopt;
    float volume = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), volume);
    const bool usable =
        error == std::errc{} && end == text->data() + text->size() && volume >= 0 && volume <= 1;
    return usable ? std::optional{volume} : std::nullopt;
}

void restoreVolumeLeftRaised(RaisedVolume& raised, SystemVolume& volume)
{
    const auto left = raised.left();
    if (!left)
        return;
    volume.setVolume(*left);
    raised.forget();
}

}
