#include "shell/frame/Main.h"

#include "platform/Application.h"
#include "platform/RuntimeError.h"
#include "reporting/view/ReportControl.h"
#include "shell/forms/Module1.h"
#include "shell/frame/TakeoverNotice.h"
#include "shell/frame/frmSplash.h"
#include "store/engine/Database.h"
#include "widgets/Application.h"

#include <QIcon>

namespace orlo
{

namespace
{

constexpr int SplashTime = 4000; // ms

// The open database if it is this file, so that reports read what the forms have written.
store::Database* databaseAt(const QString& path)
{
    const bool same = gDatabase && gDatabase->isOpen() && path == platform::nativePath(gDatabase->name());
    return same ? gDatabase.get() : nullptr;
}

} // namespace

QIcon programIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 128, 256})
        icon.addFile(QStringLiteral(":/art/orlo-%1.png").arg(size), QSize(size, size));
    return icon;
}

void Main()
{
    gDbNeedsUpdate = false;
    try {
        auto& splash = widgets::Instance<frmSplash>::get();
        splash.show();
        splash.openFrameAfter(SplashTime);
        splash.awaitPicture(); // it needn't wait for the file to be read
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
    if (platform::pendingError::number() != 0) {
        QApplication::setWindowIcon(programIcon()); // the main window's own comes too late for this dialog
        CriticalError();
    }
}

void startProgram()
{
    reporting::setDatabaseProvider(databaseAt);
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
