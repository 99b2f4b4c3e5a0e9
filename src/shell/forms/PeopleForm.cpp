#include "shell/forms/PeopleForm.h"

#include "shell/forms/Module1.h"
#include "shell/forms/PersonName.h"
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

namespace
{
const QString AllDens = QStringLiteral("<All>");
} // namespace

PeopleForm::PeopleForm(const Words& words)
    : RecordForm({words.noun, words.noun + QStringLiteral("s"), words.noun + QStringLiteral("_SID")}), m_words(words)
{
}

PeopleForm::~PeopleForm() = default;

void PeopleForm::bindPeople(const PeopleControls& controls, const NamedControls& named)
{
    m_people = controls;
    m_awardPage.emplace(named.awards, named.personName,
                        [this](auto& grid, int row, const auto& award) { fillAwardRow(grid, row, award); });
    connect(controls.list, &widgets::ListBox::clicked, this, &PeopleForm::list_Click);
    controls.cmbSelectedDens->setText(AllDens);
    for (auto* option : {controls.optActive, controls.optInactive, controls.optActive_Inactive,
                         controls.optOrderLastName, controls.optOrderFirstName})
        connect(option, &widgets::OptionButton::selected, this, [this] {
            PromptSaveChanges();
            openSet();
        });
    // The text counts on every change, typed ones included, and nothing asks about unsaved changes.
    connect(controls.cmbSelectedDens, &widgets::ComboBox::textChange, this, [this] { openSet(); });
    connect(controls.cmbSelectedDens, &widgets::ComboBox::clicked, this, [this] { openSet(); });
    connect(controls.cmbSelectedDens, &widgets::ComboBox::dropDown, this, [this] {
        PromptSaveChanges();
        LoadDenLists();
    });
    widgets::pressOncePerDoubleClick(*controls.cmdDeleteAward);
    connectRoutine(controls.cmdFind, &PeopleForm::cmdFind_Click);
    connect(controls.tabs, &QTabWidget::currentChanged, this, &PeopleForm::tabs_Click);
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

// The order counts: SetNavButtons first repairs the place after a step off either end, FillRecord leaves cmdSave
// disabled, so that the click which the selection of the row causes asks nothing and brings the same record once more.
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
    m_people->list->setListIndex(position - 1);
}

// Record set and list are kept in step through the row's number only.
void PeopleForm::list_Click()
{
    PromptSaveChanges();
    goTo(m_people->list->listIndex() + 1);
    FillRecord();
    reloadDependants();
    SetNavButtons();
}

void PeopleForm::SetNavButtons()
{
    const Ways ways = settle();
    controls().cmdDelete->setEnabled(mRecordCount != 0);
    m_people->cmdFind->setEnabled(mRecordCount != 0);
    showWays(ways);
    endRoutine();
}

// On another page than the first field's it is what that page begins with: nothing is to be typed unseen.
QWidget* PeopleForm::fieldInView() const
{
    QWidget* first = controls().firstField;
    QWidget* page = m_people->tabs->currentWidget();
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
    m_people->tabs->setCurrentIndex(0);
    mCurrentSID = newKey();
    if (recordIndex() == 0) {
        EnableFields();
        m_people->tabs->setEnabled(true);
    }
    rsRecords->addNew();
    ClearRecord();
    setDefaults(); // what changes here is what enables cmdSave
    controls().cmdNew->setEnabled(false);
    controls().cmdDelete->setEnabled(false);
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
    controls().cmdSave->setEnabled(false);
    enableRecordButtons();
}

void PeopleForm::finishSaveRecord()
{
    const bool added = mNewRecord;
    if (added) {
        ++mRecordCount;
        setRecordIndex(mRecordCount);
        m_people->list->insertItem(mRecordCount - 1, newRowText());
        if (mRecordCount == 1) {
            // The first record of an empty set comes in through the filters, which may leave it out again.
            controls().cmdSave->setEnabled(false);
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
    if (added && mRecordCount > 0) // saved by the way, as when another row was clicked: cmdSave does the same
        enableRecordButtons();
    ShowRecordInfo();
}

// The mark stays before the name until the list is next filled, whatever the order.
QString PeopleForm::newRowText() const
{
    return QStringLiteral("<New>") + leftTrimmed(m_people->txtLast->text()) + QStringLiteral(", ") +
           leftTrimmed(m_people->txtFirst->text()) + u' ' + m_people->txtMi->text();
}

void PeopleForm::cmdDelete_Click()
{
    if (!confirmDelete())
        return;
    if (rsRecords->recordCount() > 0) // none where the new record of an empty set was cancelled
        deleteAwards();
    readRecordCount();
    if (mRecordCount == 0)
        return;
    m_people->list->removeItem(recordIndex() - 1);
    rsRecords->remove();
    readRecordCount();
    if (mRecordCount < 1) {
        setRecordIndex(0);
        mCurrentSID = 0; // nothing hangs off nobody
        ClearRecord();
        controls().cmdDelete->setEnabled(false);
        m_people->cmdFind->setEnabled(false);
        controls().cmdSave->setEnabled(false);
        controls().cmdNew->setEnabled(true);
        DisableFields();
        controls().cmdNew->setFocus();
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

// Where Escape asks this, the Enter that may follow it is not to delete anybody.
bool PeopleForm::confirmDelete()
{
    const bool byEscape = cancelButton() == controls().cmdDelete;
    return widgets::ask(
        QStringLiteral("ARE YOU SURE YOU WANT TO DELETE THE CURRENT %1 RECORD and all of the %2's Award Records? The "
                       "alternitive is to set the %3 to inactive. This will retain all the %2's data in the program, "
                       "but disable the %2 from showing up on reports.")
            .arg(m_words.noun.toUpper(), m_words.noun, m_words.noun.toLower()),
        QStringLiteral("Delete ") + m_words.noun, byEscape ? widgets::Preset::No : widgets::Preset::Yes);
}

// An existing record is not put back: what was typed stays on screen, out of reach of any save.
void PeopleForm::cmdCancel_Click()
{
    controls().cmdSave->setEnabled(false);
    enableRecordButtons();
    if (recordIndex() == 0) {
        DisableFields();
        return;
    }
    controls().cmdSave->setEnabled(false);
    controls().cmdNew->setEnabled(true);
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
    controls().cmdNew->setEnabled(true);
    controls().cmdDelete->setEnabled(true);
    enableExtraButtons(true);
}

void PeopleForm::enableExtraButtons(bool on)
{
    m_people->cmdFind->setEnabled(on);
    m_people->cmdAddAward->setEnabled(on);
    m_people->cmdDeleteAward->setEnabled(on);
}

// ---- The set and its list

void PeopleForm::openSet()
{
    const int opening = ++m_openings;
    const PeopleFilter people = filter();
    const QString statement = QStringLiteral("Select * From %1s ").arg(m_words.noun) +
                              people.BuildViewCriteria(QString()) + people.BuildOrderClause();
    if (statement != m_justOpened) // a den filter that gets its text back wants the set that is being shown
        openRecords(statement);
    controls().cmdSave->setEnabled(false); // edits of the former set are dropped unasked
    if (mRecordCount < 1) {
        m_people->list->clear();
        mCurrentSID = 0; // nothing hangs off nobody
        ClearRecord();
    } else {
        setRecordIndex(1);
        const QScopedValueRollback justOpened(m_justOpened, statement);
        LoadDenLists();
    }
    // Where the den filter got its text back, that has filled the list and left nothing to do here.
    if (opening == m_openings) {
        mFindRequested = false;
        mNewRecord = false;
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
}

// The state without records: only cmdNew is live.
void PeopleForm::showEmpty()
{
    DisableRecordButtons();
    m_people->cmdFind->setEnabled(false);
    setRecordIndex(0);
    DisableFields();
    controls().cmdNew->setEnabled(true);
    m_people->tabs->setCurrentIndex(0);
    m_people->tabs->setEnabled(false);
    if (!window()->focusWidget()) // the control that had the focus has gone out of use, the keys with it
        controls().cmdNew->setFocus();
}

// The empty state ends, and so does that of a new record.
void PeopleForm::enableRecord()
{
    EnableFields();
    enableRecordButtons();
    m_people->tabs->setEnabled(true);
}

void PeopleForm::PopulateNavLB()
{
    rsRecords->moveFirst();
    QStringList rows;
    rows.reserve(mRecordCount);
    const bool lastNameFirst = m_people->optOrderLastName->isChecked();
    rsRecords->readAll({u"First_Name", u"Last_Name", u"MI"}, [&](std::span<const store::Value> name) {
        const QString first = name[0].textOrEmpty();
        const QString last = name[1].textOrEmpty();
        const QString middle = listMiddle(name[2].textOrEmpty());
        rows.append(lastNameFirst ? rightTrimmed(last) + QStringLiteral(", ") + rightTrimmed(first + middle)
                                  : rightTrimmed(first + middle + last));
    });
    widgets::ListBox& list = *m_people->list;
    list.setUpdatesEnabled(false);
    list.clear();
    list.addItems(rows);
    list.setUpdatesEnabled(true);
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
    using View = PeopleFilter::View;
    View view = View::All;
    if (m_people->optActive->isChecked())
        view = View::Active;
    else if (m_people->optInactive->isChecked())
        view = View::Inactive;
    return {.view = view,
            .denCriterion = filtersByDen() ? denCriterion(GetDenSID(m_people->cmbSelectedDens->text())) : QString(),
            .lastNameFirst = m_people->optOrderLastName->isChecked()};
}

bool PeopleForm::filtersByDen() const
{
    const QString den = m_people->cmbSelectedDens->text();
    return !den.isEmpty() && den != AllDens;
}

// ---- Den lists

bool PeopleForm::readDens()
{
    if (m_dens.read())
        return true;
    widgets::message(m_words.noDens, QStringLiteral("Selection Error"));
    return false;
}

// Giving the filter its text back counts as a change of it.
void PeopleForm::rebuildDenFilter()
{
    widgets::ComboBox& filter = *m_people->cmbSelectedDens;
    const QString kept = filter.text();
    filter.removeAll();
    for (const QString& den : std::as_const(m_dens.texts))
        filter.addItem(den);
    filter.addItem(AllDens);
    if (kept.isEmpty())
        filter.setListIndex(0);
    else
        filter.setText(kept);
}

QString PeopleForm::GetDenName(std::int16_t denSID) const
{
    QString name = denName(denSID);
    endRoutine();
    return name;
}

// ---- Find

// The question about unsaved changes comes after the dialog.
void PeopleForm::cmdFind_Click()
{
    showFindDialog();
    PromptSaveChanges();
    if (!mFindRequested) {
        if (mSelectAllRequested)
            openSet();
        return;
    }
    rsRecords = database().openRecordset(findStatement());
    if (rsRecords->recordCount() > 0) {
        rsRecords->moveLast();
        rsRecords->moveFirst();
        readRecordCount();
        setRecordIndex(1);
        mNewRecord = false; // it lasts where a new record of an empty set was cancelled
        enableRecord();
        SetNavButtons();
        FillRecord();
        PopulateNavLB();
        SelectListRow(1);
    } else {
        widgets::message(m_words.nothingFound, QStringLiteral("No Data Found"));
        const int index = recordIndex();
        openSet();
        if (mRecordCount == 0)
            return;
        if (index <= mRecordCount) // a record saved out of the view took its row along
            setRecordIndex(index);
        SetNavButtons();
        FillRecord();
        SelectListRow(recordIndex());
    }
    focusFirstField();
}

// ---- Awards

void PeopleForm::SetUpAwardGrid(const std::vector<AwardPage::Column>& columns, int stretched)
{
    if (mRecordCount > 0)
        m_awardPage->setName(personName());
    m_awardPage->setUp(columns, stretched);
}

void PeopleForm::ReloadAwardGrid()
{
    m_awardPage->reload(personName(), awardStatement(currentPerson()));
    endRoutine();
}

void PeopleForm::LoadAwardRows()
{
    m_awardPage->addAwards(awardStatement(currentPerson()));
}

QString PeopleForm::personName() const
{
    const auto text = [this](QStringView field) { return rsRecords->value(field).textOrEmpty(); };
    return rightTrimmed(text(u"First_Name") + u' ' + text(u"MI")) + u' ' + rightTrimmed(text(u"Last_Name"));
}

// On the page of the note Enter makes a new line.
void PeopleForm::tabs_Click()
{
    const bool note = m_people->tabs->currentWidget() == m_people->pagNote;
    setDefaultButton(note ? nullptr : controls().cmdSave);
}

} // namespace orlo
