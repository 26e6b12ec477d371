// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SoundMaker.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <numbers>
#include <utility>

#include "support/Ffmpeg.h"

namespace tessaloom::test {
namespace {

std::string littleEndian(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
    return text;
}

std::size_t samples(double seconds, int rate) {
    return static_cast<std::size_t>(std::llround(seconds * rate));
}

}  // namespace

Sound beeps(double seconds, std::span<const double> times, int rate) {
    Sound sound(samples(seconds, rate));
    const Sound beep = sine(beepLength, 1000, 0.5, rate);
    for (const double time : times) {
        const std::size_t start = samples(time, rate);
        for (std::size_t i = 0; i < beep.size() && start + i < sound.size(); ++i)
            sound[start + i] = beep[i];
    }
    return sound;
}

Sound sine(double seconds, double frequency, double peak, int rate) {
    Sound sound(samples(seconds, rate));
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double phase = 2 * std::numbers::pi * frequency * static_cast<double>(i) / rate;
        sound[i] = static_cast<float>(peak * std::sin(phase));
    }
    return sound;
}

void writeWave(const std::filesystem::path& path, std::span<const float> sound, int rate) {
    const auto bytes = static_cast<std::uint32_t>(2 * sound.size());
    const auto perSecond = static_cast<std::uint32_t>(rate);
    std::ofstream file(path, std::ios::binary);
    file << "RIFF" << littleEndian(36 + bytes, 4) << "WAVEfmt " << littleEndian(16, 4) << littleEndian(1, 2)
         << littleEndian(1, 2) << littleEndian(perSecond, 4) << littleEndian(2 * perSecond, 4)
         << littleEndian(2, 2) << littleEndian(16, 2) << "data" << littleEndian(bytes, 4);
    std::string samples;
    samples.reserve(bytes);
    for (const float value : sound)
        samples += littleEndian(static_cast<std::uint32_t>(std::lround(value * 32767)), 2);
    file << samples;
}

void convertSound(const std::filesystem::path& wave, const std::filesystem::path& target,
                  const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"-i", wave.string()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(target.string());
    runFfmpeg(arguments);
}

MonoSource::MonoSource(Sound sound)
    : sample_([sound = std::move(sound)](std::int64_t position) {
          return position < static_cast<std::int64_t>(sound.size())
                     ? sound[static_cast<std::size_t>(position)]
                     : 0.0F;
      }) {}

void MonoSource::read(std::span<StereoSample> target) {
    for (StereoSample& sample : target) {
        const float value = sample_(position_++);
        sample = {value, value};
    }
}

std::vector<StereoSample> pull(SoundSource& source, std::int64_t count) {
    constexpr std::size_t block = 777;
    std::vector<StereoSample> sound(static_cast<std::size_t>(count));
    for (std::size_t done = 0; done < sound.size(); done += block)
        source.read(std::span(sound).subspan(done, std::min(block, sound.size() - done)));
    return sound;
}

std::vector<double> onsets(std::span<const StereoSample> sound) {
    constexpr float audible = 0.1F;
    constexpr std::size_t pause = soundRate / 50;
    std::vector<double> times;
    std::size_t silentSince = 0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        if (std::abs(sound[i].left) < audible) continue;
        if (times.empty() || i - silentSince >= pause) times.push_back(static_cast<double>(i) / soundRate);
        silentSince = i;
    }
    return times;
}

double peakBetween(std::span<const StereoSample> sound, double start, double end) {
    double peak = 0;
    for (std::size_t i = samples(start, soundRate); i < std::min(samples(end, soundRate), sound.size()); ++i)
        peak = std::max(peak, std::abs(static_cast<double>(sound[i].left)));
    return peak;
}

double steepestStep(std::span<const StereoSample> sound) {
    double steepest = 0;
    for (std::size_t i = 1; i < sound.size(); ++i)
        steepest = std::max(steepest, std::abs(static_cast<double>(sound[i].left - sound[i - 1].left)));
    return steepest;
}

}  // namespace tessaloom::test
