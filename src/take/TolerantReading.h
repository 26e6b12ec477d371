// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "core/TakeBundle.h"

/// Reading a bundle's stored records without ever failing: what can't be read has its defaults, and one
/// sentence for the user joins the warnings.
namespace tessaloom {

using Warnings = std::vector<std::string>;

/// Completes a take whose recorder died, if it can be.
void finishIfInterrupted(const TakeBundle& bundle, Warnings& warnings);

struct StoredRecords {
    EditParams edit;
    EventLog log;
};

/// Both, with a single sentence also when neither can be read.
StoredRecords readRecords(const TakeBundle& bundle, Warnings& warnings);
EditParams readEditOrFresh(const TakeBundle& bundle, Warnings& warnings);
EventLog readLogOrEmpty(const TakeBundle& bundle, Warnings& warnings);

}  // namespace tessaloom
