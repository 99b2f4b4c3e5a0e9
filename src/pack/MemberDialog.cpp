#include "pack/MemberDialog.h"

#include "pack/frmDenInfo.h"
#include "shell/forms/Module1.h"
#include "shell/forms/PersonName.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "widgets/EmptyText.h"
#include "widgets/ListBox.h"
#include "widgets/MessageBox.h"

namespace orlo
{

MemberDialog::MemberDialog(QString keyField) : Form(widgets::FormKind::Window), m_keyField(std::move(keyField))
{
}

void MemberDialog::bindControls(widgets::ListBox* list, QPushButton* cmdSelect, QPushButton* cmdCancel)
{
    m_list = list;
    widgets::sayWhenEmpty(*list, QStringLiteral("Nobody is left to add."));
    setDefaultButton(cmdSelect);
    setCancelButton(cmdCancel);
    connect(cmdSelect, &QPushButton::clicked, this, &MemberDialog::cmdSelect_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &MemberDialog::unload);
}

void MemberDialog::load()
{
    mDenSID = widgets::Instance<frmDenInfo>::get().GetDenSID();
    for (auto people = database().openRecordset(query()); !people.eof(); people.moveNext()) {
        m_list->addItem(lastFirstMiddle(people));
        mRowSIDs.push_back(people[m_keyField].toInt16());
    }
}

void MemberDialog::cmdSelect_Click()
{
    const widgets::BusyPointer busy;
    for (int row = 0; row < m_list->listCount(); ++row)
        if (m_list->selected(row))
            assign(mRowSIDs[static_cast<std::size_t>(row)]);
    unload();
}

} // namespace orlo
