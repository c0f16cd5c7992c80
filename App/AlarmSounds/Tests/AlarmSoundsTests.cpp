#include "AlarmSounds.h"
#include "WaveFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Tinkra::AlarmSounds {
namespace {

class AlarmSound : public testing::TestWithParam<std::string_view> {
protected:
    const std::vector<double> samples = samplesOf(GetParam());
};

double rootMeanSquare(std::vector<double>::const_iterator from, std::vector<double>::const_iterator to)
{
    double squares = 0;
    for (auto sample = from; sample != to; ++sample)
        squares += *sample * *sample;
    return std::sqrt(squares / static_cast<double>(to - from));
}

double peakOf(const std::vector<double>& samples)
{
    double peak = 0;
    for (const double sample : samples)
        peak = std::max(peak, std::abs(sample));
    return peak;
}

TEST_P(AlarmSound, NeverClips)
{
    EXPECT_LE(peakOf(samples), 0.9);
}

TEST_P(AlarmSound, IsLoudEnough)
{
    EXPECT_GE(rootMeanSquare(samples.begin(), samples.end()), 0.13);
}

TEST_P(AlarmSound, LoopsWithoutAClick)
{
    double widestStep = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        widestStep = std::max(widestStep, std::abs(samples[i] - samples[i - 1]));

    EXPECT_LE(std::abs(samples.front() - samples.back()), widestStep);
}

TEST_P(AlarmSound, NeverFallsSilentForFiveMilliseconds)
{
    const auto window = static_cast<std::ptrdiff_t>(0.005 * kSampleRate);
    for (auto from = samples.begin(); samples.end() - from > window; from += window / 2)
        ASSERT_GE(rootMeanSquare(from, from + window), 0.003) << "at sample " << (from - samples.begin());
}

TEST_P(AlarmSound, LastsAFewSeconds)
{
    const double seconds = static_cast<double>(samples.size()) / kSampleRate;
    EXPECT_GE(seconds, 1);
    EXPECT_LE(seconds, 4);
}

TEST_P(AlarmSound, HasNoOffset)
{
    double sum = 0;
    for (const double sample : samples)
        sum += sample;
    EXPECT_NEAR(sum / static_cast<double>(samples.size()), 0, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(
    All, AlarmSound, testing::ValuesIn(kNames), [](const auto& info) { return std::string{info.param}; });

// How strongly each third of an octave from 60 Hz up takes part, as a unit vector.
std::vector<double> spectrumOf(const std::vector<double>& samples)
{
    std::vector<double> bands;
    for (double pitch = 60; pitch < 8000; pitch *= std::cbrt(2)) {
        double real = 0;
        double imaginary = 0;
        double power = 0;
        const std::size_t block = 4800;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const double angle = 2 * std::numbers::pi * pitch * static_cast<double>(i) / kSampleRate;
            real += samples[i] * std::cos(angle);
            imaginary += samples[i] * std::sin(angle);
            if (i % block == block - 1) {
                power += real * real + imaginary * imaginary;
                real = imaginary = 0;
            }
        }
        bands.push_back(std::sqrt(power));
    }
    double length = 0;
    for (const double band : bands)
        length += band * band;
    for (double& band : bands)
        band /= std::sqrt(length);
    return bands;
}

TEST(AlarmSounds, AreDistinct)
{
    std::vector<std::vector<double>> spectra;
    for (const auto name : kNames)
        spectra.push_back(spectrumOf(samplesOf(name)));

    for (std::size_t i = 0; i < spectra.size(); ++i) {
        for (std::size_t j = i + 1; j < spectra.size(); ++j) {
            double likeness = 0;
            for (std::size_t band = 0; band < spectra[i].size(); ++band)
                likeness += spectra[i][band] * spectra[j][band];
            EXPECT_LT(likeness, 0.95) << kNames[i] << " and " << kNames[j];
        }
    }
}

TEST(WaveFile, HoldsTheSamplesBehindACanonicalHeader)
{
    const auto file = waveFile({0, 1, -1, 0.5});

    ASSERT_EQ(file.size(), 44U + 8U);
    EXPECT_EQ(file.substr(0, 4), "RIFF");
    EXPECT_EQ(file.substr(8, 8), "WAVEfmt ");
    EXPECT_EQ(file.substr(36, 4), "data");
    EXPECT_EQ(file.substr(4, 4), std::string("\x2c\0\0\0", 4));
    EXPECT_EQ(file.substr(24, 4), std::string("\x80\xbb\0\0", 4)) << "48,000 a second";
    EXPECT_EQ(file.substr(44), std::string("\0\0\xff\x7f\x01\x80\0\x40", 8));
}

}
}
