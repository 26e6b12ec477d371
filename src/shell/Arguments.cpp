// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/Arguments.h"

#include <cmath>

#include "shell/CommandError.h"

namespace tessaloom {
namespace {

[[noreturn]] void refuseValue(const QString& option, const QString& value, const char* wanted) {
    throw UsageError(QStringLiteral("--%1 takes %2, not \"%3\".").arg(option, wanted, value).toStdString());
}

double finiteNumber(const QString& option, const QString& value) {
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (!ok || !std::isfinite(number)) refuseValue(option, value, "a number");
    return number;
}

}  // namespace

Arguments::Arguments(const QStringList& words, const QList<OptionName>& options,
                     const QStringList& wordNames) {
    for (const OptionName& option : options) {
        QStringList names{option.name};
        if (!option.alias.isEmpty()) names.append(option.alias);
        parser_.addOption(QCommandLineOption(names, QString(), option.value));
    }
    // The parser skips the first word, a program's name.
    if (!parser_.parse(QStringList{QString()} + words)) throw UsageError(parser_.errorText().toStdString());
    const QStringList given = this->words();
    if (given.size() < wordNames.size())
        throw UsageError(wordNames[given.size()].toStdString() + " is missing.");
    if (given.size() > wordNames.size()) {
        throw UsageError(
            QStringLiteral("Don't know what to do with \"%1\".").arg(given[wordNames.size()]).toStdString());
    }
}

std::optional<QString> Arguments::text(const QString& option) const {
    if (!has(option)) return std::nullopt;
    return parser_.value(option);
}

std::optional<double> Arguments::number(const QString& option) const {
    const auto value = text(option);
    if (!value) return std::nullopt;
    return finiteNumber(option, *value);
}

std::optional<int> Arguments::integer(const QString& option) const {
    const auto value = text(option);
    if (!value) return std::nullopt;
    bool ok = false;
    const int number = value->toInt(&ok);
    if (!ok) refuseValue(option, *value, "a whole number");
    return number;
}

std::vector<double> Arguments::numbers(const QString& option) const {
    std::vector<double> numbers;
    for (const QString& value : parser_.values(option))
        numbers.push_back(finiteNumber(option, value));
    return numbers;
}

}  // namespace tessaloom
