#pragma once

#include "reporting/ReportData.h"

namespace orlo::reporting
{

/// Puts the rows into the order of the report: by the groups' keys and those of the details, groups whose keys hold
/// summaries by these, and leaves out the groups that are one too many and the rows that "unique" drops.
/// Throws Cancelled.
void orderRows(BoundReport& report, const RunFacts& facts, const Progress& progress);

} // namespace orlo::reporting
