#include "shell/ListForm.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/ListBox.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace orlo;

namespace
{

// The least list form: active adults by last name.
class frmPeople : public ListForm
{
    Q_OBJECT

public:
    frmPeople() : ListForm({QStringLiteral("Adult"), QStringLiteral("Adults"), QStringLiteral("Adult_SID")})
    {
        auto* column = new QVBoxLayout(this);
        const auto add = [&]<class W>(W* widget, const char* name) {
            widget->setObjectName(QString::fromLatin1(name));
            column->addWidget(widget);
            return widget;
        };
        const auto button = [&](const char* name) { return add(new QPushButton, name); };
        struct Ui {
            QPushButton *cmdFirst, *cmdPrevious, *cmdNext, *cmdLast, *cmdNew, *cmdSave, *cmdDelete, *cmdCancel,
                *cmdExit;
            QLabel* lblRecordInfo;
        };
        first = add(new QLineEdit, "txtFirst");
        last = add(new QLineEdit, "txtLast");
        active = add(new QLineEdit, "txtActive");
        bindControls({Ui{button("cmdFirst"), button("cmdPrevious"), button("cmdNext"), button("cmdLast"),
                         button("cmdNew"), button("cmdSave"), button("cmdDelete"), button("cmdCancel"),
                         button("cmdExit"), add(new QLabel, "lblRecordInfo")},
                      first});
        bindList({add(new widgets::ListBox, "lbAdults"), add(new QTabWidget, "tabAdult"), button("cmdFind"),
                  button("cmdAddAward"), button("cmdDeleteAward")});
        listControls().tabs->addTab(new QWidget, QStringLiteral("One"));
        listControls().tabs->addTab(new QWidget, QStringLiteral("Two"));
        controls().lblRecordInfo->setText(QStringLiteral("None"));
        enableSaveOnChange({first, last, active});
    }

    using ListForm::cmdNext_Click;
    using ListForm::cmdPrevious_Click;
    bool confirms = true;
    int reloads = 0;

protected:
    void load() override { openSet(); }
    void openSet() override
    {
        openRecords(QStringLiteral("Select * From Adults Where Active = 'Y' Order by Last_Name"));
        listControls().list->clear();
        if (mRecordCount < 1) {
            ClearRecord();
            showEmpty();
            return;
        }
        for (; !rsRecords->eof(); rsRecords->moveNext())
            listControls().list->addItem(rsRecords->value(u"Last_Name").toText());
        rsRecords->moveFirst();
        SelectListRow(1);
        EnableFields();
        listControls().tabs->setEnabled(true);
    }
    void FillRecord() override
    {
        first->setText(rsRecords->value(u"First_Name").textOrEmpty());
        last->setText(rsRecords->value(u"Last_Name").textOrEmpty());
        active->setText(rsRecords->value(u"Active").textOrEmpty());
        mCurrentSID = rsRecords->value(u"Adult_SID").toInt16();
        controls().cmdSave->setEnabled(false);
        ShowRecordInfo();
    }
    void ClearRecord() override
    {
        for (QLineEdit* field : {first, last, active})
            field->clear();
    }
    void SaveRecord() override
    {
        if (!mNewRecord)
            rsRecords->edit();
        rsRecords->setValue(u"First_Name", first->text());
        rsRecords->setValue(u"Last_Name", last->text());
        rsRecords->setValue(u"Active", active->text());
        if (mNewRecord)
            rsRecords->setValue(u"Adult_SID", int{mCurrentSID});
        rsRecords->update();
        finishSaveRecord();
    }
    void EnableFields() override { first->setEnabled(true); }
    void DisableFields() override { first->setEnabled(false); }
    void reloadDependants() override { ++reloads; }
    void setDefaults() override { active->setText(QStringLiteral("Y")); }
    QString newRowText() const override { return QStringLiteral("<New>") + last->text(); }
    bool confirmDelete() override { return confirms; }
    void deleteAwards() override
    {
        database().execute(
            QStringLiteral("Delete From Assigned_Awards_Adults Where Adult_SID = %1").arg(mCurrentSID));
    }

private:
    QLineEdit* first;
    QLineEdit* last;
    QLineEdit* active;
};

struct Screen : test::RecordScreen<frmPeople> {
    widgets::ListBox& list = get<widgets::ListBox>("lbAdults");

    [[nodiscard]] QString last() const { return get<QLineEdit>("txtLast").text(); }
    [[nodiscard]] QString rows() const
    {
        QStringList texts;
        for (int row = 0; row < list.listCount(); ++row)
            texts += list.list(row);
        return texts.join(u' ');
    }
    // Buttons by letter, rows of the list by number; p and n step whether the buttons are live or not.
    void walk(const QString& steps) const
    {
        for (const QChar step : steps)
            if (step.isDigit())
                QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                                  list.visualItemRect(list.item(step.digitValue() - 1)).center());
            else if (step == u'p')
                form.cmdPrevious_Click();
            else if (step == u'n')
                form.cmdNext_Click();
            else
                RecordScreen::walk(step);
    }
    // Label, live buttons, last name, the row that is current, the extra buttons.
    [[nodiscard]] QString state() const
    {
        QStringList parts{label(), live(), last(), list.list(list.listIndex()), QString()};
        for (const char* button : {"cmdFind", "cmdAddAward", "cmdDeleteAward"})
            parts.back() += get<QPushButton>(button).isEnabled() ? u'x' : u'.';
        return parts.join(u'|');
    }
};

QString stored()
{
    return test::rows(QStringLiteral("Select Adult_SID, Last_Name, Active From Adults Order by Adult_SID"));
}

// Adults with keys from 1, each with an award.
void add(const QString& names)
{
    int key = 0;
    for (const QChar name : names) {
        database().execute(QStringLiteral("Insert Into Adults (Adult_SID, First_Name, Last_Name, Active) Values (%1, "
                                          "'F', '%2', 'Y')")
                               .arg(++key)
                               .arg(name));
        database().execute(
            QStringLiteral("Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID) Values (%1, 1)").arg(key));
    }
}

} // namespace

class tst_recordforms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<test::AppFolder>(); }
    void cleanup() { m_folder.reset(); }
    void walk_data();
    void walk();
    void listClickAsks();
    void newRecord();
    void firstRecord();
    void cancel();
    void remove_data();
    void remove();

private:
    std::unique_ptr<test::AppFolder> m_folder;
};

void tst_recordforms::walk_data()
{
    test::table({"name", "people", "steps", "label", "live", "last"}, R"(
        none               |     |     | None         | ....n.. |
        one                | A   |     | Adult 1 of 1 | ....n.d | A
        one, off the start | A   | p   | Adult 1 of 1 | ....n.d | A
        one, off the end   | A   | n   | Adult 1 of 1 | ....n.d | A
        start              | CAB |     | Adult 1 of 3 | ..NLn.d | A
        next               | CAB | N   | Adult 2 of 3 | FPNLn.d | B
        next to last       | CAB | NN  | Adult 3 of 3 | FP..n.d | C
        last, previous     | CAB | LP  | Adult 2 of 3 | FPNLn.d | B
        back to first      | CAB | LF  | Adult 1 of 3 | ..NLn.d | A
        click              | CAB | 3   | Adult 3 of 3 | FP..n.d | C
        clicks and buttons | CAB | 3P1N| Adult 2 of 3 | FPNLn.d | B
        off the start      | CAB | p   | Adult 1 of 3 | ..NLn.d | A
        off the end, back  | CAB | Lnp | Adult 2 of 3 | FPNLn.d | B
        off the end        | CAB | Lnn | Adult 3 of 3 | FP..n.d | C)");
}

void tst_recordforms::walk()
{
    QFETCH(QString, people);
    QFETCH(QString, steps);
    QFETCH(QString, last);
    add(people);
    Screen screen;
    screen.list.setFocus();
    screen.walk(steps);
    QTEST(screen.label(), "label");
    QTEST(screen.live(), "live");
    QCOMPARE(screen.last(), last);
    QCOMPARE(screen.list.list(screen.list.listIndex()), last);
    QCOMPARE(screen.get<QWidget>("txtFirst").hasFocus(), !steps.isEmpty() && !steps.back().isDigit());
    QCOMPARE(screen.form.reloads > 0, !people.isEmpty());
    QCOMPARE(screen.get<QWidget>("cmdFind").isEnabled(), !people.isEmpty());
    QCOMPARE(screen.get<QWidget>("tabAdult").isEnabled(), !people.isEmpty());
}

void tst_recordforms::listClickAsks()
{
    add(QStringLiteral("ABC"));
    Screen screen;
    screen.type("txtLast", QStringLiteral("X"));
    auto told = test::answerNext(QMessageBox::Yes);
    screen.walk(QStringLiteral("3"));
    QCOMPARE(told->title, QStringLiteral("Save Changes"));
    QCOMPARE(screen.state(), QStringLiteral("Adult 3 of 3|FP..n.d|C|C|xxx"));
    screen.type("txtLast", QStringLiteral("Y"));
    told = test::answerNext(QMessageBox::No);
    screen.walk(QStringLiteral("2"));
    QVERIFY(told->shown);
    QCOMPARE(screen.state(), QStringLiteral("Adult 2 of 3|FPNLn.d|B|B|xxx"));
    QCOMPARE(stored(), QStringLiteral("1|X|Y, 2|B|Y, 3|C|Y"));
}

void tst_recordforms::newRecord()
{
    add(QStringLiteral("BAC"));
    Screen screen;
    screen.walk(QStringLiteral("N"));
    screen.get<QTabWidget>("tabAdult").setCurrentIndex(1);
    screen.click("cmdNew");
    QCOMPARE(screen.state(), QStringLiteral("Adult (New)|FPNL.s.||B|..."));
    QCOMPARE(screen.get<QTabWidget>("tabAdult").currentIndex(), 0);
    QVERIFY(screen.get<QWidget>("txtFirst").hasFocus());
    screen.type("txtLast", QStringLiteral("AA"));
    screen.click("cmdSave");
    QCOMPARE(screen.state(), QStringLiteral("Adult 4 of 4|FP..n.d|AA|<New>AA|xxx"));
    QCOMPARE(screen.rows(), QStringLiteral("A B C <New>AA"));
    screen.walk(QStringLiteral("P4"));
    screen.type("txtLast", QStringLiteral("AB"));
    screen.click("cmdSave");
    QCOMPARE(screen.state(), QStringLiteral("Adult 4 of 4|FP..n.d|AB|<New>AA|xxx"));
    QCOMPARE(stored(), QStringLiteral("1|B|Y, 2|A|Y, 3|C|Y, 4|AB|Y"));
}

void tst_recordforms::firstRecord()
{
    Screen screen;
    QCOMPARE(screen.state(), QStringLiteral("None|....n..|||.xx"));
    screen.click("cmdNew");
    QVERIFY(screen.get<QWidget>("txtFirst").hasFocus() && screen.get<QWidget>("tabAdult").isEnabled());
    // A first record that the filters leave out is stored, and the form is empty again.
    screen.type("txtLast", QStringLiteral("N"));
    screen.type("txtActive", QStringLiteral("N"));
    screen.click("cmdSave");
    QCOMPARE(screen.label() + screen.live(), QStringLiteral("None....n.."));
    QVERIFY(!screen.get<QWidget>("txtFirst").isEnabled() && !screen.get<QWidget>("tabAdult").isEnabled());
    screen.click("cmdNew");
    screen.type("txtLast", QStringLiteral("A"));
    screen.click("cmdSave");
    QCOMPARE(screen.state(), QStringLiteral("Adult 1 of 1|....n.d|A|A|xxx"));
    QCOMPARE(screen.rows() + stored(), QStringLiteral("A1|N|N, 2|A|Y"));
}

void tst_recordforms::cancel()
{
    Screen empty;
    empty.click("cmdNew");
    empty.click("cmdCancel");
    QCOMPARE(empty.state(), QStringLiteral("Adult (New)|....n.d|||xxx"));
    QVERIFY(!empty.get<QWidget>("txtFirst").isEnabled());
    widgets::Instance<frmPeople>::unload();

    add(QStringLiteral("ABC"));
    Screen screen;
    screen.walk(QStringLiteral("N"));
    screen.click("cmdNew");
    screen.type("txtLast", QStringLiteral("typed"));
    screen.click("cmdCancel");
    QCOMPARE(screen.state(), QStringLiteral("Adult 2 of 3|FPNLn.d|B|B|xxx"));
    // What was typed over an existing record stays on the screen only.
    screen.type("txtLast", QStringLiteral("X"));
    screen.click("cmdCancel");
    QCOMPARE(screen.state(), QStringLiteral("Adult 2 of 3|FPNLn.d|X|B|xxx"));
    screen.walk(QStringLiteral("NP"));
    QCOMPARE(screen.last() + stored(), QStringLiteral("B1|A|Y, 2|B|Y, 3|C|Y"));
}

void tst_recordforms::remove_data()
{
    test::table({"name", "people", "steps", "state", "rows"}, R"(
        first   | ABC |   | Adult 1 of 2/..NLn.d/B/B/xxx | B C
        middle  | ABC | N | Adult 2 of 2/FP..n.d/C/C/xxx | A C
        last    | ABC | L | Adult 2 of 2/FP..n.d/B/B/xxx | A B
        only    | A   |   |                              |
        refused | ABC | L | Adult 3 of 3/FP..n.d/C/C/xxx | A B C)");
}

void tst_recordforms::remove()
{
    QFETCH(QString, people);
    QFETCH(QString, steps);
    QFETCH(QString, state);
    add(people);
    Screen screen;
    screen.walk(steps);
    screen.form.confirms = QTest::currentDataTag() != QLatin1String("refused");
    screen.click("cmdDelete");
    if (!state.isEmpty())
        QCOMPARE(screen.state(), state.replace(u'/', u'|'));
    QTEST(screen.rows(), "rows");
    QCOMPARE(test::count(QStringLiteral("Adults")), screen.list.listCount());
    QCOMPARE(test::count(QStringLiteral("Assigned_Awards_Adults")), screen.list.listCount());
    QCOMPARE(screen.get<QWidget>("txtFirst").isEnabled(), screen.list.listCount() > 0);
    if (state.isEmpty()) {
        QVERIFY(screen.last().isEmpty() && !screen.get<QWidget>("cmdFind").isEnabled());
        QCOMPARE(screen.live().last(3), QStringLiteral("n.."));
    }
}

ORLO_TEST_MAIN(tst_recordforms)

#include "tst_recordforms.moc"
