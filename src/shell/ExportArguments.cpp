// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ExportArguments.h"

#include <span>

#include "shell/Arguments.h"
#include "shell/CommandError.h"

namespace tessaloom {
namespace {

template <typename Value>
struct Choice {
    const char* word;
    Value value;
};

constexpr std::array<Choice<ResolutionPreset>, 4> resolutions{{{"720p", ResolutionPreset::p720},
                                                               {"1080p", ResolutionPreset::p1080},
                                                               {"1440p", ResolutionPreset::p1440},
                                                               {"4k", ResolutionPreset::p2160}}};

constexpr std::array<Choice<AspectPreset>, 5> shapes{{{"native", AspectPreset::native},
                                                      {"16:9", AspectPreset::wide},
                                                      {"1:1", AspectPreset::square},
                                                      {"4:5", AspectPreset::portrait},
                                                      {"9:16", AspectPreset::vertical}}};

constexpr std::array<Choice<QualityPreset>, 3> qualities{
    {{"high", QualityPreset::high}, {"balanced", QualityPreset::balanced}, {"small", QualityPreset::small}}};

template <typename Value>
std::optional<Value> chosen(const Arguments& arguments, const QString& option,
                            std::span<const Choice<Value>> choices) {
    const auto given = arguments.text(option);
    if (!given) return std::nullopt;
    QStringList words;
    for (const auto& choice : choices) {
        if (given->toLower() == choice.word) return choice.value;
        words.append(choice.word);
    }
    throw UsageError(QStringLiteral("--%1 is one of %2, not \"%3\".")
                         .arg(option, words.join(QStringLiteral(", ")), *given)
                         .toStdString());
}

std::filesystem::path parseDestination(const QString& file) {
    std::filesystem::path path = file.toStdString();
    if (path.extension() != ".mp4") throw UsageError("-o takes a file name that ends in .mp4.");
    return path;
}

}  // namespace

ExportArguments ExportArguments::parse(const QStringList& words) {
    const Arguments arguments(words,
                              {{"output", "FILE", "o"},
                               {"format", "FORMAT", {}},
                               {"resolution", "R", {}},
                               {"shape", "S", {}},
                               {"quality", "Q", {}}},
                              {"RECORDING"});
    ExportArguments parsed{.bundle = arguments.words().first(), .destination = {}, .choices = {}};
    if (const auto format = arguments.text("format"); format && *format != "mp4") {
        throw UsageError("--format is mp4.");
    }
    if (const auto file = arguments.text("output")) parsed.destination = parseDestination(*file);
    parsed.choices.shape = chosen<AspectPreset>(arguments, "shape", shapes);
    parsed.choices.resolution =
        chosen<ResolutionPreset>(arguments, "resolution", resolutions).value_or(parsed.choices.resolution);
    parsed.choices.quality =
        chosen<QualityPreset>(arguments, "quality", qualities).value_or(parsed.choices.quality);
    return parsed;
}

}  // namespace tessaloom
