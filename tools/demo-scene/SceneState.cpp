// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/SceneState.h"

#include <algorithm>
#include <functional>

#include "demo-scene/SceneLayout.h"

namespace tessaloom::demo {
namespace {

constexpr double fadesPerSecond = 6;
constexpr double hoursPerSecond = 6;
constexpr double toastSeconds = 2.2;

const QStringList& sections() {
    static const QStringList names{QStringLiteral("Today"), QStringLiteral("Visits"),
                                   QStringLiteral("Clients"), QStringLiteral("Invoices"),
                                   QStringLiteral("Reports")};
    return names;
}

bool belongsToTab(const Visit& visit, int tab) {
    const bool done = visit.status == VisitStatus::Ready || visit.status == VisitStatus::Invoiced;
    return tab == 0 || (tab == 2) == done;
}

}  // namespace

SceneState::SceneState() : visits_(sampleVisits()) {
    load();
    sharedLevel_.value = sharedLevel_.target;
    for (Animated& hours : hours_)
        hours.value = hours.target;
}

void SceneState::press(ControlId control) {
    pressed_ = control;
    const bool inPalette = control.kind == ControlKind::Palette || control.kind == ControlKind::PaletteItem;
    if (!inPalette) closePalette();
    if (control.kind != ControlKind::Status && control.kind != ControlKind::MenuItem) menuLevel_.target = 0;
    if (inPalette) return;
    if (TextLine* text = focusedText()) text->deselect();
    focused_ = control.kind == ControlKind::Field ? control : ControlId{};
}

void SceneState::release(ControlId control) {
    if (control == pressed_) activate(control);
    pressed_ = {};
}

void SceneState::activate(ControlId control) {
    const std::vector<int> listed = listedVisits();
    const auto index = static_cast<std::size_t>(control.index);
    switch (control.kind) {
        case ControlKind::Navigation:
            section_ = control.index;
            break;
        case ControlKind::Tab:
            tab_ = control.index;
            break;
        case ControlKind::Row:
            if (index < listed.size()) select(listed[index]);
            break;
        case ControlKind::Search:
            openPalette();
            break;
        case ControlKind::Status:
            menuLevel_.target = 1 - menuLevel_.target;
            break;
        case ControlKind::MenuItem:
            draft_.status = allStatuses.at(index);
            menuLevel_.target = 0;
            break;
        case ControlKind::Toggle:
            draft_.shared = !draft_.shared;
            sharedLevel_.target = draft_.shared ? 1 : 0;
            break;
        case ControlKind::Discard:
            load();
            break;
        case ControlKind::Save:
            save();
            break;
        case ControlKind::PaletteItem:
            runPaletteItem(control.index);
            break;
        default:
            break;
    }
}

void SceneState::type(const QString& text) {
    TextLine* line = focusedText();
    if (line == nullptr) return;
    line->insert(text);
    paletteChoice_ = 0;
}

void SceneState::editFocused(void (TextLine::*action)()) {
    TextLine* line = focusedText();
    if (line == nullptr) return;
    std::invoke(action, line);
    paletteChoice_ = 0;
}

void SceneState::moveCaret(int distance) {
    if (TextLine* line = focusedText()) line->moveCaret(distance);
}

void SceneState::placeCaret(int fieldIndex, qsizetype position) {
    draft_.fields.at(static_cast<std::size_t>(fieldIndex)).placeCaret(position);
}

void SceneState::moveChoice(int distance) {
    const int last = static_cast<int>(paletteMatches().size()) - 1;
    paletteChoice_ = std::clamp(paletteChoice_ + distance, 0, std::max(0, last));
}

void SceneState::focusNext() {
    if (focused_.kind != ControlKind::Field) return;
    if (TextLine* text = focusedText()) text->deselect();
    focused_.index = (focused_.index + 1) % fieldCount;
    focusedText()->selectAll();
}

void SceneState::confirm() {
    if (focused_.kind == ControlKind::Palette) {
        runPaletteItem(paletteChoice_);
    } else {
        focusNext();
    }
}

void SceneState::escape() {
    if (TextLine* text = focusedText()) text->deselect();
    closePalette();
    menuLevel_.target = 0;
    focused_ = {};
}

void SceneState::openPalette() {
    escape();
    paletteQuery_ = {};
    paletteChoice_ = 0;
    paletteLevel_.target = 1;
    focused_ = {ControlKind::Palette, 0};
}

void SceneState::save() {
    Visit& visit = visits_.at(static_cast<std::size_t>(selected_));
    const auto text = [&](FieldIndex field) { return draft_.fields.at(field).text(); };
    visit.title = text(TitleField);
    visit.site = text(SiteField);
    visit.email = text(EmailField);
    visit.hours = text(HoursField);
    visit.notes = text(NotesField);
    visit.status = draft_.status;
    visit.shared = draft_.shared;
    retargetHours();
    showToast(QStringLiteral("Saved  \u00b7  ") + visit.title);
}

void SceneState::advance(double seconds) {
    for (Animated* level : {&sharedLevel_, &menuLevel_, &paletteLevel_, &toastLevel_}) {
        level->advance(seconds * fadesPerSecond);
    }
    for (Animated& hours : hours_)
        hours.advance(seconds * hoursPerSecond);
    if (toastSecondsLeft_ <= 0) return;
    toastSecondsLeft_ -= seconds;
    if (toastSecondsLeft_ <= 0) toastLevel_.target = 0;
}

bool SceneState::animating() const {
    const auto moving = [](const Animated& animated) { return animated.moving(); };
    return toastSecondsLeft_ > 0 || moving(sharedLevel_) || moving(menuLevel_) || moving(paletteLevel_) ||
           moving(toastLevel_) || std::any_of(hours_.begin(), hours_.end(), moving);
}

bool SceneState::modified() const {
    const Visit& visit = selectedVisit();
    const std::array<const QString*, fieldCount> saved{&visit.title, &visit.site, &visit.email, &visit.hours,
                                                       &visit.notes};
    const auto same = [](const TextLine& line, const QString* text) { return line.text() == *text; };
    return !std::equal(draft_.fields.begin(), draft_.fields.end(), saved.begin(), same) ||
           draft_.status != visit.status || draft_.shared != visit.shared;
}

const Visit* SceneState::visitInRow(int row) const {
    const std::vector<int> listed = listedVisits();
    const auto index = static_cast<std::size_t>(row);
    return index < listed.size() ? &visits_[static_cast<std::size_t>(listed[index])] : nullptr;
}

bool SceneState::rowSelected(int row) const {
    return visitInRow(row) == &selectedVisit();
}

QStringList SceneState::paletteMatches() const {
    QStringList commands;
    for (const Visit& visit : visits_)
        commands << QStringLiteral("Open ") + visit.person;
    for (const QString& section : sections())
        commands << QStringLiteral("Go to ") + section;
    commands << QStringLiteral("Export this week as PDF") << QStringLiteral("Create an invoice");
    const QString query = paletteQuery_.text();
    QStringList matches;
    for (const QString& command : commands) {
        if (matches.size() < paletteItemCount && command.contains(query, Qt::CaseInsensitive))
            matches << command;
    }
    return matches;
}

int SceneState::finishedCount() const {
    return static_cast<int>(std::count_if(visits_.begin(), visits_.end(),
                                          [](const Visit& visit) { return belongsToTab(visit, 2); }));
}

TextLine* SceneState::focusedText() {
    if (focused_.kind == ControlKind::Palette) return &paletteQuery_;
    if (focused_.kind == ControlKind::Field)
        return &draft_.fields.at(static_cast<std::size_t>(focused_.index));
    return nullptr;
}

std::vector<int> SceneState::listedVisits() const {
    std::vector<int> listed;
    for (int index = 0; index < static_cast<int>(visits_.size()); ++index) {
        if (belongsToTab(visits_[static_cast<std::size_t>(index)], tab_)) listed.push_back(index);
    }
    return listed;
}

void SceneState::select(int visit) {
    selected_ = visit;
    load();
}

void SceneState::load() {
    const Visit& visit = selectedVisit();
    draft_ = {{TextLine(visit.title), TextLine(visit.site), TextLine(visit.email), TextLine(visit.hours),
               TextLine(visit.notes)},
              visit.status,
              visit.shared};
    sharedLevel_.target = visit.shared ? 1 : 0;
    retargetHours();
}

void SceneState::runPaletteItem(int index) {
    const QString command = paletteMatches().value(index);
    escape();
    for (std::size_t visit = 0; visit < visits_.size(); ++visit) {
        if (command.endsWith(visits_[visit].person)) select(static_cast<int>(visit));
    }
    for (int section = 0; section < navigationCount; ++section) {
        if (command.endsWith(sections().at(section))) section_ = section;
    }
    if (command.startsWith(QStringLiteral("Export"))) showToast(QStringLiteral("Week exported"));
    if (command.startsWith(QStringLiteral("Create"))) showToast(QStringLiteral("Invoice created"));
}

void SceneState::showToast(const QString& text) {
    toastText_ = text;
    toastLevel_.target = 1;
    toastSecondsLeft_ = toastSeconds;
}

void SceneState::retargetHours() {
    for (Animated& hours : hours_)
        hours.target = 0;
    for (const Visit& visit : visits_) {
        hours_.at(static_cast<std::size_t>(visit.weekday)).target +=
            std::clamp(visit.hours.toDouble(), 0.0, 24.0);
    }
}

}  // namespace tessaloom::demo
