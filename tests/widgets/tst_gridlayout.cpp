#include "widgets/Failure.h"
#include "widgets/GridLayout.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace orlo;
using widgets::GridColumn;
using widgets::GridLayout;

class tst_gridlayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads();
    void refuses_data();
    void refuses();
    void shipped_data();
    void shipped();
    void badFiles();
};

void tst_gridlayout::reads()
{
    const QString text =
        QStringLiteral("# titles\r\n"
                       "\r\n"
                       "  column caption=\"Pack \"\"No.\"\" #1\" field=\"A b\" width=300 align=right # last\n"
                       "column field=\"B\"\n"
                       "column\tfield=\"C\" caption=\"\" hidden=yes align=center");
    const QList<GridColumn> expected{
        {QStringLiteral("Pack \"No.\" #1"), QStringLiteral("A b"), 300, Qt::AlignRight},
        {QStringLiteral("B"), QStringLiteral("B"), 1440, Qt::AlignLeft},
        {QString(), QStringLiteral("C"), 1440, Qt::AlignHCenter, true},
    };
    QCOMPARE(GridLayout::read(text, QStringLiteral("x.grd")).columns, expected);
}

void tst_gridlayout::refuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("place");
    QTest::newRow("empty") << QString() << "line 1, column 1";
    QTest::newRow("comments only") << "# a\n# b\n"
                                   << "line 3, column 1";
    QTest::newRow("another word") << "\n colum field=\"a\""
                                  << "line 2, column 2";
    QTest::newRow("no word") << "=\"a\""
                             << "line 1, column 1";
    QTest::newRow("no field") << "column caption=\"a\""
                              << "line 1, column 1";
    QTest::newRow("empty field") << "column field=\"\""
                                 << "line 1, column 1";
    QTest::newRow("unknown property") << "column field=\"a\" colour=\"red\""
                                      << "line 1, column 18";
    QTest::newRow("given twice") << "column field=\"a\" field=\"b\""
                                 << "line 1, column 18";
    QTest::newRow("no equals sign") << "column field \"a\""
                                    << "line 1, column 13";
    QTest::newRow("bare text") << "column field=a"
                               << "line 1, column 14";
    QTest::newRow("open text") << "column field=\"a\ncolumn field=\"b\""
                               << "line 1, column 14";
    QTest::newRow("open after a doubled mark") << "column field=\"a\"\""
                                               << "line 1, column 14";
    QTest::newRow("no blank between") << "column field=\"a\"width=3"
                                      << "line 1, column 17";
    QTest::newRow("width in words") << "column field=\"a\" width=wide"
                                    << "line 1, column 24";
    QTest::newRow("width of nothing") << "column field=\"a\" width=0"
                                      << "line 1, column 24";
    QTest::newRow("width without end") << "column field=\"a\" width=99999999999"
                                       << "line 1, column 24";
    QTest::newRow("alignment") << "column field=\"a\" align=top"
                               << "line 1, column 24";
    QTest::newRow("neither yes nor no") << "column field=\"a\"\r\ncolumn field=\"b\" hidden=1"
                                        << "line 2, column 25";
}

void tst_gridlayout::refuses()
{
    QFETCH(QString, text);
    QFETCH(QString, place);
    const auto error = test::failureOf([&] { static_cast<void>(GridLayout::read(text, QStringLiteral("x.grd"))); });
    QVERIFY(error && error->number() == 321);
    const QString start = QStringLiteral("x.grd, %1: ").arg(place);
    QVERIFY2(error->description().startsWith(start) && error->description().size() > start.size(), error->what());
}

void tst_gridlayout::shipped_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("hidden");
    QTest::newRow("Den_Titles") << "Position Title=Den_Title;Sort Rank=Sort_Order;" << QString();
    QTest::newRow("Pack_Titles") << "Position Title=Pack_Titles;Sort Rank=Sort_Order;" << QString();
    QTest::newRow("DenAssign") << "Pack or Den Title=Position_Title;Den #=Den_Number;Den Level=Den_Type;"
                               << "Den SID=Den_SID;Leader SID=Leader_SID;PackAssignedSID=Leader_Pack_Assn;";
}

void tst_gridlayout::shipped()
{
    QString shown;
    QString hidden;
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    for (const GridColumn& column :
         GridLayout::load(QStringLiteral(ORLO_SOURCE_DIR "/src/layouts/%1.grd").arg(name)).columns) {
        QVERIFY(hidden.isEmpty() || column.hidden);
        (column.hidden ? hidden : shown) += column.caption + u'=' + column.field + u';';
    }
    QTEST(shown, "shown");
    QTEST(hidden, "hidden");
}

void tst_gridlayout::badFiles()
{
    const QTemporaryDir folder;
    const auto load = [&](const QString& name) {
        return test::failureOf([&] { static_cast<void>(GridLayout::load(folder.path() + u'\\' + name)); });
    };
    QCOMPARE(load(QStringLiteral("none.grd"))->number(), 53);
    QCOMPARE(load(QString())->number(), 75); // the folder itself
    QFile file(folder.filePath(QStringLiteral("Broken.grd")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("\xff\xfe\0col", 6) == 6);
    file.close();
    const auto error = load(QStringLiteral("broken.GRD"));
    QVERIFY(error && error->description().contains(QStringLiteral("broken.GRD, line 1, column 1: ")));
}

QTEST_GUILESS_MAIN(tst_gridlayout)

#include "tst_gridlayout.moc"
