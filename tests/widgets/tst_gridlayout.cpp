#include "support/Controls.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Table.h"
#include "widgets/GridLayout.h"

#include <QTemporaryDir>

using namespace orlo;
using widgets::GridColumn;
using widgets::GridLayout;

class tst_gridlayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A case without a text names a file that comes with the program; "\t" is a tab.
    void reads_data() { test::tableOf("widgets/gridlayout_reads.txt"); }
    void reads()
    {
        auto [name, text] = test::cells("case", "text");
        if (text.isEmpty())
            text = QString::fromUtf8(test::contents(ORLO_SOURCE_DIR "/src/layouts/" + name));
        QStringList columns;
        for (const auto& column : GridLayout::read(text.replace("\\t", "\t"), "x.grd").columns)
            columns += QString("%1=%2 %3").arg(column.caption, column.field).arg(column.width) +
                       (column.alignment & Qt::AlignRight     ? " right"
                        : column.alignment & Qt::AlignHCenter ? " centre"
                                                              : "") +
                       (column.hidden ? " hidden" : "");
        QTEST(columns.join("; "), "columns");
    }

    void refuses_data()
    {
        test::tableOf("widgets/gridlayout_refuses.txt");
        QTest::newRow("open after a doubled mark") << "column field=\"a\"\""
                                                   << "line 1, column 14: the text has no end";
    }
    void refuses()
    {
        const auto [text, place] = test::cells("text", "place");
        const auto error = test::failureOf([&] { return GridLayout::read(text, "x.grd"); });
        QVERIFY(error && error->number() == 321);
        QCOMPARE(error->description(), "x.grd, " + place);
    }

    void badFiles()
    {
        const QTemporaryDir folder;
        test::write(folder.filePath("Broken.grd"), QByteArray("\xff\xfe\0col", 6));
        const auto load = [&](const QString& name) {
            return test::failureOf([&] { return GridLayout::load(folder.path() + u'\\' + name); });
        };
        QCOMPARE(load("none.grd")->number(), 53);
        QVERIFY(load("none.grd")->description().endsWith(": " + QDir::toNativeSeparators(folder.path() + "/none.grd")));
        QCOMPARE(load(QString())->number(), 75); // the folder itself
        QVERIFY(load("broken.GRD")->description().contains("broken.grd, line 1, column 1: ", Qt::CaseInsensitive));
    }

    // The screen's built-in layout is used, after one message however often the file is read.
    void builtIn()
    {
        const QTemporaryDir folder;
        const GridLayout usual{{{"A", "A"}, {"B", "B"}}};
        test::write(folder.filePath("Other.grd"), "column field=\"B\"\ncolumn field=\"A\"");
        for (const QString name : {"none.grd", "Other.grd"}) {
            widgets::StoredLayout layout(u'\\' + name, usual);
            const auto told = test::answerNext();
            QCOMPARE(layout.read(folder.path()).columns, usual.columns);
            QVERIFY(told->title == "Grid Layout" && told->text.contains(name));
            QCOMPARE(layout.read(folder.path()).columns, usual.columns);
        }
        test::write(folder.filePath("Own.grd"), "column field=\"A\" caption=\"Mine\"\ncolumn field=\"B\"");
        QCOMPARE(widgets::StoredLayout("\\Own.grd", usual).read(folder.path()).columns[0].caption, "Mine");
    }
};

ORLO_TEST(tst_gridlayout)

#include "tst_gridlayout.moc"
