#pragma once

class QString;

namespace orlo::store
{

/// The failure number that a result of SQLite stands for, by its extended code and its own words.
[[nodiscard]] int failureNumber(int code, const QString& words, bool preparing);

} // namespace orlo::store
