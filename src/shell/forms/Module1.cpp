#include "shell/forms/Module1.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "shell/forms/dlgError.h"
#include "store/copies/KeptCopies.h"
#include "store/opening/OpenFile.h"
#include "widgets/MessageBox.h"

namespace orlo
{

std::unique_ptr<store::Database> gDatabase;
QString gAppPath;
QString gOldDbName;
QString gDbName;
platform::FileSystem gFileSystem;
bool gDbNeedsUpdate = false;
QString gCalendarDate;

std::int32_t gEditAssignedSID = 0;
QString gEditDate;
std::int16_t gEditQuantity = 0;
QString gEditAwardText;
std::int16_t gEditInsigniaSID = 0;
bool gEditSaved = false;

std::int16_t gErrNumber = 0;
QString gErrSource;
QString gErrDescription;
QString gErrType;
QString gErrText;

namespace
{

const QDate DateZero(1899, 12, 30);

} // namespace

store::Database& database()
{
    if (!gDatabase)
        throw platform::RuntimeError(platform::ObjectNotSet);
    return *gDatabase;
}

QString databasePath()
{
    return gAppPath + gDbName;
}

void openDatabase(const QString& path)
{
    const bool current = path == databasePath();
    gDatabase = std::make_unique<store::Database>(current ? store::openCurrent(path) : store::openPack(path));
    if (current)
        store::keepCopies(*gDatabase);
}

void keepCopy()
{
    if (gDatabase && gDatabase->isOpen())
        store::keepCopyOf(*gDatabase);
}

void CriticalError()
{
    if (const auto& error = platform::pendingError::get()) {
        gErrNumber = platform::toInt16(error->number());
        gErrSource = error->source();
        gErrDescription = error->description();
    }
    gErrType = QStringLiteral("Critical Error");
    if (gErrNumber == platform::DatabaseNotFound)
        gErrText = QStringLiteral("A Critical Error has occurred. The database file that contains all of ORLO data is "
                                  "missing. Please contact Tollbeck for technical support (Web Site: %1)")
                       .arg(WebSite);
    else if (gErrNumber != 0)
        gErrText = QStringLiteral("A Critical Error has occurred. The application will shut down. Please report the "
                                  "error information on the Error Detail tab to Tollbeck.\r\rWeb Site: %1")
                       .arg(WebSite);
    widgets::Instance<dlgError>::showWaiting();
    platform::pendingError::clear();
    gErrNumber = 0;
    gErrSource.clear();
    gErrDescription.clear();
    gErrType.clear();
}

void TestPendingError()
{
    if (platform::pendingError::number() != 0)
        CriticalError();
}

bool ValidateDate(const QString& text)
{
    if (text.isEmpty() || platform::isDate(text))
        return true;
    widgets::message(QStringLiteral("Invalid Date format (mm/dd/yy or m/d/yyyy) \r\n"
                                    " or an invalid date has been entered. \r\n"
                                    "\r\n"
                                    "Please re-enter the date."));
    return false;
}

QDate FirstOfMonth(QDate date)
{
    if (!date.isValid())
        return DateZero;
    return platform::toDate(QStringLiteral("%1/1/%2").arg(date.month()).arg(date.year())).date;
}

QDate LastOfMonth(QDate date)
{
    if (!date.isValid())
        return DateZero;
    int month = date.month() + 1;
    int year = date.year();
    if (month > 12) {
        month = 1;
        ++year;
    }
    return platform::toDate(QStringLiteral("%1/1/%2").arg(month).arg(year)).date.addDays(-1);
}

} // namespace orlo
