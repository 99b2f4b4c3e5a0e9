#pragma once

#include <QDate>
#include <QStringList>

namespace orlo::store
{

/// The day of a copy's name: of "2026-06-07" and of "2026-06-07 14.05", with or without seconds. An invalid date for
/// any other name.
[[nodiscard]] QDate dayOfCopy(const QString& name);

/// Which of the copies are kept: of each of the last 7 days, 4 weeks and 12 months that have any the first one, and of
/// today the last five besides. Days that have none don't count, so a pack that is seldom worked on, and one whose
/// computer's clock jumps ahead, keeps as many. Copies of days to come, from before the clock was put back, are
/// reckoned by themselves. In the order of their age, the oldest first.
[[nodiscard]] QStringList keptOf(QStringList names, QDate today);

} // namespace orlo::store
