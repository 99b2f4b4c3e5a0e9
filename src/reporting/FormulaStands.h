#pragma once

#include "reporting/ReportData.h"

#include <functional>

namespace orlo::reporting
{

/// Where a formula stands, which limits what it can use.
enum class Stands { InRows, InGroupOrder, InBands, InExport, OnPages };

/// Visits every formula of a report but the named ones.
void eachFormula(Definition& definition, const std::function<void(Formula& formula, Stands stands)>& visit);

/// Rejects what has no meaning where a formula stands, including in the names it uses. Raises ReportError 3061 for a
/// group that doesn't exist, 3075 otherwise.
void checkFormula(const BoundReport& report, const Formula& formula, Stands stands);

} // namespace orlo::reporting
