#pragma once

#include <QDate>
#include <QStringList>

namespace orlo::store
{

/// The day in a copy's name: "2026-06-07" or "2026-06-07 14.05", with or without seconds. An invalid date for any other
/// name.
[[nodiscard]] QDate dayOfCopy(const QString& name);

/// The copies to keep, oldest first: the first of each of the last 7 days, 4 weeks and 12 months that have one, and the
/// last five of today. Periods without copies don't count, so that a pack that is seldom opened keeps as many, and so
/// does one whose clock jumps ahead. Copies from the future, left by a clock that was wrong, are counted separately.
[[nodiscard]] QStringList keptOf(QStringList names, QDate today);

} // namespace orlo::store
