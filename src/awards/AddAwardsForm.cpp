#include "awards/AddAwardsForm.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "shell/forms/Module1.h"
#include "shell/forms/PersonShown.h"
#include "shell/forms/dlgCalendar.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "widgets/CheckListBox.h"
#include "widgets/EmptyText.h"
#include "widgets/MessageBox.h"

#include <QLineEdit>

#include <algorithm>
#include <memory>

namespace orlo
{

namespace
{

// Hides a list while it changes row by row, then restores its visibility and focus.
class Hidden
{
public:
    explicit Hidden(QWidget& list) : m_list(list), m_visible(!list.isHidden()), m_focus(list.hasFocus())
    {
        m_list.hide();
    }
    ~Hidden()
    {
        m_list.setVisible(m_visible);
        if (m_focus)
            m_list.setFocus();
    }
    Hidden(const Hidden&) = delete;
    Hidden& operator=(const Hidden&) = delete;

private:
    QWidget& m_list;
    bool m_visible;
    bool m_focus;
};

// Removes a row and, unlike the list's own routine, keeps the other rows highlighted.
void takeRow(widgets::ListBox& list, int row)
{
    const std::unique_ptr<QListWidgetItem> gone(list.takeItem(row));
}

} // namespace

AddAwardsForm::AddAwardsForm(Holder holder) : Form(widgets::FormKind::Window), m_holder(std::move(holder))
{
}

void AddAwardsForm::bindControls(QPushButton* add)
{
    m_date = &control<QLineEdit>("txtAssignedDate");
    m_catalogue = &control<widgets::CheckListBox>("lbAwardList");
    m_selected = &control<widgets::ListBox>("lbSelected");
    widgets::sayWhenEmpty(*m_catalogue, QStringLiteral("No awards in the catalogue yet."));
    widgets::sayWhenEmpty(*m_selected, QStringLiteral("No award chosen yet. Tick one in the list."));
    setDefaultButton(add);
    setCancelButton(&control<QPushButton>("cmdCancel"));
    openCalendarOnDoubleClick(m_date);
    connect(m_catalogue, &widgets::CheckListBox::itemCheck, this, &AddAwardsForm::lbAwardList_ItemCheck);
    connect(m_selected, &widgets::ListBox::doubleClicked, this, &AddAwardsForm::lbSelected_DblClick);
    const auto onClick = [this](QPushButton* button, auto routine) {
        connect(button, &QPushButton::clicked, this, routine);
    };
    onClick(&control<QPushButton>("cmdSelectSelected"), [this] { cmdSelectSelected_Click(); });
    onClick(&control<QPushButton>("cmdSelectAll"), [this] { cmdSelectAll_Click(); });
    onClick(&control<QPushButton>("cmdRemoveSelected"), [this] { removeEntries(false); });
    onClick(&control<QPushButton>("cmdRemoveAll"), [this] { removeEntries(true); });
    onClick(add, [this] { cmdAdd_Click(); });
    onClick(cancelButton(), [this] { unload(); });
}

void AddAwardsForm::load()
{
    m_catalogue->clear();
    mAwards = awardEntries();
    for (const ListEntry& award : mAwards)
        m_catalogue->addItem(award.text);
}

// ---- Events

void AddAwardsForm::lbAwardList_ItemCheck()
{
    const int row = m_catalogue->listIndex();
    const QString text = m_catalogue->list(row);
    if (!m_catalogue->checked(row)) {
        removeText(text);
        return;
    }
    const Hidden hidden(*m_selected);
    m_selected->insertItem(sortedRow(*m_selected, text), text);
}

void AddAwardsForm::lbSelected_DblClick()
{
    const int row = m_selected->listIndex();
    const QString text = m_selected->list(row);
    takeRow(*m_selected, row);
    uncheck(text);
}

void AddAwardsForm::cmdSelectSelected_Click()
{
    if (const int row = m_catalogue->listIndex(); row >= 0)
        m_catalogue->setChecked(row, true);
}

void AddAwardsForm::cmdSelectAll_Click()
{
    const widgets::BusyPointer busy;
    const Hidden hiddenCatalogue(*m_catalogue);
    const Hidden hiddenSelected(*m_selected);
    for (int row = 0; row < m_catalogue->listCount(); ++row)
        m_catalogue->setChecked(row, true);
}

void AddAwardsForm::cmdAdd_Click()
{
    if (addAwards())
        unload();
}

// ---- The two lists

// Two awards of the same name and type both count as the first one.
std::int16_t AddAwardsForm::awardSID(const QString& text) const
{
    const auto found = std::ranges::find(mAwards, text, &ListEntry::text);
    return found == mAwards.end() ? std::int16_t{-1} : found->sid;
}

void AddAwardsForm::removeText(const QString& text)
{
    const Hidden hidden(*m_selected);
    for (int row = 0; row < m_selected->listCount(); ++row)
        if (m_selected->list(row) == text) {
            takeRow(*m_selected, row);
            return;
        }
}

// The count is read again at each step: removing one of two selected awards with equal texts removes the other one,
// too.
void AddAwardsForm::removeEntries(bool all)
{
    if (m_selected->listCount() == 0)
        return;
    const widgets::BusyPointer busy;
    const Hidden hiddenCatalogue(*m_catalogue);
    const Hidden hiddenSelected(*m_selected);
    for (int row = 0; row < m_selected->listCount();) {
        if (!all && !m_selected->selected(row)) {
            ++row;
            continue;
        }
        const QString text = m_selected->list(row);
        takeRow(*m_selected, row);
        uncheck(text);
    }
}

void AddAwardsForm::uncheck(const QString& text)
{
    const int current = m_catalogue->listIndex();
    int row = 0;
    while (row < m_catalogue->listCount() && m_catalogue->list(row) != text)
        ++row;
    if (row < m_catalogue->listCount())
        m_catalogue->setChecked(row, false);
    m_catalogue->setListIndex(current);
}

// ---- Adding

// Each award is committed before the next one: a failure half way keeps those added so far.
bool AddAwardsForm::addAwards()
{
    const QString date = m_date->text();
    if (m_selected->listCount() == 0)
        return true;
    if (date.isEmpty()) {
        widgets::message(QStringLiteral("Please select an Assigned Date."), QStringLiteral("Missing Date"));
        m_date->setFocus();
        return false;
    }
    if (!m_shown)
        throw platform::RuntimeError(platform::ObjectNotSet);
    const widgets::BusyPointer busy;
    auto awards =
        database().openRecordset(QStringLiteral("Select * From %1 Where Insignia_SID = 0").arg(m_holder.table));
    for (int row = 0; row < m_selected->listCount(); ++row) {
        awards.addNew();
        awards.setValue(m_holder.keyField, int{m_shown->currentPerson()});
        awards.setValue(u"Insignia_SID", int{awardSID(m_selected->list(row))});
        awards.setValue(u"Date_Assigned", date);
        awards.setValue(u"Year", platform::toDate(date).date.year());
        awards.setValue(u"Month", platform::toDate(date).date.month());
        awards.update();
    }
    m_shown->ReloadAwardGrid();
    return true;
}

} // namespace orlo
