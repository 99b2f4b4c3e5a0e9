#include "pack/frmPackInformation.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"

#include <QLineEdit>

using namespace orlo;

class tst_packinformation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The table's rows before and after; number, name, Save and focus between.
    void editing_data()
    {
        test::table({"case", "before", "script", "number", "name", "save", "focus", "after"}, R"(
            no row yet       |                         |                                      |        |     | live | txtPackNum  |
            saves empty      |                         | yes x                                | closed |     |      |             | 0/
            cancel stays new |                         | PackName=G c PackName=A'B s          | 0      | A'B |      | txtPackNum  | 0/A'B
            then one row     |                         | PackName=G s PackNum=7 s PackNum=8 c | 7      | G   |      | cmdCancel   | 7/G
            digits lead      | (1, 'H')                | PackNum=12a s                        | 12     | H   |      | txtPackNum  | 12/H
            no digits        | (1, 'H')                | PackNum=abc s                        | 0      | H   |      | txtPackNum  | 0/H
            limit of five    | (1, 'H')                | PackNum=123456 s                     | 12345  | H   |      | txtPackNum  | 12345/H
            no sign          | (1, 'H')                | PackNum=-1.5 s                       | 0      | H   |      | txtPackNum  | 0/H
            no exponent      | (1, 'H')                | PackNum=1e999 s                      | 1      | H   |      | txtPackNum  | 1/H
            first row only   | (1, 'H'), (2, 'Second') | PackName=New s                       | 1      | New |      | txtPackNum  | 1/New, 2/Second
            exit, yes        | (1, 'H')                | PackName=New yes x                   | closed |     |      |             | 1/New
            exit, no         | (1, 'H')                | PackName=New no x                    | closed |     |      |             | 1/H
            window's close   | (1, 'H')                | PackName=New close                   | closed |     |      |             | 1/H
            Escape           | (1, 'H')                | PackName=New E                       | 1      | H   |      | txtPackName | 1/H
            Enter            | (1, 'H')                | PackName=New Enter                   | 1      | New |      | txtPackNum  | 1/New
            Enter elsewhere  | (1, 'H')                | cmdExit Enter                        | closed |     |      |             | 1/H)");
    }
    void editing()
    {
        QFETCH(QString, before);
        QFETCH(QString, script);
        const test::AppFolder folder;
        if (!before.isEmpty())
            test::fill("Insert Into PackInfo ([Pack Number], Name) Values " + before);
        const test::RecordScreen<frmPackInformation> screen;
        screen.run(script, [&](const QString& word) {
            if (word == "close")
                screen.form.close();
            else
                screen.get(word.toUtf8().constData()).setFocus();
        });
        if (widgets::Instance<frmPackInformation>::loaded())
            test::compare({{"number", screen.get<QLineEdit>("txtPackNum").text()},
                           {"name", screen.get<QLineEdit>("txtPackName").text()},
                           {"save", screen.get("cmdSave").isEnabled() ? "live" : ""},
                           {"focus", screen.form.focusWidget()->objectName()}},
                          {"number", "name", "save", "focus"});
        else
            test::compare({{"number", "closed"}}, {"number"});
        QCOMPARE(screen.said(), script.contains(QRegularExpression("yes|no "))
                                    ? "Save Changes: Data Changes Not Saved. Do you want to save your changes"
                                    : "");
        QTEST(test::rows("Select [Pack Number], Name From PackInfo"), "after");
    }
};

ORLO_TEST(tst_packinformation)

#include "tst_packinformation.moc"
