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
    frmPeople() : ListForm({"Adult", "Adults", "Adult_SID"})
    {
        auto* column = new QVBoxLayout(this);
        const auto add = [&]<class W>(W* widget, const char* name) {
            widget->setObjectName(name);
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
        for (const char* page : {"One", "Two"})
            pages().addTab(new QWidget, page);
        controls().lblRecordInfo->setText("None");
        enableSaveOnChange({first, last, active});
    }

    using ListForm::cmdNext_Click;
    using ListForm::cmdPrevious_Click;
    bool confirms = true;
    [[nodiscard]] QTabWidget& pages() const { return *listControls().tabs; }

protected:
    void load() override { openSet(); }
    void openSet() override
    {
        openRecords("Select * From Adults Where Active = 'Y' Order by Last_Name");
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
        last->setText(rsRecords->value(u"Last_Name").textOrEmpty());
        active->setText(rsRecords->value(u"Active").textOrEmpty());
        mCurrentSID = rsRecords->value(u"Adult_SID").toInt16();
        controls().cmdSave->setEnabled(false);
        ShowRecordInfo();
    }
    void ClearRecord() override
    {
        last->clear();
        active->clear();
    }
    void SaveRecord() override
    {
        if (!mNewRecord)
            rsRecords->edit();
        rsRecords->setValue(u"Last_Name", last->text());
        rsRecords->setValue(u"Active", active->text());
        if (mNewRecord)
            rsRecords->setValue(u"Adult_SID", int{mCurrentSID});
        rsRecords->update();
        finishSaveRecord();
    }
    void EnableFields() override { first->setEnabled(true); }
    void DisableFields() override { first->setEnabled(false); }
    void setDefaults() override { active->setText("Y"); }
    QString newRowText() const override { return "<New>" + last->text(); }
    bool confirmDelete() override { return confirms; }
    void deleteAwards() override {}

private:
    QLineEdit *first, *last, *active;
};

struct Screen : test::RecordScreen<frmPeople> {
    widgets::ListBox& list = get<widgets::ListBox>("lbAdults");

    // With find and the buttons for awards, whether tabs and fields are enabled, the last name, the list and its row.
    [[nodiscard]] QString state() const
    {
        return RecordScreen::state() + ' ' + enabled("faD", {"cmdFind", "cmdAddAward", "cmdDeleteAward"}) + ' ' +
               enabled("tx", {"tabAdult", "txtFirst"}) + '/' + get<QLineEdit>("txtLast").text() + '/' +
               test::textsOf(list) + '/' + QString::number(list.listIndex() + 1) +
               (form.focusWidget() == &get("txtFirst") ? "!" : "");
    }
};

} // namespace

class tst_recordforms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<test::AppFolder>(); }
    void cleanup() { m_folder.reset(); }

    // Digits click rows of the list; "back" and "on" step whether the buttons are live or not.
    void listForm_data()
    {
        test::table({"name", "people", "script", "state", "stored"}, R"(
            none             | 0 |         | None ....n.. .aD ..///0                | 
            off its start    | 1 | back    | Adult 1 of 1 ....n.d faD tx/A/A/1!     | A
            off its end      | 1 | on      | Adult 1 of 1 ....n.d faD tx/A/A/1!     | A
            next             | 3 | N       | Adult 2 of 3 FPNLn.d faD tx/B/A; B; C/2! | C B A
            last, previous   | 3 | L P     | Adult 2 of 3 FPNLn.d faD tx/B/A; B; C/2! | C B A
            click            | 3 | 3       | Adult 3 of 3 FP..n.d faD tx/C/A; B; C/3  | C B A
            clicks and steps | 3 | 3 P 1 N | Adult 2 of 3 FPNLn.d faD tx/B/A; B; C/2! | C B A
            off the start    | 3 | back    | Adult 1 of 3 ..NLn.d faD tx/A/A; B; C/1! | C B A
            off the end      | 3 | L on on | Adult 3 of 3 FP..n.d faD tx/C/A; B; C/3! | C B A
            there and back   | 3 | L on back | Adult 2 of 3 FPNLn.d faD tx/B/A; B; C/2! | C B A
            click saves      | 3 | Last=X yes 3 | Adult 3 of 3 FP..n.d faD tx/C/A; B; C/3 | C B X
            click on its row | 3 | Last=X yes 1 | Adult 1 of 3 ..NLn.d faD tx/X/A; B; C/1 | C B X
            click drops      | 3 | Last=X no 2  | Adult 2 of 3 FPNLn.d faD tx/B/A; B; C/2 | C B A
            save             | 3 | N Last=X s | Adult 2 of 3 FPNLn.d faD tx/X/A; B; C/2! | C X A
            new              | 3 | N page n | Adult (New) FPNL.s. ... tx//A; B; C/2! | C B A
            new, saved       | 3 | N n Last=X s | Adult 4 of 4 FP..n.d faD tx/X/A; B; C; <New>X/4! | C B A X
            saved again      | 3 | n Last=X s P 4 Last=Y s | Adult 4 of 4 FP..n.d faD tx/Y/A; B; C; <New>X/4! | C B A Y
            first of all     | 0 | n Last=X s | Adult 1 of 1 ....n.d faD tx/X/X/1! | X
            first, left out  | 0 | n Last=X Active=N s | None ....n.. ... ..///0 | X
            new, cancelled   | 3 | N n Last=X c | Adult 2 of 3 FPNLn.d faD tx/B/A; B; C/2 | C B A
            edit, cancelled  | 3 | N Last=X c | Adult 2 of 3 FPNLn.d faD tx/X/A; B; C/2 | C B A
            and moved off    | 3 | N Last=X c N P | Adult 2 of 3 FPNLn.d faD tx/B/A; B; C/2! | C B A
            first, cancelled | 0 | n c     | Adult (New) ....n.d faD t.///0        |
            first deleted    | 3 | d       | Adult 1 of 2 ..NLn.d faD tx/B/B; C/1! | C B
            middle deleted   | 3 | N d     | Adult 2 of 2 FP..n.d faD tx/C/A; C/2! | C A
            last deleted     | 3 | L d     | Adult 2 of 2 FP..n.d faD tx/B/A; B/2! | B A
            only one deleted | 1 | d       | Adult 1 of 1 ....n.. .aD t.///0       |
            and a new one    | 1 | d n Last=X s | Adult 1 of 1 ....n.d faD tx/X/X/1! | X
            delete refused   | 3 | L keep d | Adult 3 of 3 FP..n.d faD tx/C/A; B; C/3 | C B A)");
    }
    void listForm()
    {
        QFETCH(QString, people);
        QFETCH(QString, script);
        test::fill("With k(i) As (Values(1), (2), (3)) Insert Into Adults (Adult_SID, Last_Name, Active) "
                   "Select i, char(65 + " +
                   people + " - i), 'Y' From k Limit " + people);
        Screen screen;
        screen.list.setFocus();
        screen.run(script, [&](const QString& word) {
            if (word == "back")
                screen.form.cmdPrevious_Click();
            else if (word == "on")
                screen.form.cmdNext_Click();
            else if (word == "keep")
                screen.form.confirms = false;
            else if (word == "page")
                screen.form.pages().setCurrentIndex(1);
            else
                test::clickRow(screen.list, word.toInt() - 1);
        });
        QTEST(screen.state(), "state");
        QTEST(test::rows("Select Last_Name From Adults Order by Adult_SID").remove(','), "stored");
        QCOMPARE(screen.form.pages().currentIndex(), 0);
        for (const auto& box : screen.told)
            QCOMPARE(box->title, "Save Changes");
    }

private:
    std::unique_ptr<test::AppFolder> m_folder;
};

ORLO_TEST_MAIN(tst_recordforms)

#include "tst_recordforms.moc"
