#pragma once

#include "platform/FileSystem.h"
#include "store/engine/Database.h"

#include <QDate>
#include <QString>

#include <cstdint>
#include <memory>

namespace orlo
{

// The values that live for the whole process and that every screen reads directly.

extern std::unique_ptr<store::Database> gDatabase; ///< the one open database; unset until one is opened
extern QString gAppPath;                           ///< the application folder
extern QString gOldDbName;                         ///< name of a version 1.0 file, with its leading separator
extern QString gDbName;                            ///< name of the current file, with its leading separator
extern platform::FileSystem gFileSystem;
extern bool gDbNeedsUpdate;   ///< a version 1.0 file was found at start-up
extern QString gCalendarDate; ///< the date last picked in dlgCalendar, "" when it was cancelled

// One assigned award of a scout on its way to frmEditAssignedAward and back.
extern std::int32_t gEditAssignedSID; ///< the row's key
extern QString gEditDate;
extern std::int16_t gEditQuantity;
extern QString gEditAwardText; ///< the award as the caller's grid shows it
extern std::int16_t gEditInsigniaSID;
extern bool gEditSaved; ///< the dialog was left by its save button

extern std::int16_t gErrNumber; ///< the failure that dlgError shows
extern QString gErrSource;
extern QString gErrDescription;
extern QString gErrType;
extern QString gErrText;

/// The open database. Raises 91 while none was opened.
[[nodiscard]] store::Database& database();
/// The path of the current database file, as the screens and reports name it.
[[nodiscard]] QString databasePath();
/// Opens a file as the open database, in the place of one that may be open. The current database file comes to the
/// newest version first, and copies of it then make themselves. Raises as store::openPack() and store::openCurrent().
void openDatabase(const QString& path);
/// Keeps a copy of the open database before something else takes its file's place; nothing without one. What fails goes
/// to the system's log.
void keepCopy();

/// Shows the pending failure in dlgError and clears it. Raises 6 for a number that doesn't fit 16 bits.
void CriticalError();
/// The end of a routine that tests for a pending failure: shows it by CriticalError, if there is one.
void TestPendingError();
/// True for an empty text or a date; otherwise false, after the message.
[[nodiscard]] bool ValidateDate(const QString& text);
/// The first and the last day of a date's month; the date zero, 12/30/1899, for an invalid date.
[[nodiscard]] QDate FirstOfMonth(QDate date);
[[nodiscard]] QDate LastOfMonth(QDate date);

} // namespace orlo
