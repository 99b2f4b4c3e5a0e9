#pragma once

#include "reporting/ReportData.h"

namespace orlo::reporting
{

/// Sorts the rows by group keys, then detail keys, ordering groups by summaries where their keys ask for it, and drops
/// surplus groups and the duplicates that "unique" names. Throws Cancelled.
void orderRows(BoundReport& report, const RunFacts& facts, const Progress& progress);

} // namespace orlo::reporting
