#pragma once

#include "platform/FileSystem.h"

#include <QDate>
#include <QString>

#include <cstdint>
#include <memory>

namespace orlo::store
{
class Database;
}

namespace orlo
{

// Process-wide values that every form uses directly.

extern std::unique_ptr<store::Database> gDatabase; ///< the open database; null until one is opened
extern QString gAppPath;                           ///< the application folder
extern QString gOldDbName;                         ///< file name of version 1.0, with its leading separator
extern QString gDbName;                            ///< file name of the current version, with its leading separator
extern platform::FileSystem gFileSystem;
extern bool gDbNeedsUpdate;   ///< a version 1.0 file was found at the start
extern QString gCalendarDate; ///< the date last picked in dlgCalendar, "" if cancelled

// A scout's award, passed to frmEditAssignedAward and back.
extern std::int32_t gEditAssignedSID; ///< the row's key
extern QString gEditDate;
extern std::int16_t gEditQuantity;
extern QString gEditAwardText; ///< the award as shown in the caller's grid
extern std::int16_t gEditInsigniaSID;
extern bool gEditSaved; ///< the dialog was closed by its save button

extern std::int16_t gErrNumber; ///< the failure shown by dlgError
extern QString gErrSource;
extern QString gErrDescription;
extern QString gErrType;
extern QString gErrText;

/// The open database. Raises 91 if there is none.
[[nodiscard]] store::Database& database();
/// The path of the current database file, as forms and reports name it.
[[nodiscard]] QString databasePath();
/// Opens a file in place of the open database. The current file is first brought to the newest version; from then on
/// its copies are made automatically. Raises as store::openPack() and store::openCurrent().
void openDatabase(const QString& path);
/// Keeps a copy of the open database, if any, before its file is replaced. Failures go to the system log.
void keepCopy();

/// The maker's web site, as the texts name it.
inline constexpr QStringView WebSite = u"www.tollbeck.example";

/// Shows the pending failure in dlgError and clears it. Raises 6 for a number that doesn't fit into 16 bits.
void CriticalError();
/// Called at the end of routines that check for a pending failure: shows it with CriticalError, if there is one.
void TestPendingError();
/// True for a date or an empty text; otherwise shows the message and returns false.
[[nodiscard]] bool ValidateDate(const QString& text);
/// The first and last day of a date's month; the zero date, 12/30/1899, for an invalid date.
[[nodiscard]] QDate FirstOfMonth(QDate date);
[[nodiscard]] QDate LastOfMonth(QDate date);

} // namespace orlo
