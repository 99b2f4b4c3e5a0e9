#pragma once

namespace orlo::store
{

/// The name by which SQLite knows the system's files with one difference: a journal that is there from change to change
/// has its name flushed to the disk once, not with every change. Null, SQLite's own files, where it can't be had.
[[nodiscard]] const char* filesOfKeptJournals();

} // namespace orlo::store
