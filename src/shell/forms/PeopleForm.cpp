#include "shell/forms/PeopleForm.h"

#include "shell/forms/EmptyLists.h"
#include "shell/forms/Module1.h"
#include "shell/forms/PersonName.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"
#include "widgets/MessageBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextGrid.h"

#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTabWidget>

namespace orlo
{

PeopleForm::PeopleForm(const Words& words)
    : RecordForm({words.noun, words.noun + QStringLiteral("s"), words.noun + QStringLiteral("_SID")}), m_words(words)
{
}

void PeopleForm::bindControls(const NamedControls& named)
{
    RecordForm::bindControls(&control<QLineEdit>("txtFirst"));
    m_list = named.list;
    m_tabs = named.tabs;
    m_awardPage.emplace(named.awards, named.personName, named.noteName,
                        [this](auto& grid, int row, const auto& award) { fillAwardRow(grid, row, award); });
    connect(m_list, &widgets::ListBox::clicked, this, &PeopleForm::list_Click);
    auto& den = control<widgets::ComboBox>("cmbSelectedDens");
    const auto option = [this](const char* name) -> auto&
    {
        return control<widgets::OptionButton>(name);
    };
    m_filters.emplace(FilterControls::Controls{.active = option("optActive"),
                                               .inactive = option("optInactive"),
                                               .lastNameFirst = option("optOrderLastName"),
                                               .den = den});
    for (const char* name : {"optActive", "optInactive", "optActive_Inactive", "optOrderLastName", "optOrderFirstName"})
        connect(&option(name), &widgets::OptionButton::selected, this, [this] {
            PromptSaveChanges();
            openSet();
        });
    // Every change of the text counts, even typing, and there is no question about unsaved changes.
    connect(&den, &widgets::ComboBox::textChange, this, [this] { openSet(); });
    connect(&den, &widgets::ComboBox::clicked, this, [this] { openSet(); });
    connect(&den, &widgets::ComboBox::dropDown, this, [this] {
        PromptSaveChanges();
        LoadDenLists();
    });
    widgets::pressOncePerDoubleClick(button("cmdDeleteAward"));
    connectRoutine("cmdDeleteAward", &PeopleForm::cmdDeleteAward_Click);
    connectRoutine("cmdFind", &PeopleForm::cmdFind_Click);
    setDefaultButton(&button("cmdSave"));
    connect(m_tabs, &QTabWidget::currentChanged, this, &PeopleForm::tabs_Click);
}

std::int16_t PeopleForm::currentPerson() const
{
    return rsRecords->value(keyField()).toInt16();
}

// ---- Walking

void PeopleForm::cmdFirst_Click()
{
    PromptSaveChanges();
    stepToFirst();
    showCurrent();
}

void PeopleForm::cmdPrevious_Click()
{
    PromptSaveChanges();
    stepToPrevious();
    showCurrent();
}

void PeopleForm::cmdNext_Click()
{
    PromptSaveChanges();
    stepToNext();
    showCurrent();
    ReloadAwardGrid(); // once more, after Next and Last only
}

void PeopleForm::cmdLast_Click()
{
    PromptSaveChanges();
    stepToLast();
    showCurrent();
    ReloadAwardGrid();
}

// The order matters: SetNavButtons first repairs the position after a step off either end; FillRecord leaves cmdSave
// disabled, so the click that selecting the row causes asks nothing and shows the same record again.
void PeopleForm::showCurrent()
{
    SetNavButtons();
    FillRecord();
    SelectListRow(recordIndex());
    reloadDependants();
    focusFirstField();
}

void PeopleForm::SelectListRow(int position)
{
    m_list->setListIndex(position - 1);
}

// The row number alone keeps record set and list in step.
void PeopleForm::list_Click()
{
    PromptSaveChanges();
    goTo(m_list->listIndex() + 1);
    FillRecord();
    reloadDependants();
    SetNavButtons();
}

void PeopleForm::SetNavButtons()
{
    const Ways ways = settle();
    button("cmdDelete").setEnabled(mRecordCount != 0);
    button("cmdFind").setEnabled(mRecordCount != 0);
    showWays(ways);
    endRoutine();
}

// If the first field's page is hidden, focus the visible page's first control, so nobody types into a hidden field.
QWidget* PeopleForm::fieldInView() const
{
    QWidget* first = firstField();
    QWidget* page = m_tabs->currentWidget();
    if (page->isAncestorOf(first))
        return first;
    for (QWidget* control = page->nextInFocusChain(); control != page; control = control->nextInFocusChain())
        if (page->isAncestorOf(control) && control->isEnabled() && (control->focusPolicy() & Qt::TabFocus))
            return control;
    return first;
}

// ---- New, Save, Cancel, Delete

void PeopleForm::cmdNew_Click()
{
    readRecordCount();
    if (mRecordCount == 0)
        setRecordIndex(0);
    m_tabs->setCurrentIndex(0);
    mCurrentSID = newKey();
    if (recordIndex() == 0) {
        EnableFields();
        m_tabs->setEnabled(true);
    }
    rsRecords->addNew();
    ClearRecord();
    setDefaults(); // this change enables cmdSave
    button("cmdNew").setEnabled(false);
    button("cmdDelete").setEnabled(false);
    enableExtraButtons(false);
    focusFirstField();
    mNewRecord = true;
    finishNew();
    ShowRecordInfo();
}

void PeopleForm::cmdSave_Click()
{
    SaveRecord();
    if (mRecordCount <= 0)
        return;
    focusFirstField();
    button("cmdSave").setEnabled(false);
    enableRecordButtons();
}

void PeopleForm::finishSaveRecord()
{
    const bool added = mNewRecord;
    if (added) {
        ++mRecordCount;
        setRecordIndex(mRecordCount);
        const auto typed = [this](const char* box) { return control<QLineEdit>(box).text(); };
        m_list->insertItem(mRecordCount - 1, newListRow(typed("txtFirst"), typed("txtMi"), typed("txtLast")));
        if (mRecordCount == 1) {
            // The first record of an empty set is reopened through the filters, which may exclude it.
            button("cmdSave").setEnabled(false);
            openSet();
        }
    }
    if (mRecordCount > 0) {
        SetNavButtons();
        FillRecord();
        if (added)
            SelectListRow(mRecordCount);
    }
    mNewRecord = false;
    if (added && mRecordCount > 0) // saved on the way, for instance by a click on another row: cmdSave does the same
        enableRecordButtons();
    ShowRecordInfo();
}

void PeopleForm::cmdDelete_Click()
{
    if (!confirmDelete())
        return;
    if (rsRecords->recordCount() > 0) // empty if the new record of an empty set was cancelled
        deleteAwards();
    readRecordCount();
    if (mRecordCount == 0)
        return;
    m_list->removeItem(recordIndex() - 1);
    rsRecords->remove();
    readRecordCount();
    if (mRecordCount < 1) {
        setRecordIndex(0);
        mCurrentSID = 0; // nothing belongs to nobody
        ClearRecord();
        button("cmdDelete").setEnabled(false);
        button("cmdFind").setEnabled(false);
        button("cmdSave").setEnabled(false);
        button("cmdNew").setEnabled(true);
        DisableFields();
        button("cmdNew").setFocus();
        tellWhyEmpty();
        return;
    }
    if (recordIndex() <= mRecordCount)
        rsRecords->moveNext();
    else {
        setRecordIndex(mRecordCount);
        rsRecords->moveLast();
    }
    SetNavButtons();
    FillRecord();
    SelectListRow(recordIndex());
    focusFirstField();
}

// If Escape brought up the question, the Enter that may follow must not delete anybody.
bool PeopleForm::confirmDelete()
{
    const bool byEscape = cancelButton() == &button("cmdDelete");
    return widgets::ask(
        QStringLiteral("ARE YOU SURE YOU WANT TO DELETE THE CURRENT %1 RECORD and all of the %2's Award Records? The "
                       "alternitive is to set the %3 to inactive. This will retain all the %2's data in the program, "
                       "but disable the %2 from showing up on reports.")
            .arg(m_words.noun.toUpper(), m_words.noun, m_words.noun.toLower()),
        QStringLiteral("Delete ") + m_words.noun, byEscape ? widgets::Preset::No : widgets::Preset::Yes);
}

// An existing record isn't restored: the typed text stays on screen, but no save can reach it.
void PeopleForm::cmdCancel_Click()
{
    button("cmdSave").setEnabled(false);
    enableRecordButtons();
    if (recordIndex() == 0) {
        DisableFields();
        return;
    }
    if (mNewRecord) {
        mNewRecord = false;
        readRecordCount();
        goTo(recordIndex());
        SetNavButtons();
        FillRecord();
        reloadDependants();
    }
    ShowRecordInfo();
}

void PeopleForm::enableRecordButtons()
{
    button("cmdNew").setEnabled(true);
    button("cmdDelete").setEnabled(true);
    enableExtraButtons(true);
}

void PeopleForm::enableExtraButtons(bool on)
{
    for (const char* name : {"cmdFind", "cmdAddAward", "cmdDeleteAward"})
        button(name).setEnabled(on);
}

// ---- The set and its list

void PeopleForm::openSet()
{
    const int opening = ++m_openings;
    const PeopleFilter people = filter();
    const QString statement = QStringLiteral("Select * From %1s ").arg(m_words.noun) +
                              people.BuildViewCriteria(QString()) + people.BuildOrderClause();
    if (statement != m_justOpened) // restoring the den filter's text asks for the set just opened
        openRecords(statement);
    button("cmdSave").setEnabled(false); // edits of the former set are dropped without a question
    if (mRecordCount < 1) {
        m_list->clear();
        mCurrentSID = 0; // nothing belongs to nobody
        ClearRecord();
    } else {
        setRecordIndex(1);
        const QScopedValueRollback justOpened(m_justOpened, statement);
        LoadDenLists();
    }
    // If restoring the den filter's text has filled the list, nothing is left to do here.
    if (opening == m_openings) {
        mFindRequested = false;
        if (mRecordCount == 0)
            showEmpty();
        else {
            rsRecords->moveFirst();
            mCurrentSID = currentPerson();
            PopulateNavLB();
            enableRecord();
            FillRecord();
        }
    }
    endRoutine();
    tellWhyEmpty();
}

void PeopleForm::tellWhyEmpty()
{
    sayWhyEmpty(*m_list, m_words.noun + u's', button("cmdNew"));
}

// Without records only cmdNew is enabled.
void PeopleForm::showEmpty()
{
    DisableRecordButtons();
    button("cmdFind").setEnabled(false);
    setRecordIndex(0);
    DisableFields();
    button("cmdNew").setEnabled(true);
    m_tabs->setCurrentIndex(0);
    m_tabs->setEnabled(false);
    if (!window()->focusWidget()) // the focused control was disabled, so keys would go nowhere
        button("cmdNew").setFocus();
}

// Ends the empty state and the new-record state.
void PeopleForm::enableRecord()
{
    EnableFields();
    enableRecordButtons();
    m_tabs->setEnabled(true);
}

void PeopleForm::PopulateNavLB()
{
    rsRecords->moveFirst();
    QStringList rows;
    rows.reserve(mRecordCount);
    const bool lastNameFirst = m_filters->lastNameFirst();
    rsRecords->readAll({u"First_Name", u"MI", u"Last_Name"}, [&](std::span<const store::Value> name) {
        rows.append(
            listRow(name[0].textOrEmpty(), listMiddle(name[1].textOrEmpty()), name[2].textOrEmpty(), lastNameFirst));
    });
    m_list->setUpdatesEnabled(false);
    m_list->clear();
    m_list->addItems(rows);
    m_list->setUpdatesEnabled(true);
    rsRecords->moveFirst();
    SelectListRow(1);
    endRoutine();
}

QString PeopleForm::listMiddle(const QString& initial) const
{
    return middlePart(initial);
}

PeopleFilter PeopleForm::filter() const
{
    return m_filters->filter([this](const QString& den) { return denCriterion(GetDenSID(den)); });
}

// ---- Den lists

bool PeopleForm::readDens()
{
    if (m_dens.read())
        return true;
    widgets::message(m_words.noDens, QStringLiteral("Selection Error"));
    return false;
}

QString PeopleForm::GetDenName(std::int16_t denSID) const
{
    QString name = denName(denSID);
    endRoutine();
    return name;
}

// ---- Awards

void PeopleForm::SetUpAwardGrid(const std::vector<AwardPage::Column>& columns, int stretched)
{
    m_awardPage->setUp(columns, stretched);
    if (mRecordCount > 0)
        m_awardPage->setName(personName());
}

void PeopleForm::ReloadAwardGrid()
{
    m_awardPage->reload(personName(), awardStatement(currentPerson()));
    endRoutine();
}

QString PeopleForm::personName() const
{
    const auto text = [this](QStringView field) { return rsRecords->value(field).textOrEmpty(); };
    return rightTrimmed(text(u"First_Name") + u' ' + text(u"MI")) + u' ' + rightTrimmed(text(u"Last_Name"));
}

// On the note's page Enter makes a new line.
void PeopleForm::tabs_Click()
{
    const bool note = m_tabs->currentWidget() == &control<QWidget>("pagNote");
    setDefaultButton(note ? nullptr : &button("cmdSave"));
}

} // namespace orlo
