#include "shell/forms/Module1.h"
#include "shell/frame/mdiPendrake.h"
#include "store/engine/Database.h"
#include "support/OrloDb.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/BoundGrid.h"
#include "widgets/ListBox.h"
#include "widgets/TextGrid.h"

#include <QtWidgets/QtWidgets>

using namespace orlo;
using test::control;

namespace
{

// The cells of the window's grids and lists whose texts are cut off, except in the column that takes the remaining
// width.
void addCut(const QWidget& window, QSet<QString>& faults)
{
    QCoreApplication::processEvents();
    for (const auto* view : window.findChildren<QAbstractItemView*>()) {
        const auto* table = qobject_cast<const QTableView*>(view);
        const auto* texts = qobject_cast<const widgets::TextGrid*>(view);
        const auto* bound = qobject_cast<const widgets::BoundGrid*>(view);
        if (!view->isVisible())
            continue;
        const int stretched = texts ? texts->stretchColumn() : bound ? bound->stretchColumn() : -1;
        for (int column = 0; column < view->model()->columnCount(); ++column)
            for (int row = 0; row < view->model()->rowCount(); ++row) {
                const QModelIndex cell = view->model()->index(row, column);
                const int room = table ? table->columnWidth(column) - 1 : view->visualRect(cell).width();
                if (column != stretched && !(table && table->isColumnHidden(column)) &&
                    view->sizeHintForIndex(cell).width() > room)
                    faults += view->objectName() + ": " + cell.data().toString();
            }
    }
}

// The same for each person of a list, on the page of the awards.
void addCutOfPeople(QWidget& form, const char* list, const char* pages, QSet<QString>& faults)
{
    control<QTabWidget>(form, pages).setCurrentIndex(0);
    addCut(form, faults);
    control<QTabWidget>(form, pages).setCurrentIndex(1);
    auto& people = control<widgets::ListBox>(form, list);
    for (int row = 0; row < people.listCount(); ++row) {
        people.setListIndex(row);
        addCut(form, faults);
    }
}

} // namespace

// The screens with the sample pack.
class tst_sample : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsCutOff_data() { test::table({"points"}, "-1\n11\n16"); } // -1 is the usual size
    void nothingIsCutOff()
    {
        const QFont before = QApplication::font();
        QApplication::setFont(QFont(before.family(), test::cell("points").toInt()));
        const test::AppFolder folder;
        test::copyLayouts();
        gDatabase.reset();
        QVERIFY(QFile::remove(gAppPath + "/Quorrel11.mdb"));
        const auto made = test::orloDb({"new", gAppPath + "/Quorrel11.mdb", "--from", ORLO_SOURCE_DIR "/samples/pack"});
        QCOMPARE(made.errors, QString());
        openDatabase(databasePath());
        mdiPendrake::instance().show();
        test::execute("Update Assigned_Awards_Scouts Set Quantity = 32767 Where Assigned_SID < 20");
        QSet<QString> faults;
        addCutOfPeople(test::showForm("frmScouts"), "lbScouts", "tabScout", faults);
        addCut(test::showForm("frmAddAwardsToScout"), faults);
        addCutOfPeople(test::showForm("frmAdults"), "lbAdults", "tabAdult", faults);
        auto& dens = test::showForm("frmDenInfo");
        for (auto* next = &control<QPushButton>(dens, "cmdNext"); next->isEnabled(); next->click())
            addCut(dens, faults);
        addCut(test::showForm("frmPackDenPositions"), faults);
        auto& assign = test::showForm("frmAssignInsignias");
        control<QPushButton>(assign, "cmdSelectAllSel").click();
        addCut(assign, faults);
        control<QTabWidget>(assign, "SSTabAssignInsignias").setCurrentIndex(1);
        addCut(assign, faults);
        auto& list = test::showForm("frmCreatePurchaseList");
        control<QLineEdit>(list, "txtStartDate").setText("1/1/2000");
        control<QPushButton>(list, "cmdCreate").click();
        addCut(list, faults);
        QApplication::setFont(QFont(before.family(), 20)); // while they are open
        for (const auto* window : QApplication::topLevelWidgets())
            addCut(*window, faults);
        QApplication::setFont(before);
        QCOMPARE(QStringList(faults.begin(), faults.end()).join(", "), QString());
    }
};

ORLO_TEST(tst_sample)

#include "tst_sample.moc"
