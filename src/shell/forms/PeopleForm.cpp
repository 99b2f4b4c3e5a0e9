#include "shell/forms/PeopleForm.h"

#include "platform/Conversion.h"
#include "shell/forms/DenList.h"
#include "shell/forms/Module1.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"
#include "widgets/MessageBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextGrid.h"

#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>

namespace orlo
{

namespace
{

const QString AllDens = QStringLiteral("<All>");
constexpr int AwardDate = 1;       // the column, in both forms
constexpr int HeadingHeight = 250; // twips

QString leftTrimmed(const QString& text)
{
    qsizetype blanks = 0;
    while (blanks < text.size() && text[blanks] == u' ')
        ++blanks;
    return text.mid(blanks);
}

} // namespace

PeopleForm::PeopleForm(const QString& noun)
    : ListForm({noun, noun + QStringLiteral("s"), noun + QStringLiteral("_SID")}), m_noun(noun)
{
}

void PeopleForm::bindFilters(const FilterControls& controls)
{
    m_filters = controls;
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
    connect(listControls().cmdFind, &QPushButton::clicked, this, [this] { cmdFind_Click(); });
    connect(listControls().tabs, &QTabWidget::currentChanged, this, &PeopleForm::tabs_Click);
}

QString PeopleForm::rightTrimmed(QString text)
{
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

std::int16_t PeopleForm::currentPerson() const
{
    return rsRecords->value(keyField()).toInt16();
}

// ---- Buttons

void PeopleForm::cmdNext_Click()
{
    ListForm::cmdNext_Click();
    ReloadAwardGrid();
}

void PeopleForm::cmdLast_Click()
{
    ListForm::cmdLast_Click();
    ReloadAwardGrid();
}

// Where Escape asks this, the Enter that may follow it is not to delete anybody.
bool PeopleForm::confirmDelete()
{
    const bool byEscape = cancelButton() == controls().cmdDelete;
    return widgets::ask(
        QStringLiteral("ARE YOU SURE YOU WANT TO DELETE THE CURRENT %1 RECORD and all of the %2's Award Records? The "
                       "alternitive is to set the %3 to inactive. This will retain all the %2's data in the program, "
                       "but disable the %2 from showing up on reports.")
            .arg(m_noun.toUpper(), m_noun, m_noun.toLower()),
        QStringLiteral("Delete ") + m_noun, byEscape ? widgets::Preset::No : widgets::Preset::Yes);
}

void PeopleForm::deleteAwards()
{
    database().execute(QStringLiteral("Delete From Assigned_Awards_%1s Where %2 = %3")
                           .arg(m_noun, keyField(), QString::number(currentPerson())));
}

// ---- The set and its list

void PeopleForm::openSet()
{
    const int opening = ++m_openings;
    openRecords(setStatement());
    controls().cmdSave->setEnabled(false); // edits of the former set are dropped unasked
    if (mRecordCount < 1) {
        listControls().list->clear();
        mCurrentSID = 0; // nothing hangs off nobody
        ClearRecord();
    } else {
        setRecordIndex(1);
        LoadDenLists();
        if (opening != m_openings)
            return; // the den filter got its text back, which opened the set once more and left nothing to do
    }
    mFindRequested = false;
    mNewRecord = false;
    if (mRecordCount == 0) {
        showEmpty();
        return;
    }
    rsRecords->moveFirst();
    mCurrentSID = currentPerson();
    PopulateNavLB();
    enableRecord();
    FillRecord();
}

// The empty state ends, and so does that of a new record.
void PeopleForm::enableRecord()
{
    EnableFields();
    enableRecordButtons();
    listControls().tabs->setEnabled(true);
}

void PeopleForm::PopulateNavLB()
{
    rsRecords->moveFirst();
    QStringList rows;
    rows.reserve(mRecordCount);
    const bool lastNameFirst = m_filters->optOrderLastName->isChecked();
    for (; !rsRecords->eof(); rsRecords->moveNext()) {
        const QString first = rsRecords->value(u"First_Name").textOrEmpty();
        const QString last = rsRecords->value(u"Last_Name").textOrEmpty();
        const QString middle = middlePart(rsRecords->value(u"MI").textOrEmpty());
        rows.append(lastNameFirst ? rightTrimmed(last) + QStringLiteral(", ") + rightTrimmed(first + middle)
                                  : rightTrimmed(first + middle + last));
    }
    widgets::ListBox& list = *listControls().list;
    list.setUpdatesEnabled(false);
    list.clear();
    list.addItems(rows);
    list.setUpdatesEnabled(true);
    rsRecords->moveFirst();
    SelectListRow(1);
}

QString PeopleForm::setStatement() const
{
    return QStringLiteral("Select * From %1s ").arg(m_noun) + BuildViewCriteria(QString()) + BuildOrderClause();
}

QString PeopleForm::BuildViewCriteria(const QString& start) const
{
    const bool fresh = start.isEmpty();
    QString criteria = fresh ? QStringLiteral("Where ") : start + QStringLiteral(" and ");
    if (m_filters->optActive->isChecked())
        criteria += QStringLiteral(" Active = 'Y' ");
    else if (m_filters->optInactive->isChecked())
        criteria += QStringLiteral(" Active = 'N' ");
    else if (fresh)
        criteria.clear();
    if (filtersByDen()) {
        criteria += criteria.isEmpty() ? QStringLiteral("Where ") : QStringLiteral(" And ");
        criteria += denCriterion(GetDenSID(m_filters->cmbSelectedDens->text()));
    }
    return criteria;
}

QString PeopleForm::BuildOrderClause() const
{
    return m_filters->optOrderLastName->isChecked() ? QStringLiteral(" Order by Last_Name, First_Name ")
                                                    : QStringLiteral(" Order by First_Name, MI, Last_Name ");
}

bool PeopleForm::filtersByDen() const
{
    const QString den = m_filters->cmbSelectedDens->text();
    return !den.isEmpty() && den != AllDens;
}

// The mark stays before the name until the list is next filled, whatever the order.
QString PeopleForm::newRowText() const
{
    const auto text = [this](const char* name) { return findChild<QLineEdit*>(QLatin1String(name))->text(); };
    return QStringLiteral("<New>") + leftTrimmed(text("txtLast")) + QStringLiteral(", ") +
           leftTrimmed(text("txtFirst")) + u' ' + text("txtMi");
}

// ---- Den lists

bool PeopleForm::readDens()
{
    const std::vector<ListEntry> dens = allDens();
    if (dens.empty()) {
        widgets::message(noDensText(), QStringLiteral("Selection Error"));
        return false;
    }
    mDenSIDs.clear();
    m_denTexts.clear();
    for (const ListEntry& den : dens) {
        mDenSIDs.push_back(den.sid);
        m_denTexts.append(den.text);
    }
    return true;
}

// Giving the filter its text back counts as a change of it.
void PeopleForm::rebuildDenFilter()
{
    widgets::ComboBox& filter = *m_filters->cmbSelectedDens;
    const QString kept = filter.text();
    filter.clear();
    for (const QString& den : std::as_const(m_denTexts))
        filter.addItem(den);
    filter.addItem(AllDens);
    if (kept.isEmpty())
        filter.setListIndex(0);
    else
        filter.setText(kept);
}

std::int16_t PeopleForm::denOfRow(const widgets::ComboBox& list, const QString& denName) const
{
    const int rows = std::min(list.listCount(), static_cast<int>(mDenSIDs.size()));
    for (int row = 0; !denName.isEmpty() && row < rows; ++row)
        if (list.list(row) == denName)
            return mDenSIDs[static_cast<std::size_t>(row)];
    return -1;
}

QString PeopleForm::GetDenName(std::int16_t denSID) const
{
    const auto den = database().openRecordset(
        QStringLiteral("Select Den_Number, Den_Type, Den_SID From Dens Where Den_SID = %1").arg(denSID));
    return den.recordCount() > 0 ? denText(den) : QString();
}

// ---- Find

void PeopleForm::SetFind(bool find)
{
    mFindRequested = find;
    mSelectAllRequested = false;
}

void PeopleForm::SetSelectAll(bool selectAll)
{
    mSelectAllRequested = selectAll;
    mFindRequested = false;
}

void PeopleForm::SetFindNames(const QString& first, const QString& last, const QString& initial)
{
    mFindFirst = first;
    mFindLast = last;
    mFindMI = initial;
}

QString PeopleForm::nameCriteria() const
{
    QString criteria;
    for (const auto& [field, value] :
         {std::pair(u"First_Name", mFindFirst), std::pair(u"Last_Name", mFindLast), std::pair(u"MI", mFindMI)})
        if (!value.isEmpty())
            criteria += (criteria.isEmpty() ? QStringLiteral(" ") : QStringLiteral(" and ")) +
                        QString::fromUtf16(field) + QStringLiteral(" Like '") + value.trimmed() + QStringLiteral("*'");
    return criteria;
}

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
        widgets::message(nothingFoundText(), QStringLiteral("No Data Found"));
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

void PeopleForm::bindAwards(const AwardControls& controls)
{
    m_awards = controls;
}

void PeopleForm::SetUpAwardGrid(const std::vector<AwardHeading>& columns, int stretched)
{
    if (mRecordCount > 0)
        m_awards.name->setText(personName());
    auto& grid = *m_awards.grid;
    cutAwardGrid();
    grid.setRowHeight(0, HeadingHeight);
    for (int col = 0; const AwardHeading& column : columns) {
        grid.setColWidth(col, column.width);
        grid.setColAlignment(col, column.alignment);
        grid.setText(0, col++, column.heading);
    }
    grid.setStretchColumn(stretched);
    grid.fitCol(AwardDate, QStringLiteral("12/30/2000"));
}

void PeopleForm::cutAwardGrid()
{
    m_awards.grid->setRows(1);
}

void PeopleForm::ReloadAwardGrid()
{
    const widgets::RedrawHold hold(*m_awards.grid);
    cutAwardGrid();
    m_awards.name->setText(personName());
    LoadAwardRows();
}

QString PeopleForm::personName() const
{
    const auto text = [this](QStringView field) { return rsRecords->value(field).textOrEmpty(); };
    return rightTrimmed(text(u"First_Name") + u' ' + text(u"MI")) + u' ' + rightTrimmed(text(u"Last_Name"));
}

void PeopleForm::LoadAwardRows()
{
    auto& grid = *m_awards.grid;
    const widgets::RedrawHold hold(grid);
    for (auto awards = database().openRecordset(awardStatement(currentPerson())); !awards.eof(); awards.moveNext())
        fillAwardRow(grid, grid.addRow(), awards);
}

QString PeopleForm::awardText(const store::Recordset& award)
{
    return rightTrimmed(award[u"Insignia_Name"].textOrEmpty()) + u' ' + award[u"Insignia_Type"].textOrEmpty();
}

// On the page of the note Enter makes a new line.
void PeopleForm::tabs_Click()
{
    const bool note = listControls().tabs->currentWidget() == m_filters->pagNote;
    setDefaultButton(note ? nullptr : controls().cmdSave);
}

} // namespace orlo
