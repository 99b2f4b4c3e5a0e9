#include "shell/Module1.h"

#include "platform/Application.h"
#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "reports/engine/view/ReportControl.h"
#include "shell/TakeoverNotice.h"
#include "shell/dlgError.h"
#include "shell/frmSplash.h"
#include "widgets/Application.h"
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

constexpr int SplashTime = 4000; // ms
const QDate DateZero(1899, 12, 30);
constexpr auto WebSite = u"www.tollbeck.example";

// The open database if that is the file meant, so that a report reads what the screens have written.
store::Database* databaseAt(const QString& path)
{
    const bool same = gDatabase && gDatabase->isOpen() && path == platform::nativePath(gDatabase->name());
    return same ? gDatabase.get() : nullptr;
}

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
    gDatabase = std::make_unique<store::Database>(store::DBEngine::openDatabase(path));
}

void Main()
{
    gDbNeedsUpdate = false;
    try {
        auto& splash = widgets::Instance<frmSplash>::get();
        splash.show();
        splash.openFrameAfter(SplashTime);
        gAppPath = platform::folder();
        gOldDbName = QStringLiteral("\\Quorrel.mdb");
        gDbName = QStringLiteral("\\Quorrel11.mdb");
        if (gFileSystem.fileExists(gAppPath + gOldDbName))
            gDbNeedsUpdate = true;
        else
            openDatabase(databasePath());
    } catch (const platform::RuntimeError& error) {
        platform::pendingError::set(error);
    }
    if (platform::pendingError::number() != 0)
        CriticalError();
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

void startProgram()
{
    reports::ReportControl::setDatabaseProvider(databaseAt);
    watchTakeovers();
    Main();
}

int runProgram(int argc, char** argv)
{
    widgets::Application application(argc, argv);
    try {
        startProgram();
    } catch (const platform::RuntimeError& error) {
        widgets::Application::reportAndEnd(error);
    }
    return widgets::Application::exec();
}

} // namespace orlo
