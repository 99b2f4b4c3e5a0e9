#pragma once

class QString;

namespace orlo::store
{

/// Moves the journal beside a file out of the way if it was left by a killed run for another state of the file, as when
/// the file has been put back from a copy since: rolled back, it would overwrite the copy with pages of the lost file.
/// In doubt it stays: one for a state with the same change counter and number of pages is taken for the file's own, as
/// SQLite would, and rolled in. Native path.
void setStrayJournalAside(const QString& file);
/// Moves the journal beside a file out of the way, whatever it is for: the file is about to be replaced as a whole. One
/// that has nothing to roll back is removed.
void setJournalAside(const QString& file);
/// Removes a journal that was set aside: the file has proved sound without it.
void removeStrayJournal(const QString& file);
/// True where a change of the file isn't done: its journal has something to roll back, or a log lies beside it.
[[nodiscard]] bool isHalfDone(const QString& file);
/// The path of a file's journal.
[[nodiscard]] QString journalOf(const QString& file);

} // namespace orlo::store
