#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/BoundGrid.h"

#include <QApplication>
#include <QImage>
#include <QPointer>
#include <QPushButton>

#include <optional>

using namespace orlo;
using test::rows;

namespace
{

constexpr const char* Titles = R"(
Delete From Den_Titles; Insert Into Den_Titles Values ('H', 2), ('C', Null), ('A', 2), ('L', 1);
Delete From Pack_Positions; Insert Into Pack_Positions Values ('T', 3), ('D', 1), ('A', 3))";

struct Screen : test::RecordScreen {
    Screen() : RecordScreen("frmPackDenPositions") {}
    widgets::BoundGrid& den = get<widgets::BoundGrid>("dbgDenPositions");
    widgets::BoundGrid& pack = get<widgets::BoundGrid>("dbgPackPositions");

    // Keys go to the focus: to the grid at first and then to its cell's editor. "D20=X" types X into row 2, column 0 of
    // the den titles ("P" the pack's), "D20" goes there, "D2-" deletes row 2; "Dr" and "Pr" press Refresh, "c" presses
    // Close, "C" is its access key, "X" the window's close box, "E" Escape; "ok" answers the next box.
    void act(const QString& script)
    {
        const auto press = [](auto key) { QTest::keyClick(QApplication::focusWidget(), key); };
        const QPointer close = &get<QPushButton>("Command1");
        const auto steps = script.split(u' ', Qt::SkipEmptyParts);
        for (const QString& step : steps) {
            auto& grid = step[0] == u'P' ? pack : den;
            if (step == "ok" || step == "yes")
                told.append(test::answerNext(step == "ok" ? QMessageBox::Ok : QMessageBox::Yes));
            else if (step == "E")
                press(Qt::Key_Escape);
            else if (step == "C")
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::AltModifier);
            else if (step == "X")
                form.close();
            else if (step == "c" || step[1] == u'r')
                click(step == "c" ? "Command1" : &grid == &pack ? "cmdRefreshPackPostions" : "cmdRefreshDenPostions");
            else {
                grid.setFocus();
                const int row = step[1].digitValue();
                step[2] == u'-' ? grid.selectRow(row)
                                : grid.setCurrentIndex(grid.model()->index(row, step[2].digitValue()));
                if (step.endsWith(u'-') || step.endsWith(u'='))
                    press(Qt::Key_Delete);
                for (const QChar character : step.sliced(std::min(step.size(), qsizetype(4))))
                    press(character.toLatin1());
            }
            QTest::qWait(0);
            QTRY_VERIFY(!close || !close->isDown()); // the access key holds the button down for a moment
        }
    }
    // The titles with their ranks; the mark of an open row is between the two.
    [[nodiscard]] QString shown() const
    {
        QString texts;
        for (const auto* model : {den.model(), pack.model()})
            for (int row = 0; row < model->rowCount() - 1; ++row)
                texts += (row > 0                 ? " "
                          : model == pack.model() ? "; "
                                                  : "") +
                         model->index(row, 0).data().toString() + model->headerData(row, Qt::Vertical).toString() +
                         model->index(row, 1).data().toString();
        return texts.replace(QChar(0x270E), u'~');
    }
};

QString stored()
{
    return rows("Select * From Den_Titles Order by Den_Title") + "; " +
           rows("Select * From Pack_Positions Order by Pack_Titles");
}

} // namespace

class tst_positions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        test::copyLayouts();
        test::fill(Titles);
    }

    void editing_data() { test::tableOf("pack/positions_editing.txt"); }
    void editing()
    {
        QFETCH(QString, script);
        Screen screen;
        screen.act(script);
        QCOMPARE(test::loadedForm("frmPackDenPositions") ? screen.shown() : "closed", test::cell("shown"));
        QTEST(stored(), "stored");
        if (script.endsWith("Dr")) // the mark moves with the title
            QCOMPARE(screen.den.columnText(0), "L");
    }

    // The grid says why, and the row stays open where it is, whatever would leave it; Escape undoes it.
    void refused_data() { test::tableOf("pack/positions_refused.txt"); }
    void refused()
    {
        QFETCH(QString, script);
        QFETCH(QString, shown);
        for (QString* text : {&script, &shown})
            text->replace("%31", QString(31, u'W')).replace("%61", QString(61, u'W'));
        const bool pack = script[0] == u'P';
        for (const QString leave : {"c", "C", "X", pack ? "Pr" : "Dr", pack ? "D00" : "P00", pack ? "P20" : "D20"}) {
            Screen screen;
            screen.act(script + " ok " + leave);
            QTRY_VERIFY(screen.told.first()->shown);
            QVERIFY(screen.told.first()->text.startsWith(test::cell("failure")) && !QApplication::activeModalWidget());
            QTEST(screen.told.first()->title, "title");
            QVERIFY(test::loadedForm("frmPackDenPositions"));
            QCOMPARE(screen.shown(), shown);
            QCOMPARE(stored(), "A/2, C/Null, H/2, L/1; A/3, D/1, T/3");
            screen.form.activateWindow(); // as a window manager does once the message is gone
            QTRY_VERIFY((pack ? screen.pack : screen.den).hasFocus());
            screen.act("E c");
            QVERIFY(!test::loadedForm("frmPackDenPositions"));
        }
    }

    void rowsStandOut()
    {
        Screen screen;
        const QImage painted = screen.den.viewport()->grab().toImage();
        QSet<QRgb> grounds; // of the current row, another one and the empty line
        for (const int row : {0, 2, 4})
            grounds += painted.pixel(screen.den.visualRect(screen.den.model()->index(row, 1)).topLeft() + QPoint(3, 3));
        QCOMPARE(grounds.size(), 3);
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_positions)

#include "tst_positions.moc"
