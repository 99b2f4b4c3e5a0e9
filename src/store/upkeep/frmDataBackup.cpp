#include "store/upkeep/frmDataBackup.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "shell/forms/Module1.h"
#include "store/opening/OpenFile.h"
#include "store/upkeep/BackupFile.h"
#include "store/upkeep/DataForms.h"
#include "ui_frmDataBackup.h"
#include "widgets/MessageBox.h"

namespace orlo
{

namespace
{
constexpr QLatin1String NotMade("There was an error creating the backup file.");
constexpr QLatin1String ErrorTitle("Backup Creation Error");
} // namespace

frmDataBackup::frmDataBackup() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::frmDataBackup>())
{
    ui->setupUi(this);
    setCancelButton(ui->cmdCancel);
    ui->lstDir->followDrive(*ui->lstDrive);
    connect(ui->cmdBack, &QPushButton::clicked, this, &frmDataBackup::cmdBack_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmDataBackup::unload);
}

frmDataBackup::~frmDataBackup() = default;

void frmDataBackup::cmdBack_Click()
{
    setCursor(Qt::WaitCursor);
    BackupDatabase();
    setCursor(Qt::ArrowCursor);
}

void frmDataBackup::BackupDatabase()
{
    try {
        copyDatabase();
    } catch (const platform::RuntimeError& failure) {
        widgets::warn(widgets::lines({NotMade, QStringLiteral("Please correct the error below and try again"),
                                      QString(), QStringLiteral("Error: ") + failure.description(),
                                      QStringLiteral("Error Number: ") + QString::number(failure.number()),
                                      QStringLiteral("Backup path and file: ") + ui->lstDir->path() + gDbName}),
                      ErrorTitle);
        reopenDatabase();
    }
}

void frmDataBackup::reopenDatabase()
{
    if (gDatabase && gDatabase->isOpen()) // the open forms' record sets use that one; it only has to exist
        (void)store::openPack(databasePath());
    else
        openDatabase(databasePath());
}

// Free space and result are checked at the drive's root, wherever on the drive the backup goes.
void frmDataBackup::copyDatabase()
{
    const QString title = QStringLiteral("Database Backup");
    if (!widgets::ask(widgets::lines({QStringLiteral("Any existing backup files on the destination path"),
                                      QStringLiteral("will be over written."), QString(),
                                      QStringLiteral("Are you sure you want to proceed?")}),
                      title))
        return;
    const QString atRoot = backupIn(ui->lstDrive->text());
    const platform::File source = gFileSystem.getFile(databasePath());
    const platform::Drive drive = gFileSystem.getDrive(ui->lstDrive->text());
    const qint64 reclaimed = gFileSystem.fileExists(atRoot) ? gFileSystem.getFile(atRoot).size : 0;
    (void)gFileSystem.getFolder(ui->lstDir->path());
    const qint64 size = platform::toInt32(static_cast<double>(source.size));
    if (drive.freeSpace + reclaimed < size) {
        widgets::warn(widgets::lines({QStringLiteral("The backup destination does not have enough remaining "),
                                      QStringLiteral("disk space for the backup database."),
                                      QStringLiteral("Please select a new destination or make more space.")}),
                      ErrorTitle);
        return;
    }
    unloadDataForms();
    database().close();
    gFileSystem.copyFile(databasePath(), backupIn(ui->lstDir->path()), true);
    if (gFileSystem.getFile(atRoot).size == size) {
        widgets::message(QStringLiteral("Database Backup has completed Successfully."),
                         QStringLiteral("Backup Complete"));
        setCursor(Qt::ArrowCursor);
        unload();
    } else
        widgets::warn(
            widgets::lines({NotMade, QStringLiteral("Please check the destination media for errors and try again")}),
            ErrorTitle);
    openDatabase(databasePath());
}

} // namespace orlo
