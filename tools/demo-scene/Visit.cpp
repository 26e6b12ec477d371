// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/Visit.h"

namespace tessaloom::demo {

QString nameOf(VisitStatus status) {
    switch (status) {
        case VisitStatus::Planned:
            return QStringLiteral("Planned");
        case VisitStatus::InReview:
            return QStringLiteral("In review");
        case VisitStatus::Ready:
            return QStringLiteral("Ready");
        case VisitStatus::Invoiced:
            return QStringLiteral("Invoiced");
    }
    return {};
}

std::vector<Visit> sampleVisits() {
    using enum VisitStatus;
    return {
        {"Amara Lindqvist", "Meadow transect A", "Holm Farm", "amara@holmfarm.example", "4.5",
         "Orchids along the east fence are a week early.", Invoiced, 0, true},
        {"Jonas Weir", "River survey, upper reach", "Tarn Bridge", "jonas@tarnbridge.example", "6",
         "Water clear, level down four centimetres since May.", Ready, 1, true},
        {"Marta Olsen", "Otter watch", "Weir 4", "marta@riverkeepers.example", "2", "", Planned, 3, false},
        {"Teo Brandt", "Orchard census, rows 9 to 14", "Appleby", "teo@appleby.example", "5",
         "Two trees to be grafted in autumn.", InReview, 2, true},
        {"Ines Carvalho", "Bat boxes, south wall", "Old Mill", "ines@oldmill.example", "3",
         "Six of eight boxes in use.", Ready, 2, false},
        {"Noah Ferris", "Ridge erosion, markers", "North Ridge", "noah@northridge.example", "7",
         "Marker 12 has moved; photographs taken.", InReview, 0, false},
        {"Lena Hartmann", "Wetland count", "Sedge Pool", "lena@sedgepool.example", "4",
         "Counted twice, once from the hide.", Planned, 4, false},
        {"Kofi Mensah", "Hedge planting follow-up", "Lane End", "kofi@laneend.example", "2.5",
         "Survival rate about nine in ten.", Invoiced, 1, true},
        {"Sofia Rossi", "Soil samples, field 3", "Holm Farm", "sofia@holmfarm.example", "3.5",
         "Samples are with the laboratory.", Ready, 4, true},
    };
}

QString weekdayName(int weekday) {
    static const std::array<QString, daysInWeek> names{"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
    return names.at(static_cast<std::size_t>(weekday));
}

}  // namespace tessaloom::demo
