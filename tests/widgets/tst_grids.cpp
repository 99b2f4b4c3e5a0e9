#include "store/engine/Database.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Picture.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/BoundGrid.h"
#include "widgets/DataControl.h"
#include "widgets/EmptyText.h"
#include "widgets/KeyGrid.h"
#include "widgets/Twips.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <ctime>

using namespace orlo;
using Args = QStringList;
using test::Words;

namespace
{

// What a grid shows beyond its picture. Widths and heights are in twips, so that they hardly depend on the screen.
QStringList measuresOf(const QTableView& grid)
{
    const double twips = 1440.0 / grid.logicalDpiX();
    QStringList widths;
    for (int column = 0; column < grid.model()->columnCount(); ++column)
        widths += grid.isColumnHidden(column) ? "-" : QString::number(qRound(grid.columnWidth(column) * twips));
    const auto heard = [&](int role) {
        const QModelIndex cell = grid.currentIndex().isValid() ? grid.currentIndex() : grid.model()->index(0, 0);
        return cell.data(role).toString();
    };
    const auto heading = [&](int at, Qt::Orientation where, int role) {
        return grid.model()->headerData(at, where, role);
    };
    QStringList headings;
    QString cells;
    for (int column = 0; column < grid.model()->columnCount(); ++column) {
        headings += heading(column, Qt::Horizontal, Qt::AccessibleTextRole).toString();
        for (const QVariant& of : {heading(column, Qt::Horizontal, Qt::TextAlignmentRole),
                                   grid.model()->index(0, column).data(Qt::TextAlignmentRole)})
            cells += of.toInt() & Qt::AlignRight ? '>' : of.toInt() & Qt::AlignHCenter ? '^' : '<';
    }
    QStringList rows; // what is heard of them, and where their marks are
    for (int row = 0; row < grid.model()->rowCount(); ++row)
        rows += heading(row, Qt::Vertical, Qt::AccessibleDescriptionRole).toString() +
                (heading(row, Qt::Vertical, Qt::TextAlignmentRole).toInt() & Qt::AlignHCenter ? "^" : "");
    QString says; // where there are no rows, once it is painted
    if (rows.isEmpty() || !grid.accessibleDescription().isEmpty()) {
        const QImage painted = grid.viewport()->grab().toImage();
        QImage plain = painted;
        plain.fill(painted.pixel(0, 0));
        says = grid.accessibleDescription();
        says += says.isEmpty() ? "" : painted == plain ? ", not painted" : ", painted";
    }
    return {("says: " + says).trimmed(),
            ("widths: " + widths.join(' ')).trimmed(),
            QString("heights: %1, %2")
                .arg(qRound(grid.horizontalHeader()->height() * twips))
                .arg(qRound(grid.rowHeight(0) * twips)),
            QString("scrolled: %1 of %2")
                .arg(grid.horizontalScrollBar()->value())
                .arg(grid.horizontalScrollBar()->maximum()),
            ("heard: " + heard(Qt::AccessibleDescriptionRole)).trimmed(),
            ("headings: " + headings.join('/') + ' ' + cells).trimmed(),
            ("rows: " + rows.join('/')).trimmed()};
}

// A grid of texts, by what its callers may do to it.
struct Texts {
    widgets::KeyGrid grid;
    std::vector<std::unique_ptr<widgets::RedrawHold>> holds;
    QStringList& told;
    Words words{{"rows", [this](const Args& a) { grid.setRows(a[0].toInt()); }},
                {"cols", [this](const Args& a) { grid.setCols(a[0].toInt()); }},
                {"text", [this](const Args& a) { grid.setText(a[0].toInt(), a[1].toInt(), a[2]); }},
                {"read", [this](const Args& a) { told += "read " + grid.text(a[0].toInt(), a[1].toInt()); }},
                {"row", [this](const Args& a) { grid.setRow(a[0].toInt()); }},
                {"add", [this](const Args& a) { grid.setText(grid.addRow(), 1, a[0]); }},
                {"remove", [this](const Args& a) { grid.removeRow(a[0].toInt()); }},
                {"width", [this](const Args& a) { grid.setColWidth(a[0].toInt(), a[1].toInt()); }},
                {"fit", [this](const Args& a) { grid.fitCol(a[0].toInt(), a[1]); }},
                {"heading", [this](const Args& a) { grid.setHeadingHeight(a[0].toInt()); }},
                {"centre", [this](const Args& a) { grid.setColAlignment(a[0].toInt(), Qt::AlignHCenter); }},
                {"stretch", [this](const Args& a) { grid.setStretchColumn(a[0].toInt()); }},
                {"keys", [this](const Args& a) { grid.setFirstKeyColumn(a[0].toInt(), a[1].toInt()); }},
                {"hold", [this](const Args&) { holds.push_back(std::make_unique<widgets::RedrawHold>(grid)); }},
                {"release", [this](const Args&) { holds.pop_back(); }}};

    explicit Texts(QStringList& log) : told(log)
    {
        QObject::connect(&grid, &widgets::TextGrid::rowDoubleClicked, &grid,
                         [this] { told += QString("double click on row %1").arg(grid.row()); });
    }
    [[nodiscard]] QString row() const { return QString::number(grid.row()); }
};

// A grid of records, whose fields are of all kinds.
struct Records {
    QTemporaryDir folder;
    store::Database database = store::DBEngine::createDatabase(folder.filePath("grid.mdb"));
    widgets::DataControl control;
    widgets::BoundGrid grid;
    QStringList& told;
    Words words{
        {"columns", [this](const Args& a) { grid.setColumns(columnsOf(a)); }},
        {"source",
         [this](const Args& a) {
             control.setRecordSource(a.join(','));
             control.refresh();
         }},
        {"refresh", [this](const Args&) { control.refresh(); }},
        {"reread", [this](const Args&) { grid.refresh(); }},
        {"caption", [this](const Args& a) { grid.setCaption(a[0]), told += "named " + grid.accessibleName(); }},
        {"update", [this](const Args& a) { grid.setAllowUpdate(a[0] == "yes"); }},
        {"adding", [this](const Args& a) { grid.setAllowAddNew(a[0] == "yes"); }},
        {"deleting", [this](const Args& a) { grid.setAllowDelete(a[0] == "yes"); }},
        {"stretch", [this](const Args& a) { grid.setStretchColumn(a[0].toInt()); }},
        {"row", [this](const Args& a) { grid.setRow(a[0].toInt()); }},
        {"cell", [this](const Args& a) { grid.setCurrentIndex(grid.model()->index(a[0].toInt(), a[1].toInt())); }},
        {"put", // in a row that needn't be the current one
         [this](const Args& a) {
             const bool taken = grid.model()->setData(grid.model()->index(a[0].toInt(), a[1].toInt()), a[2]);
             told += taken ? "taken" : "not taken";
         }},
        {"find", [this](const Args& a) { told += QString("found %1").arg(grid.findRow(a[0].toInt(), a[1])); }},
        {"read", [this](const Args& a) { told += "read " + grid.columnText(a[0].toInt()); }},
        {"commit", [this](const Args&) { told += grid.commitRow() ? "written" : "not written"; }},
        {"paste",
         [](const Args& a) {
             const QString text = a.join(',').replace('|', '\n').replace(';', '\t').replace('^', '\r');
             auto* held = new QMimeData; // as a browser copies it
             text == "picture" ? held->setImageData(QImage(2, 2, QImage::Format_RGB32)) : held->setText(text);
             held->setHtml("<b>copied</b>"), QGuiApplication::clipboard()->setMimeData(held);
         }},
        {"copied",
         [this](const Args&) { told += QGuiApplication::clipboard()->text().replace('\n', '|').replace('\t', ';'); }},
        {"sql", [this](const Args& a) { database.execute(a.join(',')); }},
        {"stored",
         [this](const Args&) {
             for (auto set = database.openRecordset("Select * From Titles Order By 2, 1"); !set.eof(); set.moveNext()) {
                 QStringList cells;
                 for (int field = 0; field < 7; ++field)
                     cells += set.value(field).textOrEmpty();
                 told += cells.join('|');
             }
         }},
        {"undo", [this](const Args&) { control.setDatabase({}); }},
        {"close", [this](const Args&) { database.close(); }}};

    explicit Records(QStringList& log) : told(log)
    {
        using enum store::FieldType;
        store::TableDef table("Titles");
        table.appendField({.name = "Title", .type = Text, .size = 10, .defaultValue = {}});
        table.appendField({.name = "Sort_Order", .type = Integer, .defaultValue = {}});
        table.appendField({.name = "Born", .type = Date, .defaultValue = {}});
        table.appendField({.name = "Here", .type = Boolean, .defaultValue = {}});
        table.appendField({.name = "Many", .type = Long, .defaultValue = {}});
        table.appendField({.name = "Pay", .type = Double, .defaultValue = {}});
        table.appendField({.name = "Notes", .type = Memo, .defaultValue = {}});
        table.appendIndex({"PK", {"Title"}, true, true});
        database.appendTableDef(table);
        for (const char* row : {"'Akela', 1", "'Baloo', 2", "'Chil', 3"})
            database.execute(QString("Insert Into Titles (Title, Sort_Order) Values (%1)").arg(row));
        control.setDatabase([this]() -> store::Database& { return database; });
        grid.setDataControl(&control);
        grid.setCaption("Den Titles");
        control.setRecordSource("Select * From Titles Order By Sort_Order, Title");
        control.refresh();
    }
    // "Title", "Title 3000" or "Title hidden".
    static QList<widgets::GridColumn> columnsOf(const Args& words)
    {
        QList<widgets::GridColumn> columns;
        for (const QString& word : words.filter(QRegularExpression(".")))
            columns.append({"the " + word.section(' ', 0, 0), word.section(' ', 0, 0),
                            std::max(1000, word.section(' ', 1).toInt()), Qt::AlignRight, word.endsWith("hidden")});
        return columns;
    }
    [[nodiscard]] QString row() const { return QString::number(grid.row()); }
};

} // namespace

// Each case is a grid, and what each step, "> ...", changes. Words are those of RecordScreen, and "word=a,b" for what a
// form calls; a tilde is a blank. A failure is told by its number.
class tst_grids : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data() { test::cases({"case"}, "widgets/grids_texts.txt"); }
    void texts() { play<Texts>(); }
    void records_data() { test::cases({"case"}, "widgets/grids_records.txt"); }
    void records() { play<Records>(); }

    // The records are read as they come into view; reading all of them for each step would take minutes here.
    void manyRecords()
    {
        QStringList told;
        Records records(told);
        {
            store::Transaction transaction(records.database);
            store::Recordset rows = records.database.openRecordset("Titles");
            for (int number = 0; number < 10'000; ++number) {
                rows.addNew();
                rows.setValue(0, QString("T%1").arg(number));
                rows.setValue(1, number + 4);
                rows.update();
            }
            transaction.commit();
        }
        const std::clock_t start = std::clock(); // processor time, whatever else the machine does
        records.control.refresh();
        records.grid.show();
        for (int turn = 0; turn < 80; ++turn) {
            const int row = turn * 7'777 % 10'000;
            records.grid.setCurrentIndex(records.grid.model()->index(row + 3, 1));
            QCoreApplication::processEvents();
            QCOMPARE(records.grid.columnText(0), QStringLiteral("T%1").arg(row));
        }
        QVERIFY(records.grid.model()->setData(records.grid.model()->index(7'780, 0), "last"));
        const auto refused = test::answerNext();
        QVERIFY2(records.grid.commitRow(), qPrintable(refused->text));
        refused->shown = true; // it answers nothing later
        QCOMPARE(records.database.openRecordset("Select Title From Titles Where Sort_Order = 7781").value(0).toText(),
                 "last");
        const auto seconds = (std::clock() - start) / CLOCKS_PER_SEC;
        QVERIFY2(seconds < 10, qPrintable(QString::number(seconds)));
    }

    // A quadratic step anywhere would take minutes at this size.
    void manyRows()
    {
        constexpr int Count = 200'000;
        const std::clock_t start = std::clock(); // processor time, whatever else the machine does
        widgets::TextGrid grid;
        grid.show();
        std::optional<widgets::RedrawHold> hold(grid);
        grid.setRows(Count / 2 + 1);
        for (int row = 1; row <= Count; ++row) {
            if (row > Count / 2)
                grid.setRow(grid.addRow());
            grid.setText(row, 1, "text");
        }
        hold.reset();
        QCOMPARE(grid.model()->rowCount(), Count);
        QCOMPARE(grid.row(), Count);
        const auto seconds = (std::clock() - start) / CLOCKS_PER_SEC;
        QVERIFY2(seconds < 20, qPrintable(QString::number(seconds)));
    }

private:
    template <class Kind>
    static void play()
    {
        const QStringList lines = test::cell("case").trimmed().split('\n');
        QWidget window;
        QStringList told;
        Kind kind(told);
        const QAbstractItemModelTester tester(kind.grid.model());
        kind.grid.setObjectName("grid");
        QPushButton button("&Button");
        button.setObjectName("cmdButton");
        connect(&button, &QPushButton::clicked, &button, [&told] { told += "pressed"; });
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&kind.grid);
        layout->addWidget(&button);
        kind.words["size"] = [&](const Args& a) { window.resize(a[0].toInt(), a[1].toInt()); };
        kind.words["font"] = [&](const Args& a) { kind.grid.setFont(QFont(kind.grid.font().family(), a[0].toInt())); };
        kind.words["empty"] = [&](const Args& a) {
            widgets::sayWhenEmpty(kind.grid, a[0], a.size() > 1 ? &button : nullptr);
        };
        kind.words["button"] = [&](const Args& a) { button.setEnabled(a[0] == "yes"); };
        kind.words["behind"] = [&](const Args& a) { // keys that come while another window is still the active one
            QWidget other;
            other.show();
            QVERIFY(QTest::qWaitForWindowActive(&other));
            for (const QString& key : a)
                QTest::keyClick(&kind.grid, Qt::Key(QKeySequence(key)[0].key()));
            window.activateWindow();
        };
        kind.words["hide"] = [&](const Args&) { kind.grid.hide(); };
        kind.words["show"] = [&](const Args&) { kind.grid.show(); };
        window.resize(500, 300);
        window.show();
        kind.grid.setFocus();
        const test::RecordScreen screen(window);
        if (!QTest::qWaitForWindowActive(&window))
            test::fail("the window doesn't become active");
        const auto look = [&] {
            return test::pictureOf(window) + measuresOf(kind.grid) + test::placesOf(window) +
                   QStringList("row: " + kind.row());
        };
        QStringList seen = test::pictureOf(window, test::What::Everything);
        seen += screen.walk(kind.words, lines, told, {}, look);
        test::comparePicture(comparable(seen), comparable(lines).join('\n'));
    }

    // Letters have other widths on Windows.
    static QStringList comparable(QStringList lines)
    {
        static const QRegularExpression Measures("^(widths|heights|scrolled): .*|, (spare room|scrolls|cut heading)");
        if (QSysInfo::productType() == "windows")
            lines.replaceInStrings(Measures, QString()).removeAll(QString());
        return lines;
    }
};

ORLO_TEST(tst_grids)

#include "tst_grids.moc"
