#include "store/engine/Database.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "support/Controls.h"
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
    void tints()
    {
        const Screen screen;
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
