// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <array>
#include <vector>

namespace tessaloom::demo {

enum class VisitStatus { Planned, InReview, Ready, Invoiced };
inline constexpr std::array allStatuses{VisitStatus::Planned, VisitStatus::InReview, VisitStatus::Ready,
                                        VisitStatus::Invoiced};
QString nameOf(VisitStatus status);

constexpr int daysInWeek = 7;

/// One entry of the list: somebody's visit to a place.
struct Visit {
    QString person;
    QString title;
    QString site;
    QString email;
    QString hours;
    QString notes;
    VisitStatus status = VisitStatus::Planned;
    /// 0 is Monday.
    int weekday = 0;
    bool shared = false;

    bool operator==(const Visit&) const = default;
};

std::vector<Visit> sampleVisits();
QString weekdayName(int weekday);

}  // namespace tessaloom::demo
