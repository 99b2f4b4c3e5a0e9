#include "store/engine/Database.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "support/Controls.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Table.h"
#include "widgets/BoundGrid.h"
#include "widgets/DataControl.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <ctime>

using namespace orlo;

namespace
{

constexpr int Title = 0;
constexpr int Rank = 1;

// A window with a grid on three titles and another button to move to.
struct Screen {
    QTemporaryDir folder;
    store::Database database = store::DBEngine::createDatabase(folder.filePath("grid.mdb"));
    QWidget window;
    widgets::DataControl control;
    widgets::BoundGrid grid;
    QPushButton button{"&Button"};
    QSignalSpy clicks{&button, &QAbstractButton::clicked};
    QAbstractItemModelTester tester{grid.model()};

    explicit Screen(const QStringList& titles = {"Akela|1", "Baloo|2", "Chil|3"})
    {
        store::TableDef table("Titles");
        table.appendField({.name = "Title", .type = store::FieldType::Text, .size = 10, .defaultValue = {}});
        table.appendField({.name = "Sort_Order", .type = store::FieldType::Integer, .defaultValue = {}});
        table.appendIndex({"PK", {"Title"}, true, true});
        database.appendTableDef(table);
        store::Transaction transaction(database);
        store::Recordset rows = database.openRecordset("Titles");
        for (const QString& title : titles) {
            rows.addNew();
            for (const int column : {Title, Rank})
                rows.setValue(column, title.section(u'|', column, column));
            rows.update();
        }
        transaction.commit();
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&grid);
        layout->addWidget(&button);
        control.setDatabase([this]() -> store::Database& { return database; });
        control.setRecordSource("Select * From Titles Order By Sort_Order, Title");
        grid.setDataControl(&control);
        grid.setCaption("Den Titles");
        grid.setColumns({{"Position Title", "title", 3000}, {"Sort Rank", "Sort_Order", 1000, Qt::AlignRight}});
        control.refresh();
        window.resize(500, 300);
        window.show();
        grid.setFocus();
        static_cast<void>(QTest::qWaitForWindowActive(&window));
    }

    void goTo(int row, int column) { grid.setCurrentIndex(grid.model()->index(row, column)); }
    // Keys go to the focus, as the user's do: to the grid at first and then to its cell's editor.
    static void key(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    static void type(const QString& text)
    {
        for (const QChar character : text)
            QTest::keyClick(QApplication::focusWidget(), character.toLatin1());
    }

    void typeInto(int row, int column, const QString& text)
    {
        goTo(row, column);
        type(text);
        key(text.isEmpty() ? Qt::Key_Delete : Qt::Key_Return);
        QTRY_VERIFY(grid.hasFocus());
    }
    [[nodiscard]] QString shown(int row, int column) const
    {
        return grid.model()->index(row, column).data().toString();
    }
    [[nodiscard]] QString mark(int row) const { return grid.model()->headerData(row, Qt::Vertical).toString(); }
    // As a window manager does once the message is gone.
    void comeBack()
    {
        window.activateWindow();
        QTRY_VERIFY(grid.hasFocus());
    }
    QString stored()
    {
        QStringList lines;
        for (auto set = database.openRecordset("Select * From Titles Order By Title"); !set.eof(); set.moveNext())
            lines += set[u"Title"].textOrEmpty() + u'|' + set[u"Sort_Order"].textOrEmpty();
        return lines.join(", ");
    }

    void clickButton() { QTest::mouseClick(&button, Qt::LeftButton); }
};

} // namespace

class tst_boundgrid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheRecords()
    {
        Screen screen;
        QCOMPARE(screen.grid.model()->rowCount(), 4);
        QCOMPARE(screen.grid.recordCount(), 3);
        QCOMPARE(screen.mark(3), "*");
        QCOMPARE(screen.grid.row(), 0);
        screen.grid.setColumns({{"No", "Sort_Order", 1000, Qt::AlignRight, true}, {"Name", "Title", 1440}});
        QVERIFY(screen.grid.isColumnHidden(0));
        screen.goTo(2, 1);
        QCOMPARE(screen.grid.columnText(0) + screen.grid.columnText(1), "3Chil");
        QVERIFY(test::failureNumber([&] { return screen.grid.columnText(2); }) != 0);
        QVERIFY(test::failureNumber([&] { screen.grid.setColumns({{QString(), "Nothing"}}); }) != 0);
        screen.grid.setColumns({{"A heading wider than its column", "Title", 100}, {"No", "Sort_Order", 1000}});
        const QHeaderView& heading = *screen.grid.horizontalHeader();
        QVERIFY(heading.sectionSize(0) >= heading.sectionSizeHint(0));
        screen.grid.setColumns({});
        QCOMPARE(screen.grid.columns().size(), 2);
        QCOMPARE(screen.shown(1, Title), "Baloo");
        const auto heard = [&](int row, int column) {
            return screen.grid.model()->index(row, column).data(Qt::AccessibleDescriptionRole).toString();
        };
        QCOMPARE(heard(1, Title), QString()); // cells that are typed into are read one by one
        screen.grid.setAllowUpdate(false);
        QCOMPARE(heard(1, Title), "Sort_Order: 2");
        screen.grid.setAllowUpdate(true);
        const auto* caption = screen.grid.findChild<QLabel*>("caption");
        QVERIFY(caption->isVisible() && caption->geometry().bottom() < screen.grid.viewport()->y());
        const QImage painted = screen.grid.viewport()->grab().toImage();
        QSet<QRgb> grounds; // of the current row, another one and the empty line
        for (const int row : {screen.grid.row(), 1, 3})
            grounds +=
                painted.pixel(screen.grid.visualRect(screen.grid.model()->index(row, 1)).topLeft() + QPoint(3, 3));
        QCOMPARE(grounds.size(), 3);
    }

    void writesTheRow_data() { test::table({"how"}, "another row\nnext row by Tab\nfocus\nhide\nrefresh\ncommitRow"); }
    void writesTheRow()
    {
        QFETCH(QString, how);
        Screen screen;
        screen.typeInto(1, Title, "Rikki");
        screen.goTo(1, Rank);
        screen.type("25"); // its editor stays open
        QVERIFY(screen.mark(1) != screen.mark(0));
        QCOMPARE(screen.stored(), "Akela|1, Baloo|2, Chil|3");
        const QMap<QString, std::function<void()>> ways{{"another row", [&] { screen.goTo(0, Rank); }},
                                                        {"focus", [&] { screen.clickButton(); }},
                                                        {"hide", [&] { screen.grid.hide(); }},
                                                        {"refresh", [&] { screen.control.refresh(); }},
                                                        {"commitRow", [&] { QVERIFY(screen.grid.commitRow()); }}};
        if (ways.contains(how))
            ways[how]();
        else {
            screen.key(Qt::Key_Tab);
            QCOMPARE(screen.grid.row(), 2);
            QTest::qWait(0);
            screen.type("Hathi"); // continues in the next row's first cell
            QCOMPARE(QApplication::focusWidget()->property("text").toString(), "Hathi");
        }
        QCOMPARE(screen.stored(), "Akela|1, Chil|3, Rikki|25");
        // Only reading the records again sorts them.
        QCOMPARE(screen.shown(how == "refresh" ? 2 : 1, Title), "Rikki");
    }

    // A row changed without being the current one is also left when another one is changed.
    void changesByCode()
    {
        Screen screen;
        auto* model = screen.grid.model();
        const auto set = [&](int row, int column, const QString& text) {
            return model->setData(model->index(row, column), text);
        };
        QVERIFY(set(3, Title, "Hathi") && set(4, Title, "Ko") && set(1, Rank, "9"));
        QCOMPARE(screen.stored(), "Akela|1, Baloo|2, Chil|3, Hathi|, Ko|");
        QVERIFY(set(1, Title, "Ko") && !set(0, Rank, "7"));
        QVERIFY(set(1, Title, "Baloo") && screen.grid.commitRow());
        QVERIFY(set(5, Rank, "1") && set(5, Rank, "") && !set(6, Title, "Mang")); // the next line is deleted with it
        QCOMPARE(screen.stored(), "Akela|1, Baloo|9, Chil|3, Hathi|, Ko|");
    }

    void refusedOnRefresh()
    {
        Screen screen;
        screen.typeInto(3, Rank, "7"); // without the keyboard
        const auto told = test::answerNext();
        screen.control.refresh();
        QVERIFY(told->text.startsWith(platform::standardDescription(platform::NullInPrimaryKey)));
        QCOMPARE(screen.grid.model()->rowCount(), 4);
        QCOMPARE(screen.shown(3, Rank), QString());
    }

    // As in spreadsheets: lines with tabs. A line more than there are rows makes new ones.
    void copiesAndPastes()
    {
        Screen screen;
        screen.grid.selectAll();
        QTest::keyClick(&screen.grid, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), "Akela\t1\nBaloo\t2\nChil\t3\n\t");
        QGuiApplication::clipboard()->setText("Hathi\t7\r\nKo\t8\r\nMang\t9\r\n");
        screen.goTo(2, Title);
        QTest::keyClick(&screen.grid, Qt::Key_V, Qt::ControlModifier);
        QVERIFY(screen.grid.commitRow());
        QCOMPARE(screen.stored(), "Akela|1, Baloo|2, Hathi|7, Ko|8, Mang|9");
    }

    // The remaining width goes to one column, but not beyond a width that the user has set.
    void widths()
    {
        Screen screen;
        const auto* header = screen.grid.horizontalHeader();
        screen.grid.setStretchColumn(Title);
        const int full = screen.grid.viewport()->width();
        QCOMPARE(header->length(), full);
        screen.grid.setColumnWidth(Rank, 120);
        screen.control.refresh();
        QCOMPARE(header->sectionSize(Rank), 120);
        QCOMPARE(header->length(), full);
        screen.grid.setColumnWidth(Title, 90);
        screen.window.resize(700, 300);
        screen.control.refresh();
        QCOMPARE(header->length(), 210);
    }

    // A repair or a restore closes the file that the grid shows.
    void paintsWithoutItsFile()
    {
        Screen screen;
        screen.typeInto(1, Rank, "9");
        screen.database.close();
        screen.grid.viewport()->repaint();
        const auto told = test::answerNext();
        QVERIFY(screen.grid.commitRow() && told->shown); // reported once; an unwritable row keeps nothing open
        QVERIFY(screen.grid.commitRow());
    }

    void whatIsNotAllowed()
    {
        Screen screen;
        const auto typeEverywhere = [&] {
            for (int row = 0; row < screen.grid.model()->rowCount(); ++row) {
                screen.goTo(row, Rank);
                screen.type("9");
            }
            screen.grid.commitRow();
            return screen.grid.model()->rowCount();
        };
        screen.grid.setAllowAddNew(false);
        screen.grid.setAllowUpdate(false);
        QCOMPARE(typeEverywhere(), 3);
        screen.grid.setAllowAddNew(true);
        screen.grid.setAllowUpdate(true);
        screen.control.setRecordSource("Select Title, Max(Sort_Order) As Sort_Order From Titles Group By Title");
        screen.control.refresh();
        QCOMPARE(typeEverywhere(), 3);
        QCOMPARE(screen.stored(), "Akela|1, Baloo|2, Chil|3");
    }

    // The records are read as they come into view; reading all of them for each step would take minutes here.
    void manyRecords()
    {
        QStringList titles;
        for (int number = 0; number < 10'000; ++number)
            titles += QStringLiteral("T%1|%2").arg(number).arg(number);
        Screen screen(titles);
        const std::clock_t start = std::clock(); // processor time, whatever else the machine does
        for (int turn = 0; turn < 80; ++turn) {
            const int row = turn * 7'777 % 10'000;
            screen.goTo(row, Rank);
            QCoreApplication::processEvents();
            QCOMPARE(screen.grid.columnText(Title), QStringLiteral("T%1").arg(row));
        }
        screen.typeInto(7'777, Title, "last");
        screen.goTo(10'000, Title);
        QVERIFY(screen.stored().contains("last|7777"));
        const auto seconds = (std::clock() - start) / CLOCKS_PER_SEC;
        QVERIFY2(seconds < 10, qPrintable(QString::number(seconds)));
    }
};

ORLO_TEST(tst_boundgrid)

#include "tst_boundgrid.moc"
