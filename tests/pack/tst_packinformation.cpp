#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"

#include <QLineEdit>
#include <QRegularExpression>

using namespace orlo;

class tst_packinformation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The table's rows before and after; number, name, Save and focus between.
    void editing_data() { test::tableOf("pack/packinformation_editing.txt"); }
    void editing()
    {
        QFETCH(QString, before);
        QFETCH(QString, script);
        const test::AppFolder folder;
        if (!before.isEmpty())
            test::fill("Insert Into PackInfo ([Pack Number], Name) Values " + before);
        const test::RecordScreen screen("frmPackInformation");
        screen.run(script, [&](const QString& word) {
            if (word == "close")
                screen.form.close();
            else
                screen.get(word.toUtf8().constData()).setFocus();
        });
        if (test::loadedForm("frmPackInformation"))
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
