#include "TinkraSystemLinux/SoundLibraryLinux.h"

#include "PrivateSoundServer/PrivateSoundServer.h"

#include "TinkraSystemLinux/Sound/WaveFile.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

namespace Tinkra::System {
namespace {

std::string littleEndian(std::uint32_t value, int bytes)
{
    std::string text;
    for (int i = 0; i < bytes; ++i, value >>= 8U)
        text.push_back(static_cast<char>(value & 0xFFU));
    return text;
}

struct Format {
    std::uint32_t kind = 1;
    std::uint32_t channels = 1;
    std::uint32_t rate = 48000;
    std::uint32_t bits = 16;
};

std::string wave(std::string data, Format format = {})
{
    const auto description = littleEndian(format.kind, 2) + littleEndian(format.channels, 2)
        + littleEndian(format.rate, 4) + littleEndian(format.rate * 2 * format.channels, 4)
        + littleEndian(2 * format.channels, 2) + littleEndian(format.bits, 2);
    return "RIFF" + littleEndian(static_cast<std::uint32_t>(data.size()) + 36, 4) + "WAVEfmt "
        + littleEndian(16, 4) + description + "data"
        + littleEndian(static_cast<std::uint32_t>(data.size()), 4) + data;
}

const std::string kTenthOfASecond(9600, '\x11');

class SoundFiles : public testing::Test {
protected:
    void write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(folder.path() / name, std::ios::binary) << bytes;
    }

    bool knows(std::string_view name) { return library.sound(name) != nullptr; }

    TemporaryFolder folder;
    SoundLibraryLinux library{{folder.path() / "missing", folder.path()}};
};

TEST_F(SoundFiles, ASoundIsFoundByExactlyItsName)
{
    write("Ping.wav", wave(kTenthOfASecond));

    EXPECT_TRUE(knows("Ping"));
    EXPECT_FALSE(knows("ping"));
    EXPECT_FALSE(knows("Glass"));
}

TEST_F(SoundFiles, ANameIsNoWayIntoOtherFolders)
{
    std::filesystem::create_directory(folder.path() / "inner");
    write("Ping.wav", wave(kTenthOfASecond));
    SoundLibraryLinux inner({folder.path() / "inner"});

    for (const std::string name : {"../Ping", "..", "", ".", "/etc/passwd", "Pi\0ng"})
        EXPECT_EQ(inner.sound(name), nullptr) << name;
}

TEST_F(SoundFiles, AMissingFileIsNoSound)
{
    EXPECT_FALSE(knows("Ping"));
}

TEST_F(SoundFiles, AFolderIsNoSound)
{
    std::filesystem::create_directory(folder.path() / "Ping.wav");
    EXPECT_FALSE(knows("Ping"));
}

TEST_F(SoundFiles, AFileOfTwoGigabytesIsNoSound)
{
    write("Ping.wav", wave(kTenthOfASecond));
    std::filesystem::resize_file(folder.path() / "Ping.wav", std::uintmax_t{2} << 30U);
    EXPECT_FALSE(knows("Ping"));
}

TEST_F(SoundFiles, APipeThatNobodyWritesIsNoSound)
{
    ASSERT_EQ(::mkfifo((folder.path() / "Ping.wav").c_str(), 0600), 0);
    EXPECT_FALSE(knows("Ping"));
}

TEST_F(SoundFiles, WhatIsNotAudioIsNoSound)
{
    for (const auto& bytes : {std::string(), std::string("<html></html>"), std::string(100, '\0'), wave(""),
             wave(kTenthOfASecond, {.kind = 3}), wave(kTenthOfASecond, {.channels = 0}),
             wave(kTenthOfASecond, {.channels = 3}), wave(kTenthOfASecond, {.rate = 0}),
             wave(kTenthOfASecond, {.bits = 8})}) {
        write("Ping.wav", bytes);
        EXPECT_FALSE(knows("Ping"));
    }
}

TEST_F(SoundFiles, AFileThatIsBrokenInOneFolderIsLookedForInTheNext)
{
    std::filesystem::create_directory(folder.path() / "own");
    std::ofstream(folder.path() / "own" / "Ping.wav") << "noise";
    write("Ping.wav", wave(kTenthOfASecond));

    EXPECT_NE(SoundLibraryLinux({folder.path() / "own", folder.path()}).sound("Ping"), nullptr);
}

TEST(WaveFile, CutAnywhereItIsNothingOrHoldsWholeMoments)
{
    const auto whole = wave(kTenthOfASecond.substr(0, 64), {.channels = 2});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        if (const auto recording = parseWave(std::string_view(whole).substr(0, length)))
            EXPECT_EQ(recording->samples.size() % 2, 0U) << length;
    }
}

TEST(WaveFile, SkipsChunksItDoesNotKnow)
{
    auto bytes = wave(std::string("\x01\x00\xFF\xFF", 4));
    bytes.insert(12, "LIST" + littleEndian(3, 4) + "abc" + std::string(1, '\0'));

    const auto recording = parseWave(bytes);

    ASSERT_TRUE(recording.has_value());
    EXPECT_THAT(recording->samples, testing::ElementsAre(1, -1));
}

class PlayingSound : public SoundFiles {
protected:
    PlayingSound()
    {
        write("Ping.wav", wave(kTenthOfASecond));
        sound = library.sound("Ping");
        sound->setLoops(true);
    }

    PrivateSoundServer server;
    std::unique_ptr<Sound> sound;
};

TEST_F(PlayingSound, LoopsUntilItIsStopped)
{
    EXPECT_TRUE(sound->play());
    server.waitUntilPlaying(1);
    sound->stop();
    server.waitUntilPlaying(0);
}

TEST_F(PlayingSound, EndsWhenItIsDropped)
{
    sound->play();
    server.waitUntilPlaying(1);
    sound.reset();
    server.waitUntilPlaying(0);
}

TEST_F(PlayingSound, WithoutLoopsEndsByItself)
{
    sound->setLoops(false);
    sound->play();
    server.waitUntilPlaying(1);
    server.waitUntilPlaying(0);
}

TEST_F(PlayingSound, GoesOnWithAServerThatWasStartedAnew)
{
    sound->play();
    server.waitUntilPlaying(1);
    server.kill();
    server.start();
    server.waitUntilPlaying(1);
}

TEST_F(PlayingSound, GoesOnWhenItsDeviceIsUnpluggedAndAnotherComes)
{
    sound->play();
    server.waitUntilPlaying(1);
    server.control("unload-module module-null-sink");
    server.waitUntilPlaying(0);
    server.control("load-module module-null-sink sink_name=other");
    server.waitUntilPlaying(1);
}

TEST_F(PlayingSound, AFrozenServerHoldsNobodyUp)
{
    server.freeze();
    sound->play();
    sound->stop();
    sound->play();
    sound.reset();
}

TEST_F(PlayingSound, AServerThatFreezesWhileItPlaysHoldsNobodyUp)
{
    sound->play();
    server.waitUntilPlaying(1);
    server.freeze();
    sound->stop();
}

TEST_F(PlayingSound, WithoutAServerThereIsSilence)
{
    server.kill();
    EXPECT_TRUE(sound->play());
    sound->stop();
}

}
}
