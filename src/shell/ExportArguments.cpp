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

constexpr std::array<Choice<ExportFormat>, 2> formats{
    {{"mp4", ExportFormat::mp4}, {"gif", ExportFormat::gif}}};

constexpr std::array<Choice<int>, 3> gifRates{{{"10", 10}, {"15", 15}, {"24", 24}}};

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

std::optional<ExportFormat> formatOf(const std::filesystem::path& file) {
    const QString extension = QString::fromStdString(file.extension().string()).toLower();
    for (const auto& [word, format] : formats)
        if (extension == QLatin1String(extensionOf(format))) return format;
    return std::nullopt;
}

/// What was asked for, else what the file is called.
ExportFormat parseFormat(const Arguments& arguments, const std::optional<std::filesystem::path>& file) {
    const auto wanted = chosen<ExportFormat>(arguments, "format", formats);
    if (!file) return wanted.value_or(ExportFormat::mp4);
    const auto named = formatOf(*file);
    if (wanted && named != wanted)
        throw UsageError(std::string("-o takes a file name that ends in ") + extensionOf(*wanted) + ".");
    if (!named) throw UsageError("-o takes a file name that ends in .mp4 or .gif.");
    return *named;
}

std::optional<bool> parseLoop(const Arguments& arguments) {
    const bool loops = arguments.has("loop");
    const bool plays = arguments.has("no-loop");
    if (loops && plays) throw UsageError("Choose one of --loop and --no-loop.");
    return loops || plays ? std::optional(loops) : std::nullopt;
}

}  // namespace

const char* extensionOf(ExportFormat format) {
    return format == ExportFormat::gif ? ".gif" : ".mp4";
}

ExportArguments ExportArguments::parse(const QStringList& words) {
    const Arguments arguments(words,
                              {{"output", "FILE", "o"},
                               {"format", "FORMAT", {}},
                               {"resolution", "R", {}},
                               {"shape", "S", {}},
                               {"quality", "Q", {}},
                               {"fps", "N", {}},
                               {"loop", {}, {}},
                               {"no-loop", {}, {}}},
                              {"RECORDING"});
    ExportArguments parsed{
        .bundle = arguments.words().first(), .destination = {}, .format = ExportFormat::mp4, .choices = {}};
    if (const auto file = arguments.text("output")) parsed.destination = file->toStdString();
    parsed.format = parseFormat(arguments, parsed.destination);
    ExportChoices& choices = parsed.choices;
    choices.shape = chosen<AspectPreset>(arguments, "shape", shapes);
    choices.resolution =
        chosen<ResolutionPreset>(arguments, "resolution", resolutions).value_or(choices.resolution);
    choices.quality = chosen<QualityPreset>(arguments, "quality", qualities).value_or(choices.quality);
    choices.gifFPS = chosen<int>(arguments, "fps", gifRates).value_or(choices.gifFPS);
    choices.gifLoop = parseLoop(arguments);
    return parsed;
}

}  // namespace tessaloom
