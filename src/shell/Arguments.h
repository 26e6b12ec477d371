// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCommandLineParser>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace tessaloom {

/// One option of a command: its name, and what its value is called when it takes one.
struct OptionName {
    QString name;
    QString value;
    QString alias;
};

/// A command's own arguments, read strictly: whatever isn't understood is a UsageError that names it.
class Arguments {
  public:
    /// `wordNames` says what each of the plain words is. Throws UsageError for an unknown option, a missing
    /// value, and plain words that are missing or too many.
    Arguments(const QStringList& words, const QList<OptionName>& options, const QStringList& wordNames);

    bool has(const QString& option) const { return parser_.isSet(option); }
    QStringList words() const { return parser_.positionalArguments(); }

    /// The last value given; nothing when the option isn't there. The numeric ones throw UsageError for a
    /// value that isn't a finite number.
    std::optional<QString> text(const QString& option) const;
    std::optional<double> number(const QString& option) const;
    std::optional<int> integer(const QString& option) const;

    /// All values of an option that may be repeated, in their order.
    std::vector<double> numbers(const QString& option) const;

  private:
    QCommandLineParser parser_;
};

}  // namespace tessaloom
