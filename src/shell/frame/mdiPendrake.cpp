#include "shell/frame/mdiPendrake.h"

#include "adults/frmAdults.h"
#include "awards/frmAddAdultAwards.h"
#include "awards/frmAddAwardsToScout.h"
#include "awards/frmAssignInsignias.h"
#include "awards/frmEditAssignedAward.h"
#include "awards/frmInsigniaInfo.h"
#include "pack/frmDenInfo.h"
#include "pack/frmPackDenPositions.h"
#include "pack/frmPackInformation.h"
#include "reports/dlgAdultList.h"
#include "reports/dlgAwardsList.h"
#include "reports/dlgCombinedRoster.h"
#include "reports/dlgReportSelect1.h"
#include "reports/dlgScoutList.h"
#include "reports/frmCreatePurchaseList.h"
#include "scouts/frmScouts.h"
#include "shell/forms/Module1.h"
#include "shell/frame/dlgHelp.h"
#include "shell/frame/frmAbout.h"
#include "store/schema/Schema.h"
#include "store/upkeep/DataForms.h"
#include "store/upkeep/basDataUpdate.h"
#include "store/upkeep/frmDataBackup.h"
#include "store/upkeep/frmRestorBackup.h"
#include "ui_mdiPendrake.h"
#include "widgets/Form.h"
#include "widgets/MessageBox.h"

#include <QCloseEvent>
#include <QLayout>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QTimer>

namespace orlo
{

namespace
{

QIcon programIcon()
{
    QIcon icon;
    for (const int size : {16, 32, 48, 128, 256})
        icon.addFile(QStringLiteral(":/art/orlo-%1.png").arg(size), QSize(size, size));
    return icon;
}

// Unloads a form for backup and restore. One that isn't loaded is loaded first; where its load step fails, it is gone
// all the same.
template <class F>
void unloadForm()
{
    try {
        widgets::Instance<F>::unload();
    } catch (...) {
        if (F* half = widgets::Instance<F>::loaded())
            half->unload();
        throw;
    }
}

} // namespace

mdiPendrake::mdiPendrake() : ui(std::make_unique<Ui::mdiPendrake>())
{
    ui->setupUi(this);
    ui->mdiArea->setBackground(palette().mid());
    setAttribute(Qt::WA_DeleteOnClose);
    QApplication::setWindowIcon(programIcon());
    setCursor(Qt::ArrowCursor);
    ui->ID_TEST_MENU->menuAction()->setVisible(false);
    nameMenuActions();
    connectMenus();
    handOverDataForms();
    widgets::Form::setMainWindow(this, [this](widgets::Form& form) { showChild(form); });
}

mdiPendrake::~mdiPendrake()
{
    widgets::Form::setMainWindow(nullptr, {});
}

mdiPendrake& mdiPendrake::instance()
{
    static QPointer<mdiPendrake> frame;
    if (!frame)
        frame = new mdiPendrake;
    return *frame;
}

// The den form is not among them.
void mdiPendrake::handOverDataForms()
{
    setDataForms({unloadForm<frmScouts>, unloadForm<frmPackInformation>, unloadForm<frmPackDenPositions>,
                  unloadForm<frmInsigniaInfo>, unloadForm<frmEditAssignedAward>, unloadForm<frmCreatePurchaseList>,
                  unloadForm<frmAssignInsignias>, unloadForm<frmAdults>, unloadForm<frmAddAwardsToScout>,
                  unloadForm<frmAddAdultAwards>});
}

// Designer names the menus but neither their actions nor the separator.
void mdiPendrake::nameMenuActions()
{
    const auto menus = findChildren<QMenu*>();
    for (QMenu* menu : menus)
        menu->menuAction()->setObjectName(menu->objectName());
    const auto fileCommands = ui->mnuFile->actions();
    for (QAction* command : fileCommands)
        if (command->isSeparator())
            command->setObjectName(QStringLiteral("Line"));
}

void mdiPendrake::connectMenus()
{
    using widgets::Instance;
    connect(ui->ID_DB_11_UPDATE, &QAction::triggered, this, [] { ApplyUpdateSteps(); });
    connect(ui->mnuRepairDatabase, &QAction::triggered, this, &mdiPendrake::mnuRepairDatabase_Click);
    connect(ui->mnuExit, &QAction::triggered, this, &mdiPendrake::mnuExit_Click);
    connect(ui->ID_BACKUP_DATABASE, &QAction::triggered, this, [] { Instance<frmDataBackup>::show(); });
    connect(ui->ID_RESTOR_BACKUP, &QAction::triggered, this, [] { Instance<frmRestorBackup>::showWaiting(); });
    connect(ui->mnuPackInformation, &QAction::triggered, this, [] { Instance<frmPackInformation>::show(); });
    connect(ui->mnuScouts, &QAction::triggered, this, [] { Instance<frmScouts>::show(); });
    connect(ui->mnuAdults, &QAction::triggered, this, [] { Instance<frmAdults>::show(); });
    connect(ui->mnuDenInfo, &QAction::triggered, this, [] { Instance<frmDenInfo>::show(); });
    connect(ui->mnuInsigniaInfo, &QAction::triggered, this, [] { Instance<frmInsigniaInfo>::show(); });
    connect(ui->ID_Pack_Den_Positions, &QAction::triggered, this, [] { Instance<frmPackDenPositions>::show(); });
    connect(ui->mnuAssignInsignias, &QAction::triggered, this, [] { Instance<frmAssignInsignias>::show(); });
    connect(ui->mnuRepAssignedAwards, &QAction::triggered, this, [] { Instance<dlgReportSelect1>::showWaiting(); });
    connect(ui->mnuRepAwardList, &QAction::triggered, this, [] { Instance<dlgAwardsList>::showWaiting(); });
    connect(ui->mnuPurchaseList, &QAction::triggered, this, [] { Instance<frmCreatePurchaseList>::showWaiting(); });
    connect(ui->mnuRptScoutList, &QAction::triggered, this, [] { Instance<dlgScoutList>::showWaiting(); });
    connect(ui->mnuRptAdultList, &QAction::triggered, this, [] { Instance<dlgAdultList>::showWaiting(); });
    connect(ui->ID_COMBINED_ROSTER, &QAction::triggered, this, [] { Instance<dlgCombinedRoster>::showWaiting(); });
    connect(ui->mnuHelpTopics, &QAction::triggered, this, [] { Instance<dlgHelp>::showWaiting(); });
    connect(ui->mnuAbout, &QAction::triggered, this, [] { Instance<frmAbout>::showWaiting(); });
    connect(ui->ID_WINDOWS_MENU, &QMenu::aboutToShow, this, &mdiPendrake::fillWindowMenu);
    connect(ui->mdiArea, &QMdiArea::subWindowActivated, this, &mdiPendrake::fillWindowMenu);
}

void mdiPendrake::mnuExit_Click()
{
    if (widgets::ask(QStringLiteral("Exit Verrano (ORLO)"), QStringLiteral("Exit")))
        close();
}

void mdiPendrake::mnuRepairDatabase_Click()
{
    database().close();
    store::DBEngine::repairDatabase(databasePath(), store::schema::editions());
    openDatabase(databasePath());
}

void mdiPendrake::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        ui->mdiArea->setBackground(palette().mid());
    if (event->type() != QEvent::ActivationChange)
        return;
    // Coming back from a message box is no new activation; the update's own box would ask for the update again.
    const bool fromBox = m_leftForBox;
    m_leftForBox = !isActiveWindow() && qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (isActiveWindow() && !fromBox && gDbNeedsUpdate)
        (void)UpdateDatabaseFile();
}

void mdiPendrake::closeEvent(QCloseEvent* event)
{
    widgets::Form::unloadAll();
    event->accept();
}

void mdiPendrake::fillWindowMenu()
{
    ui->ID_WINDOWS_MENU->clear();
    const auto windows = ui->mdiArea->subWindowList();
    int number = 0;
    for (QMdiSubWindow* window : windows) {
        auto* action =
            ui->ID_WINDOWS_MENU->addAction(QStringLiteral("&%1 %2").arg(++number).arg(window->windowTitle()));
        action->setCheckable(true);
        action->setChecked(window == ui->mdiArea->currentSubWindow());
        connect(action, &QAction::triggered, window, [this, window] { ui->mdiArea->setActiveSubWindow(window); });
    }
}

void mdiPendrake::showChild(widgets::Form& form)
{
    auto* window = qobject_cast<QMdiSubWindow*>(form.parentWidget());
    if (!window) {
        Qt::WindowFlags flags = Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
        if (!form.hasFixedBorder())
            flags |= Qt::WindowMaximizeButtonHint;
        window = ui->mdiArea->addSubWindow(&form, flags);
        window->setAttribute(Qt::WA_DeleteOnClose);
        if (form.hasFixedBorder())
            window->layout()->setSizeConstraint(QLayout::SetFixedSize);
        else // what the contents ask for is known once they have been shown
            QTimer::singleShot(0, window,
                               [window] { window->resize(window->size().expandedTo(window->minimumSizeHint())); });
    }
    if (window->isMinimized())
        window->showNormal();
    form.show();
    window->show();
    ui->mdiArea->setActiveSubWindow(window);
}

} // namespace orlo
