// Does the program's main work on the sample pack by itself, with real key and mouse events on real windows, and leaves
// a picture of every screen in each of its states, and the printed pages, in a folder.
//
// usage: tour FOLDER [--dark] [--manual PICTURES]   FOLDER/app holds the application's files

#include "ReportTour.h"
#include "platform/Application.h"
#include "platform/RuntimeError.h"
#include "shell/forms/Module1.h"
#include "shell/frame/Main.h"
#include "shell/frame/Screens.h"
#include "shell/frame/mdiPendrake.h"
#include "store/schema/Schema.h"
#include "store/upkeep/basDataUpdate.h"
#include "widgets/Application.h"
#include "widgets/BoundGrid.h"
#include "widgets/ComboBox.h"
#include "widgets/TextGrid.h"

#include <QAction>
#include <QCommandLineParser>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <functional>

using namespace orlo;

namespace
{

class Tour : private ReportTour
{
public:
    using ReportTour::ReportTour;

    void run();

private:
    void start();
    void menus();
    void packInformation();
    void scouts();
    void adults();
    void dens();
    void awardCatalogue();
    void bulkAssignment();
    void purchaseList();
    void positionTitles();
    void backupAndRestore();
    void update();
    void aboutAndHelp();
    void errorDialog();
    void otherScreens();
};

void Tour::start()
{
    picture(window(QStringLiteral("frmSplash")), QStringLiteral("splash"));
    picture(window(QStringLiteral("mdiPendrake")), QStringLiteral("main-frame"));
}

void Tour::menus()
{
    auto& frame = mdiPendrake::instance();
    for (const char* name : {"mnuFile", "mnuForms", "mnuReports", "mnuHelp"}) {
        auto& menu = control<QMenu>(frame, name);
        menu.popup(frame.mapToGlobal(QPoint(0, 30)));
        picture(menu, QStringLiteral("menu-") + QLatin1String(name));
        menu.close();
    }
    during([this] { choose("mnuExit"); },
           [this] {
               QWidget* box = QApplication::activeModalWidget();
               picture(*box, QStringLiteral("exit-question"));
               QTest::keyClick(box, Qt::Key_Escape);
           });
}

void Tour::packInformation()
{
    auto& form = open(QStringLiteral("frmPackInformation"));
    type(form, "txtPackName", QStringLiteral("Riverside Community Church"));
    picture(form, QStringLiteral("pack-information-changed"));
    during([&] { click(form, "cmdExit"); },
           [this] {
               QWidget* box = QApplication::activeModalWidget();
               picture(*box, QStringLiteral("save-question"));
               QTest::keyClick(box, Qt::Key_Return);
           });
}

void Tour::scouts()
{
    auto& form = open(QStringLiteral("frmScouts"));
    auto& list = control<QListWidget>(form, "lbScouts");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(4)).center());
    picture(form, QStringLiteral("scouts-picked"));
    auto& parents = control<QTabWidget>(form, "SSTab1");
    for (int page : {1, 2}) {
        turnTo(parents, page);
        picture(form, QStringLiteral("scouts-parents-%1").arg(page + 1));
    }
    auto& pages = control<QTabWidget>(form, "tabScout");
    turnTo(pages, 1);
    picture(form, QStringLiteral("scouts-page-2"));
    dialogOf(form, "cmdAddAward", "frmAddAwardsToScout", "scouts-add-awards");
    dialogOf(form, "cmdEditAward", "frmEditAssignedAward", "scouts-edit-award");
    turnTo(pages, 2);
    picture(form, QStringLiteral("scouts-page-3"));
    during([&] { click(form, "cmdFind"); },
           [this] {
               auto& dialog = window(QStringLiteral("dlgFindScout"));
               type(dialog, "txtLast", QStringLiteral("B"));
               picture(dialog, QStringLiteral("scouts-find"));
               click(dialog, "cmdFind");
           });
    picture(form, QStringLiteral("scouts-found"));
    turnTo(pages, 0);
    turnTo(parents, 0);
    dialogOf(form, "chkP1DenLeader", "dlgSelectAdultLink", "scouts-den-leader");
    click(form, "cmdNew");
    picture(form, QStringLiteral("scouts-new"));
    click(form, "cmdCancel");
    click(form, "cmdExit");
}

void Tour::adults()
{
    auto& form = open(QStringLiteral("frmAdults"));
    auto& list = control<QListWidget>(form, "lbAdults");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(3)).center());
    during([&] { click(form, "cmdAddDenAssn"); },
           [this] {
               auto& dialog = window(QStringLiteral("dlgAddDenLeaderAsign"));
               pick(control<widgets::ComboBox>(dialog, "cmbDen"), 1);
               pick(control<widgets::ComboBox>(dialog, "cmbDenTitles"), 1);
               picture(dialog, QStringLiteral("adults-add-den-position"));
               click(dialog, "cmdSave");
           });
    during([&] { click(form, "cmdAddDenAssn"); },
           [this] {
               auto& dialog = window(QStringLiteral("dlgAddDenLeaderAsign"));
               QTest::mouseClick(&control<QRadioButton>(dialog, "optPackPosition"), Qt::LeftButton, {}, QPoint(8, 8));
               pick(control<widgets::ComboBox>(dialog, "cmbPackTitles"), 2);
               picture(dialog, QStringLiteral("adults-add-pack-position"));
               click(dialog, "cmdSave");
           });
    picture(form, QStringLiteral("adults-positions"));
    during([&] { click(form, "cmdEditDenAssn"); },
           [this] {
               auto& dialog = window(QStringLiteral("dlgAddDenLeaderAsignEdit"));
               picture(dialog, QStringLiteral("adults-edit-position"));
               click(dialog, "cmdCancel");
           });
    during([&] { click(form, "cmdDelDenAssn"); },
           [this] {
               QWidget* box = QApplication::activeModalWidget();
               picture(*box, QStringLiteral("adults-delete-position"));
               QTest::keyClick(box, Qt::Key_Escape);
           });
    auto& pages = control<QTabWidget>(form, "tabAdult");
    turnTo(pages, 1);
    picture(form, QStringLiteral("adults-page-2"));
    dialogOf(form, "cmdAddAward", "frmAddAdultAwards", "adults-add-awards");
    turnTo(pages, 2);
    picture(form, QStringLiteral("adults-page-3"));
    during([&] { click(form, "cmdFind"); },
           [this] {
               auto& dialog = window(QStringLiteral("dlgFindAdult"));
               type(dialog, "txtLast", QStringLiteral("B"));
               picture(dialog, QStringLiteral("adults-find"));
               click(dialog, "cmdFind");
           });
    picture(form, QStringLiteral("adults-found"));
    click(form, "cmdNew");
    picture(form, QStringLiteral("adults-new"));
    click(form, "cmdCancel");
    click(form, "cmdExit");
}

void Tour::dens()
{
    auto& form = open(QStringLiteral("frmDenInfo"));
    click(form, "cmdNext");
    picture(form, QStringLiteral("dens-second"));
    type(form, "txtDenName", QStringLiteral("Timber Wolves of the Upper Valley"));
    for (const auto& [button, name] :
         {std::pair("cmdAddScouts", "dens-add-scouts"), std::pair("cmdAddDenLeader", "dens-add-leaders")})
        during([&, button = button] { click(form, button); },
               [this, name = name] {
                   QWidget* dialog = QApplication::activeModalWidget();
                   auto& list = *dialog->findChild<QListWidget*>();
                   for (int row : {1, 2})
                       list.item(row)->setSelected(true);
                   picture(*dialog, QString::fromLatin1(name));
                   click(*dialog, "cmdSelect");
               });
    picture(form, QStringLiteral("dens-with-new-members"));
    click(form, "cmdNew");
    picture(form, QStringLiteral("dens-new"));
    click(form, "cmdCancel");
    click(form, "cmdExit");
}

void Tour::awardCatalogue()
{
    auto& form = open(QStringLiteral("frmInsigniaInfo"));
    during([&] { click(form, "cmdFind"); },
           [this] {
               auto& dialog = window(QStringLiteral("dlgFindInsignia"));
               type(dialog, "txtInsigniaName", QStringLiteral("B"));
               QTest::mouseClick(&control<QRadioButton>(dialog, "optBeltLoop"), Qt::LeftButton, {}, QPoint(8, 8));
               picture(dialog, QStringLiteral("awards-find"));
               click(dialog, "cmdFind");
           });
    picture(form, QStringLiteral("awards-found"));
    click(form, "cmdNew");
    type(form, "txtInsigniaName", QStringLiteral("Winter Camp 2027"));
    picture(form, QStringLiteral("awards-new"));
    click(form, "cmdSave");
    picture(form, QStringLiteral("awards-saved"));
    click(form, "cmdExit");
}

void Tour::bulkAssignment()
{
    auto& form = open(QStringLiteral("frmAssignInsignias"));
    auto& people = control<widgets::TextGrid>(form, "fgSelectFrom");
    for (int row : {0, 2, 3, 7, 11})
        doubleClickRow(people, row);
    picture(form, QStringLiteral("assign-awards-pack-selected"));

    auto& tabs = control<QTabWidget>(form, "SSTabAssignInsignias");
    turnTo(tabs, 1);
    auto& dens = control<widgets::ComboBox>(form, "comDen");
    dens.showPopup();
    settle();
    const QString den = dens.itemText(1);
    dens.hidePopup();
    pick(dens, den);
    picture(form, QStringLiteral("assign-awards-den"));
    click(form, "cmdSelAllByDenScouts");
    click(form, "cmdSelAllByDenAdults");

    during([&] { click(form, "cmdAssignAward"); },
           [this] {
               QWidget* box = QApplication::activeModalWidget();
               picture(*box, QStringLiteral("assign-awards-no-award"));
               QTest::keyClick(box, Qt::Key_Return);
           });
    auto& awards = control<widgets::ComboBox>(form, "cboAward");
    awards.showPopup();
    picture(*awards.view()->window(), QStringLiteral("assign-awards-award-list"));
    const QString award = awards.itemText(4);
    awards.hidePopup();
    pick(awards, award);
    type(form, "txtAssignDate", QStringLiteral("11/31/2026"));
    during([&] { click(form, "cmdAssignAward"); },
           [this] {
               QWidget* box = QApplication::activeModalWidget();
               picture(*box, QStringLiteral("assign-awards-bad-date"));
               QTest::keyClick(box, Qt::Key_Return);
           });
    during([&] { QTest::mouseDClick(&control<QLineEdit>(form, "txtAssignDate"), Qt::LeftButton); },
           [this] {
               auto& calendar = window(QStringLiteral("dlgCalendar"));
               picture(calendar, QStringLiteral("calendar"));
               click(calendar, "cmdSelectDate");
           });
    picture(form, QStringLiteral("assign-awards-ready"));
    click(form, "cmdAssignAward");
    picture(form, QStringLiteral("assign-awards-done"));
    turnTo(tabs, 0);
    form.parentWidget()->resize(form.parentWidget()->size() + QSize(160, 30));
    picture(mdiPendrake::instance(), QStringLiteral("assign-awards-larger"));
    click(form, "cmdExit");
}

void Tour::purchaseList()
{
    inside(QStringLiteral("frmCreatePurchaseList"), [this](QWidget& form) {
        type(form, "txtStartDate", QStringLiteral("9/1/2026"));
        click(form, "cmdCreate");
        picture(form, QStringLiteral("purchase-list-created"));
        auto& other = control<QTableView>(form, "dbgOtherPurchaseList");
        const int last = other.model()->rowCount() - 1;
        typeCell(other, last, 0, QStringLiteral("12"));
        typeCell(other, last, 1, QStringLiteral("Neckerchief slides"));
        picture(form, QStringLiteral("purchase-list-typing"));
        click(form, "cmdPreviewList");
        preview();
        click(form, "cmdCancel");
    });
}

void Tour::positionTitles()
{
    auto& form = open(QStringLiteral("frmPackDenPositions"));
    picture(form, QStringLiteral("positions-form"));
    auto& titles = control<QTableView>(form, "dbgPackPositions");
    typeCell(titles, titles.model()->rowCount() - 1, 0, QStringLiteral("Secretary"));
    during([&] { click(form, "cmdRefreshDenPostions"); },
           [this] {
               auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
               picture(*box, QStringLiteral("positions-title-twice"));
               QTest::keyClick(box, Qt::Key_Return);
           });
    picture(form, QStringLiteral("positions-kept-in-edit"));
    QTest::keyClick(&titles, Qt::Key_Escape);
    QTest::keyClick(&titles, Qt::Key_Escape);
    click(form, "Command1");
}

void Tour::backupAndRestore()
{
    QDir::setCurrent(gAppPath);
    auto& backup = open(QStringLiteral("frmDataBackup"));
    during([&] { click(backup, "cmdBack"); },
           [this] {
               auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
               picture(*box, QStringLiteral("backup-question"));
               QTest::keyClick(box, Qt::Key_Escape);
           });
    click(backup, "cmdCancel");
    inside(QStringLiteral("frmRestorBackup"), [this](QWidget& form) { click(form, "cmdClose"); });
    choose("mnuRepairDatabase");
}

// A file of version 1.0 beside the current one takes its place; the tour has seen the pack by then.
void Tour::update()
{
    auto old = store::DBEngine::createDatabase(gAppPath + gOldDbName);
    store::createSchema(old, store::schema::V10);
    old.close();
    during([] { (void)UpdateDatabaseFile(); },
           [this] {
               auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
               picture(*box, QStringLiteral("update"));
               QTest::keyClick(box, Qt::Key_Return);
           });
}

void Tour::aboutAndHelp()
{
    inside(QStringLiteral("frmAbout"), [this](QWidget& form) { click(form, "cmdOK"); });
    inside(QStringLiteral("dlgHelp"), [this](QWidget& form) { click(form, "cmdClose"); });
}

// Every screen of the list that nothing above has led to.
void Tour::otherScreens()
{
    gEditAssignedSID = gEditInsigniaSID = 1;
    gEditDate = QStringLiteral("9/1/2026");
    for (const ListedScreen& screen : screens())
        if (!isPictured(screen))
            inside(screen.form, [](QWidget& form) { form.close(); });
}

void Tour::errorDialog()
{
    platform::pendingError::set(platform::RuntimeError(platform::DatabaseNotFound, QStringLiteral("DBEngine")));
    during([] { CriticalError(); },
           [this] {
               auto& dialog = window(QStringLiteral("dlgError"));
               picture(dialog, QStringLiteral("error"));
               auto& tabs = control<QTabWidget>(dialog, "SSIndexTab1");
               turnTo(tabs, 1);
               picture(dialog, QStringLiteral("error-details"));
               click(dialog, "cmdOk");
           });
}

void Tour::run()
{
    start();
    menus();
    packInformation();
    scouts();
    adults();
    dens();
    awardCatalogue();
    bulkAssignment();
    purchaseList();
    reportScreens();
    positionTitles();
    backupAndRestore();
    aboutAndHelp();
    errorDialog();
    otherScreens();
    update();
}

} // namespace

int main(int argc, char** argv)
{
    widgets::Application application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Does the main work by itself and leaves a picture of every screen."));
    parser.addHelpOption();
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("With light text on dark ground."));
    const QCommandLineOption manual(QStringLiteral("manual"),
                                    QStringLiteral("Puts the manual's pictures into its folder, too."),
                                    QStringLiteral("folder"));
    parser.addOptions({dark, manual});
    parser.addPositionalArgument(QStringLiteral("folder"),
                                 QStringLiteral("Holds the program's folder \"app\" and gets the pictures."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);
    const QString folder = QDir(parser.positionalArguments().constFirst()).absolutePath();
    if (parser.isSet(dark))
        QApplication::setPalette(darkPalette());
    platform::setFolder(folder + QStringLiteral("/app"));
    const QString pictures = parser.isSet(manual) ? QDir(parser.value(manual)).absolutePath() : QString();
    QTimer::singleShot(0, qApp, [folder, pictures] {
        startProgram();
        Tour(folder, pictures).run();
        std::fflush(stdout);
        std::_Exit(EXIT_SUCCESS); // nothing is left to close
    });
    return QApplication::exec();
}
