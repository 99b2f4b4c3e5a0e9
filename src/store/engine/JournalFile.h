#pragma once

namespace orlo::store
{

/// The name of a SQLite file system that flushes the name of a kept journal once instead of with every change. Null if
/// it can't be registered.
[[nodiscard]] const char* filesOfKeptJournals();

} // namespace orlo::store
