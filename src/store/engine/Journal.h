#pragma once

class QString;

namespace orlo::store
{

/// Renames a journal that belongs to another state of the file, as after the file was restored from a copy: rolling it
/// back would overwrite pages of the copy. A journal with the same change counter and page count is kept, as SQLite
/// can't tell it apart either. Native path.
void setStrayJournalAside(const QString& file);
/// Renames the journal of a file that is about to be replaced; removes it if there is nothing to roll back.
void setJournalAside(const QString& file);
/// Removes a renamed journal once the file has proved sound without it.
void removeStrayJournal(const QString& file);
/// True if the file has an unfinished change: a journal to roll back, or a log beside it.
[[nodiscard]] bool isHalfDone(const QString& file);
[[nodiscard]] QString journalOf(const QString& file);

} // namespace orlo::store
