#include "platform/RuntimeError.h"
#include "store/engine/BulkLoad.h"
#include "support/TestApp.h"
#include "widgets/BoundGrid.h"
#include "widgets/DataControl.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace orlo;
using store::FieldType;

namespace
{

constexpr int Title = 0;
constexpr int Rank = 1;
const QString Source = QStringLiteral("Select * From Titles Order By Sort_Order, Title");

QStringList stored(store::Database& database)
{
    QStringList lines;
    for (auto set = database.openRecordset(QStringLiteral("Select * From Titles Order By Title")); !set.eof();
         set.moveNext())
        lines += set[u"Title"].textOrEmpty() + u'|' + set[u"Sort_Order"].textOrEmpty();
    return lines;
}

// A window with a grid on three titles and a button to go to.
struct Screen {
    QTemporaryDir folder;
    store::Database database = store::DBEngine::createDatabase(folder.filePath(QStringLiteral("grid.mdb")));
    QWidget window;
    widgets::DataControl control;
    widgets::BoundGrid grid;
    QPushButton button;
    QSignalSpy clicks{&button, &QAbstractButton::clicked};
    QAbstractItemModelTester tester{grid.model()};

    explicit Screen(const QStringList& titles = {QStringLiteral("Akela|1"), QStringLiteral("Baloo|2"),
                                                 QStringLiteral("Chil|3")})
    {
        store::TableDef table(QStringLiteral("Titles"));
        table.appendField({.name = QStringLiteral("Title"), .type = FieldType::Text, .size = 10, .defaultValue = {}});
        table.appendField({.name = QStringLiteral("Sort_Order"), .type = FieldType::Integer, .defaultValue = {}});
        table.appendIndex({QStringLiteral("PK"), {QStringLiteral("Title")}, true, true});
        database.appendTableDef(table);
        store::BulkLoad load(database);
        load.begin(table, {QStringLiteral("Title"), QStringLiteral("Sort_Order")});
        for (const QString& title : titles) {
            load.set(Title, title.section(u'|', 0, 0));
            load.set(Rank, title.section(u'|', 1));
            load.addRow();
        }
        load.commit();
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&grid);
        layout->addWidget(&button);
        control.setDatabase(&database);
        control.setRecordSource(Source);
        grid.setDataControl(&control);
        grid.setCaption(QStringLiteral("Den Titles"));
        grid.setColumns({{QStringLiteral("Position Title"), QStringLiteral("title"), 3000},
                         {QStringLiteral("Sort Rank"), QStringLiteral("Sort_Order"), 1000, Qt::AlignRight}});
        control.refresh();
        window.resize(500, 300);
        window.show();
        grid.setFocus();
        static_cast<void>(QTest::qWaitForWindowActive(&window));
    }

    ~Screen()
    {
        grid.cancelRow();
        window.hide();
        grid.setParent(nullptr);
        button.setParent(nullptr);
    }

    void goTo(int row, int column) { grid.setCurrentIndex(grid.model()->index(row, column)); }
    // Keys go where the focus is, as the user's do: to the grid at first and then to its cell's editor.
    static void key(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    static void type(const QString& text)
    {
        for (const QChar character : text)
            QTest::keyClick(QApplication::focusWidget(), character.toLatin1());
    }
    void typeInto(int row, int column, const QString& text)
    {
        goTo(row, column);
        text.isEmpty() ? key(Qt::Key_Delete) : type(text);
        key(Qt::Key_Return);
        QTRY_VERIFY(grid.hasFocus());
    }
    [[nodiscard]] QString shown(int row, int column) const
    {
        return grid.model()->index(row, column).data().toString();
    }
    [[nodiscard]] QString mark(int row) const { return grid.model()->headerData(row, Qt::Vertical).toString(); }
    // What a window manager does once the message is gone.
    void comeBack()
    {
        window.activateWindow();
        QTRY_VERIFY(grid.hasFocus());
    }
    void clickButton() { QTest::mouseClick(&button, Qt::LeftButton); }
};

} // namespace

class tst_boundgrid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheRecords();
    void writesTheRow_data();
    void writesTheRow();
    void addsAtTheLastLine();
    void refusedRow_data();
    void refusedRow();
    void refusedRowKeepsTheFocus();
    void refusedOnRefresh();
    void escape();
    void deletesWholeRows();
    void whatIsNotAllowed();
    void manyRecords();
};

void tst_boundgrid::showsTheRecords()
{
    Screen screen;
    QCOMPARE(screen.grid.model()->rowCount(), 4);
    QCOMPARE(screen.grid.recordCount(), 3);
    QCOMPARE(screen.mark(3), QStringLiteral("*"));
    QCOMPARE(screen.grid.row(), 0);
    screen.grid.setColumns({{QStringLiteral("No"), QStringLiteral("Sort_Order"), 1000, Qt::AlignRight, true},
                            {QStringLiteral("Name"), QStringLiteral("Title"), 1440}});
    QVERIFY(screen.grid.isColumnHidden(0));
    screen.goTo(2, 1);
    QCOMPARE(screen.grid.columnText(0), QStringLiteral("3"));
    QCOMPARE(screen.grid.columnText(1), QStringLiteral("Chil"));
    QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, static_cast<void>(screen.grid.columnText(2)));
    QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, screen.grid.setColumns({{QString(), QStringLiteral("Nothing")}}));
    screen.grid.setColumns({});
    QCOMPARE(screen.grid.columns().size(), 2);
    QCOMPARE(screen.shown(1, Title), QStringLiteral("Baloo"));
    const auto* caption = screen.grid.findChild<QLabel*>(QStringLiteral("caption"));
    QVERIFY(caption->isVisible() && caption->geometry().bottom() < screen.grid.viewport()->y());
    QCOMPARE(caption->text(), QStringLiteral("Den Titles"));
}

void tst_boundgrid::writesTheRow_data()
{
    QTest::addColumn<QString>("how");
    for (const char* how : {"another row", "next row by Tab", "focus", "hide", "refresh", "commitRow"})
        QTest::newRow(how) << QString::fromLatin1(how);
}

void tst_boundgrid::writesTheRow()
{
    QFETCH(QString, how);
    Screen screen;
    screen.typeInto(1, Title, QStringLiteral("Rikki"));
    screen.goTo(1, Rank);
    screen.type(QStringLiteral("25")); // its editor stays open
    QVERIFY(screen.mark(1) != screen.mark(0));
    QCOMPARE(stored(screen.database).at(1), QStringLiteral("Baloo|2"));
    if (how == QLatin1String("another row"))
        screen.goTo(0, Rank);
    else if (how == QLatin1String("next row by Tab")) {
        screen.key(Qt::Key_Tab);
        QCOMPARE(screen.grid.row(), 2);
        QTest::qWait(0);
        screen.type(QStringLiteral("Hathi")); // goes on in the next row's first cell
        screen.clickButton();
        QVERIFY(stored(screen.database).contains(QStringLiteral("Hathi|3")));
    } else if (how == QLatin1String("focus"))
        screen.clickButton();
    else if (how == QLatin1String("hide"))
        screen.grid.hide();
    else if (how == QLatin1String("refresh"))
        screen.control.refresh();
    else
        QVERIFY(screen.grid.commitRow());
    QVERIFY(stored(screen.database).contains(QStringLiteral("Rikki|25")));
    QCOMPARE(stored(screen.database).size(), 3);
    // Only reading the records anew brings them into order.
    QCOMPARE(screen.shown(how == QLatin1String("refresh") ? 2 : 1, Title), QStringLiteral("Rikki"));
}

void tst_boundgrid::addsAtTheLastLine()
{
    Screen screen;
    screen.goTo(3, Title);
    screen.type(QStringLiteral("Hathi"));
    screen.key(Qt::Key_Tab);
    QCOMPARE(screen.grid.currentIndex(), screen.grid.model()->index(3, Rank));
    QCOMPARE(screen.grid.model()->rowCount(), 5);
    QCOMPARE(screen.mark(4), QStringLiteral("*"));
    QCOMPARE(screen.grid.recordCount(), 3);
    screen.key(Qt::Key_Tab); // no rank is given; on to the next new record
    QCOMPARE(screen.grid.currentIndex(), screen.grid.model()->index(4, Title));
    screen.type(QStringLiteral("Ko"));
    screen.key(Qt::Key_Tab);
    screen.type(QStringLiteral("0"));
    screen.clickButton();
    QCOMPARE(screen.clicks.size(), 1);
    QCOMPARE(screen.grid.recordCount(), 5);
    QCOMPARE(screen.grid.model()->rowCount(), 6);
    auto set = screen.database.openRecordset(QStringLiteral("Select * From Titles Where Title = 'Hathi'"));
    QVERIFY(set[u"Sort_Order"].isNull());
    QCOMPARE(screen.shown(4, Title), QStringLiteral("Ko")); // stays at the end until a refresh
    screen.control.refresh();
    QCOMPARE(screen.shown(1, Title), QStringLiteral("Ko"));
    QCOMPARE(screen.grid.model()->rowCount(), 6);
}

void tst_boundgrid::refusedRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("failure");
    for (const int row : {1, 3}) {
        const char* where = row == 1 ? "changed: " : "added: ";
        const auto add = [&](const char* what, int column, const char* typed, int failure) {
            QTest::addRow("%s%s", where, what) << row << column << QString::fromLatin1(typed) << failure;
        };
        add("text too long", Title, "Elevenchars", 3163);
        add("letters in a number", Rank, "two", 3421);
        add("16-bit overflow", Rank, "32768", 6);
        add("duplicate key", Title, "aKELA", 3022);
    }
    QTest::newRow("changed: no key") << 1 << Title << QString() << 3058;
    QTest::newRow("added: no key") << 3 << Rank << QStringLiteral("7") << 3058;
}

void tst_boundgrid::refusedRow()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QString, typed);
    QFETCH(int, failure);
    Screen screen;
    const QStringList before = stored(screen.database);
    screen.typeInto(row, column, typed);
    if (column == Rank && failure != 3058)
        screen.typeInto(row, Title, QStringLiteral("Hathi"));
    for (const bool byFocus : {false, true}) {
        const auto told = test::answerNext();
        if (byFocus)
            screen.clickButton();
        else
            screen.goTo(0, Title);
        QTRY_VERIFY(told->shown);
        QVERIFY2(told->text.startsWith(platform::standardDescription(failure)), qPrintable(told->text));
        QCOMPARE(told->title, QStringLiteral("Den Titles"));
        screen.comeBack();
        QCOMPARE(screen.grid.row(), row);
        QCOMPARE(screen.shown(row, column), typed);
        QCOMPARE(stored(screen.database), before);
    }
    screen.typeInto(row, Title, QStringLiteral("Mang"));
    screen.typeInto(row, Rank, QStringLiteral("-32768"));
    screen.goTo(0, Title);
    QVERIFY(stored(screen.database).contains(QStringLiteral("Mang|-32768")));
    QCOMPARE(stored(screen.database).size(), row == 1 ? 3 : 4);
}

void tst_boundgrid::refusedRowKeepsTheFocus()
{
    Screen screen;
    screen.typeInto(0, Rank, QStringLiteral("x"));
    for (const bool byKey : {false, true}) {
        const auto told = test::answerNext();
        byKey ? screen.key(Qt::Key_Tab) : screen.clickButton();
        QVERIFY(told->shown);
        screen.comeBack();
    }
    QCOMPARE(screen.clicks.size(), 0); // the user is back at the row, the button has done nothing
    screen.key(Qt::Key_Escape);
    screen.clickButton();
    QCOMPARE(screen.clicks.size(), 1);
    QVERIFY(screen.button.hasFocus());
}

void tst_boundgrid::refusedOnRefresh()
{
    Screen screen;
    screen.typeInto(3, Rank, QStringLiteral("x"));
    const auto told = test::answerNext();
    screen.control.refresh();
    QCOMPARE(told->text, platform::standardDescription(platform::WrongDataType));
    QCOMPARE(screen.grid.model()->rowCount(), 4);
    QCOMPARE(screen.shown(3, Rank), QString());
}

void tst_boundgrid::escape()
{
    Screen screen;
    const QStringList before = stored(screen.database);
    for (const int row : {1, 3}) {
        const QString title = screen.shown(row, Title);
        screen.typeInto(row, Title, QStringLiteral("Hathi"));
        screen.goTo(row, Rank);
        screen.type(QStringLiteral("9"));
        screen.key(Qt::Key_Escape);
        QCOMPARE(screen.shown(row, Rank), row == 1 ? QStringLiteral("2") : QString());
        QCOMPARE(screen.shown(row, Title), QStringLiteral("Hathi"));
        QTRY_VERIFY(screen.grid.hasFocus());
        screen.key(Qt::Key_Escape);
        QCOMPARE(screen.shown(row, Title), title);
        QCOMPARE(screen.grid.model()->rowCount(), 4);
        QCOMPARE(screen.grid.row(), row);
    }
    screen.clickButton();
    QCOMPARE(stored(screen.database), before);
}

void tst_boundgrid::deletesWholeRows()
{
    Screen screen;
    screen.goTo(1, Title);
    screen.key(Qt::Key_Delete); // one cell: it is emptied
    screen.key(Qt::Key_Escape);
    QCOMPARE(stored(screen.database).size(), 3);
    screen.grid.setAllowDelete(false);
    screen.grid.selectRow(1);
    screen.key(Qt::Key_Delete);
    screen.key(Qt::Key_Escape);
    QCOMPARE(stored(screen.database).size(), 3);
    screen.grid.setAllowDelete(true);
    screen.grid.selectRow(1);
    screen.key(Qt::Key_Delete);
    QCOMPARE(stored(screen.database), (QStringList{QStringLiteral("Akela|1"), QStringLiteral("Chil|3")}));
    QCOMPARE(screen.shown(1, Title), QStringLiteral("Chil"));
    screen.grid.selectAll();
    screen.key(Qt::Key_Delete);
    QVERIFY(stored(screen.database).isEmpty());
    QCOMPARE(screen.grid.model()->rowCount(), 1);
}

void tst_boundgrid::whatIsNotAllowed()
{
    Screen screen;
    const QStringList before = stored(screen.database);
    const auto typeEverywhere = [&] {
        for (int row = 0; row < screen.grid.model()->rowCount(); ++row) {
            screen.goTo(row, Rank);
            screen.type(QStringLiteral("9"));
        }
        screen.grid.commitRow();
        return screen.grid.model()->rowCount();
    };
    screen.grid.setAllowAddNew(false);
    screen.grid.setAllowUpdate(false);
    QCOMPARE(typeEverywhere(), 3);
    screen.grid.setAllowAddNew(true);
    screen.grid.setAllowUpdate(true);
    screen.control.setRecordSource(
        QStringLiteral("Select Title, Max(Sort_Order) As Sort_Order From Titles Group By Title"));
    screen.control.refresh();
    QCOMPARE(typeEverywhere(), 3);
    QCOMPARE(stored(screen.database), before);
}

// The records are read as they come into view; reading them all for each step takes minutes here.
void tst_boundgrid::manyRecords()
{
    QStringList titles;
    for (int number = 0; number < 10'000; ++number)
        titles += QStringLiteral("T%1|%2").arg(number).arg(number);
    Screen screen(titles);
    QElapsedTimer clock;
    clock.start();
    for (int turn = 0; turn < 20; ++turn)
        for (const int row : {9'999, 0, 5'000, 7'777}) {
            screen.goTo(row, Rank);
            QCoreApplication::processEvents();
            QCOMPARE(screen.grid.columnText(Title), QStringLiteral("T%1").arg(row));
        }
    screen.typeInto(7'777, Title, QStringLiteral("last"));
    screen.goTo(10'000, Title);
    QVERIFY(stored(screen.database).contains(QStringLiteral("last|7777")));
    QVERIFY2(clock.elapsed() < 10'000, qPrintable(QString::number(clock.elapsed())));
}

ORLO_TEST_MAIN(tst_boundgrid)

#include "tst_boundgrid.moc"
