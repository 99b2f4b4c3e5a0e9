#include "store/upkeep/frmRestorBackup.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "shell/forms/Module1.h"
#include "store/upkeep/BackupFile.h"
#include "store/upkeep/DataForms.h"
#include "ui_frmRestorBackup.h"
#include "widgets/MessageBox.h"

namespace orlo
{

frmRestorBackup::frmRestorBackup() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::frmRestorBackup>())
{
    ui->setupUi(this);
    setCancelButton(ui->cmdClose);
    ui->lstFolders->followDrive(*ui->lstDrive);
    connect(ui->cmdRestore, &QPushButton::clicked, this, &frmRestorBackup::cmdRestore_Click);
    connect(ui->cmdClose, &QPushButton::clicked, this, &frmRestorBackup::unload);
}

frmRestorBackup::~frmRestorBackup() = default;

void frmRestorBackup::cmdRestore_Click()
{
    setCursor(Qt::WaitCursor);
    RestoreDatabase();
    setCursor(Qt::ArrowCursor);
}

void frmRestorBackup::RestoreDatabase()
{
    try {
        copyBackup();
    } catch (const platform::RuntimeError& error) {
        // The state of the database file is unknown now, so the program must not go on with it.
        throw platform::RuntimeError(platform::ObjectNotSet, error.source());
    }
}

void frmRestorBackup::copyBackup()
{
    if (!widgets::ask(widgets::lines({QStringLiteral("Any new data added since the last backup will be lost."),
                                      QStringLiteral("Are you sure you want to proceed?")}),
                      QStringLiteral("Database Restore")))
        return;
    const QString backup = backupIn(ui->lstFolders->path());
    (void)gFileSystem.getFile(databasePath());
    (void)gFileSystem.getDrive(ui->lstDrive->text()); // an unmounted drive fails here, before anything is changed
    if (!gFileSystem.fileExists(backup)) {
        widgets::message(widgets::lines({QStringLiteral("A backup Database file does not exist in the selected path."),
                                         QStringLiteral("Please select a drive and directory that contains a"),
                                         QStringLiteral("valid backup database file.")}),
                         QStringLiteral("Restore Database Error"));
        return;
    }
    const qint64 size = platform::toInt32(static_cast<double>(gFileSystem.getFile(backup).size));
    keepCopy(); // before the forms change anything while unloading
    unloadDataForms();
    database().close();
    gFileSystem.copyFile(backup, databasePath(), true);
    if (gFileSystem.getFile(databasePath()).size == size) {
        widgets::message(QStringLiteral("Database Restore has completed Successfully."),
                         QStringLiteral("Restore Complete"));
        setCursor(Qt::ArrowCursor);
    } else
        widgets::warn(widgets::lines({QStringLiteral("There was an error restoring the backup file."),
                                      QStringLiteral("Please check the destination drive for errors and try again")}),
                      QStringLiteral("Database Restore Error"));
    openDatabase(databasePath());
    unload();
}

} // namespace orlo
