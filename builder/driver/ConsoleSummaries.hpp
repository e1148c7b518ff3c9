#pragma once

// What a run shows of its findings.

#include <iosfwd>

#include "analysis/ProjectAnalysis.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

void printScanSummary(std::ostream& out, const ProjectScan& scan);

// One line of counters and the first issues; the rest stands in the report files.
void printCompatibilitySummary(std::ostream& out, const ProjectAnalysis& analysis);

}  // namespace tindrel
