#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "shell/forms/dlgCalendar.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"
#include "support/Table.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

using namespace orlo;

// What all list forms do, tested on the scouts' form, and dates.
class tst_recordforms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A form that is closed during its own question exists until its handler has returned.
    void closedUnderItsQuestion_data() { test::tableOf("shell/recordforms_closed.txt"); }
    void closedUnderItsQuestion()
    {
        const test::AppFolder folder;
        test::copyLayouts();
        test::fill(QString(test::Pack) + "Insert Into PackInfo Values (1, 'Old')");
        bool closed = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            const QPointer<QDialog> box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            timer.stop();
            widgets::Form::unloadAll();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            closed = true;
            if (box)
                box->done(QMessageBox::No);
        });
        timer.start(5);
        test::RecordScreen(test::cell("form")).run(test::cell("script"));
        QVERIFY(closed);
        QTRY_VERIFY(QApplication::topLevelWidgets().isEmpty()); // and then it is deleted
    }

    // The calendar of a date's field, worked by these steps.
    void calendar_data() { test::tableOf("shell/recordforms_calendar.txt"); }
    void calendar()
    {
        const auto [how, steps] = test::cells("how", "steps");
        platform::setToday(QDate(2026, 11, 24));
        QLineEdit field("kept");
        openCalendarOnDoubleClick(&field);
        field.setDisabled(how == "disabled");
        field.setWindowModality(Qt::ApplicationModal); // as a form that waits itself
        field.show();
        QTimer::singleShot(50, &field, [&field, steps = steps] {
            const test::RecordScreen dialog(*QApplication::activeModalWidget());
            const bool blocks = dialog.form.parentWidget() == &field;
            dialog.run(steps);
            QVERIFY(blocks);
        });
        if (how == "sign")
            field.actions().constLast()->trigger();
        else
            QTest::mouseDClick(&field, Qt::LeftButton);
        QTEST(field.text(), "result");
        platform::setToday(QDate());
    }

    void monthEnds()
    {
        QCOMPARE(FirstOfMonth(QDate(2003, 12, 9)), QDate(2003, 12, 1));
        QCOMPARE(std::pair(FirstOfMonth({}), LastOfMonth({})), std::pair(QDate(1899, 12, 30), QDate(1899, 12, 30)));
        QCOMPARE(LastOfMonth(QDate(2003, 12, 9)), QDate(2003, 12, 31));
        QCOMPARE(LastOfMonth(QDate(2000, 2, 1)), QDate(2000, 2, 29));
        QCOMPARE(LastOfMonth(QDate(999, 4, 30)), QDate(999, 4, 30));
    }
};

ORLO_TEST(tst_recordforms)

#include "tst_recordforms.moc"
