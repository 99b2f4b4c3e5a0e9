#include "pack/frmPackInformation.h"
#include "support/TestApp.h"

#include <QLineEdit>
#include <QPushButton>

using namespace orlo;

namespace
{

// The open form and its controls.
struct Screen {
    frmPackInformation& form = widgets::Instance<frmPackInformation>::get();
    QLineEdit& number = test::control<QLineEdit>(form, "txtPackNum");
    QLineEdit& name = test::control<QLineEdit>(form, "txtPackName");
    QPushButton& save = test::control<QPushButton>(form, "cmdSave");
    QPushButton& cancel = test::control<QPushButton>(form, "cmdCancel");
    QPushButton& exit = test::control<QPushButton>(form, "cmdExit");

    Screen()
    {
        form.showForm();
        QVERIFY(QTest::qWaitForWindowActive(&form));
    }
    void type(QLineEdit& box, const QString& text)
    {
        box.setFocus();
        box.selectAll();
        QTest::keyClicks(&box, text);
    }
    void click(QPushButton& button) { QTest::mouseClick(&button, Qt::LeftButton); }
};

QStringList rows()
{
    QStringList lines;
    auto rs = database().openRecordset(QStringLiteral("PackInfo"));
    for (; !rs.eof(); rs.moveNext())
        lines += rs[u"Pack Number"].toText() + u'|' + rs[u"Name"].toText();
    return lines;
}

void addRow(double number, const QString& name)
{
    auto rs = database().openRecordset(QStringLiteral("PackInfo"));
    rs.addNew();
    rs.setValue(u"Pack Number", number);
    rs.setValue(u"Name", name);
    rs.update();
}

} // namespace

class tst_packinformation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<test::AppFolder>(); }
    void cleanup() { m_folder.reset(); }
    void emptyTable();
    void cancelKeepsNewState();
    void numberReading_data();
    void numberReading();
    void firstRowOnly();
    void closing_data();
    void closing();
    void keys();

private:
    std::unique_ptr<test::AppFolder> m_folder;
};

void tst_packinformation::emptyTable()
{
    Screen screen;
    QVERIFY(screen.save.isEnabled() && screen.number.text().isEmpty() && screen.name.text().isEmpty());
    const auto told = test::answerNext(QMessageBox::Yes);
    screen.click(screen.exit);
    QCOMPARE(told->text, QStringLiteral("Data Changes Not Saved. Do you want to save your changes"));
    QCOMPARE(told->title, QStringLiteral("Save Changes"));
    QCOMPARE(rows(), QStringList{QStringLiteral("0|")});
    QVERIFY(!widgets::Instance<frmPackInformation>::loaded());
}

void tst_packinformation::cancelKeepsNewState()
{
    Screen screen;
    screen.type(screen.name, QStringLiteral("Grange"));
    screen.click(screen.cancel);
    QVERIFY(!screen.save.isEnabled() && screen.name.text().isEmpty());
    screen.type(screen.name, QStringLiteral("O'Hara's Hall"));
    screen.click(screen.save);
    QCOMPARE(rows(), QStringList{QStringLiteral("0|O'Hara's Hall")});
    QVERIFY(screen.number.hasFocus() && !screen.save.isEnabled());
    // The row added first is the one that further saves and cancels are about.
    screen.type(screen.number, QStringLiteral("7"));
    screen.click(screen.save);
    screen.type(screen.number, QStringLiteral("8"));
    screen.click(screen.cancel);
    QCOMPARE(screen.number.text(), QStringLiteral("7"));
    QCOMPARE(rows(), QStringList{QStringLiteral("7|O'Hara's Hall")});
}

void tst_packinformation::numberReading_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored");
    QTest::newRow("digits lead") << QStringLiteral("12a") << QStringLiteral("12");
    QTest::newRow("no digits") << QStringLiteral("abc") << QStringLiteral("0");
    QTest::newRow("limit of five") << QStringLiteral("123456") << QStringLiteral("12345");
    QTest::newRow("decimals") << QStringLiteral("1.5") << QStringLiteral("1.5");
    QTest::newRow("minus") << QStringLiteral("-3") << QStringLiteral("-3");
}

void tst_packinformation::numberReading()
{
    QFETCH(QString, typed);
    QFETCH(QString, stored);
    addRow(1, QStringLiteral("Hall"));
    Screen screen;
    QVERIFY(!screen.save.isEnabled());
    screen.type(screen.number, typed);
    QVERIFY(screen.save.isEnabled());
    screen.click(screen.save);
    QCOMPARE(screen.number.text(), stored);
    QCOMPARE(rows(), QStringList{stored + QStringLiteral("|Hall")});
}

void tst_packinformation::firstRowOnly()
{
    addRow(1, QStringLiteral("First"));
    addRow(2, QStringLiteral("Second"));
    Screen screen;
    screen.type(screen.name, QStringLiteral("Changed"));
    screen.click(screen.save);
    QCOMPARE(rows(), (QStringList{QStringLiteral("1|Changed"), QStringLiteral("2|Second")}));
}

void tst_packinformation::closing_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<QString>("kept");
    QTest::newRow("yes") << QStringLiteral("yes") << QStringLiteral("1|New");
    QTest::newRow("no") << QStringLiteral("no") << QStringLiteral("1|Old");
    QTest::newRow("window close asks nothing") << QStringLiteral("close") << QStringLiteral("1|Old");
}

void tst_packinformation::closing()
{
    QFETCH(QString, way);
    QFETCH(QString, kept);
    addRow(1, QStringLiteral("Old"));
    Screen screen;
    screen.type(screen.name, QStringLiteral("New"));
    if (way == QLatin1String("close"))
        screen.form.close();
    else {
        const auto told = test::answerNext(way == QLatin1String("yes") ? QMessageBox::Yes : QMessageBox::No);
        screen.click(screen.exit);
        QVERIFY(told->shown);
    }
    QVERIFY(!widgets::Instance<frmPackInformation>::loaded());
    QCOMPARE(rows(), QStringList{kept});
}

void tst_packinformation::keys()
{
    addRow(1, QStringLiteral("Old"));
    Screen screen;
    screen.type(screen.name, QStringLiteral("New"));
    QTest::keyClick(&screen.name, Qt::Key_Escape);
    QCOMPARE(screen.name.text(), QStringLiteral("Old"));
    screen.type(screen.name, QStringLiteral("Newer"));
    QTest::keyClick(&screen.name, Qt::Key_Return);
    QCOMPARE(rows(), QStringList{QStringLiteral("1|Newer")});
    // Enter on another button is that button's.
    screen.exit.setFocus();
    QTest::keyClick(&screen.exit, Qt::Key_Return);
    QVERIFY(!widgets::Instance<frmPackInformation>::loaded());
}

ORLO_TEST_MAIN(tst_packinformation)

#include "tst_packinformation.moc"
