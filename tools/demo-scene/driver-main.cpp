// SPDX-License-Identifier: GPL-3.0-or-later
#include <QFile>
#include <QJsonDocument>
#include <QStringList>
#include <cstdio>
#include <exception>
#include <map>
#include <stdexcept>

#include "demo-scene/DemoPlayer.h"
#include "demo-scene/DemoScript.h"

namespace {

using tessaloom::demo::DemoPlayer;
using tessaloom::demo::demoScript;
using tessaloom::demo::JsonLines;
using tessaloom::demo::Step;
using tessaloom::demo::StepKind;

constexpr const char* usage =
    "Plays steps on the display $DISPLAY with real input events, in the order given.\n"
    "usage: tessaloom-demo-driver [--geometry FILE] [--log FILE] STEP...\n"
    "  --script demo     the built-in demonstration\n"
    "  --move TARGET     TARGET is X,Y or a control's name in the geometry file\n"
    "  --click TARGET\n"
    "  --type TEXT\n"
    "  --key COMBINATION as Ctrl+S or Return\n"
    "  --wait SECONDS\n";

struct Options {
    QString geometryFile;
    QString logFile;
    std::vector<Step> steps;
};

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void addOption(Options& options, const QString& name, const QString& value) {
    static const std::map<QString, StepKind> kinds{{"--move", StepKind::Move},
                                                   {"--click", StepKind::Click},
                                                   {"--type", StepKind::Type},
                                                   {"--key", StepKind::Key},
                                                   {"--wait", StepKind::Wait}};
    if (name == "--geometry") {
        options.geometryFile = value;
    } else if (name == "--log") {
        options.logFile = value;
    } else if (name == "--script" && value == "demo") {
        const std::vector<Step> script = demoScript();
        options.steps.insert(options.steps.end(), script.begin(), script.end());
    } else if (const auto kind = kinds.find(name); kind != kinds.end()) {
        options.steps.push_back({kind->second, value});
    } else {
        throw UsageError("Unknown option " + name.toStdString() + ' ' + value.toStdString());
    }
}

Options parse(const QStringList& arguments) {
    if (arguments.size() % 2 != 0) throw UsageError("Each option takes one value");
    Options options;
    for (qsizetype index = 0; index < arguments.size(); index += 2) {
        addOption(options, arguments[index], arguments[index + 1]);
    }
    if (options.steps.empty()) throw UsageError("There are no steps to play");
    return options;
}

QJsonObject readGeometry(const QString& path) {
    if (path.isEmpty()) return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("Can't read " + path.toStdString());
    return QJsonDocument::fromJson(file.readAll()).object();
}

void playAll(const Options& options) {
    JsonLines log(options.logFile);
    DemoPlayer player(qgetenv("DISPLAY").toStdString(), readGeometry(options.geometryFile), log);
    for (const Step& step : options.steps)
        player.play(step);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    try {
        QStringList options;
        for (int index = 1; index < argumentCount; ++index)
            options << QString::fromLocal8Bit(arguments[index]);
        playAll(parse(options));
        return 0;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "tessaloom-demo-driver: %s\n%s", error.what(), usage);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tessaloom-demo-driver: %s\n", error.what());
        return 1;
    }
}
