#include "adults/dlgAddDenLeaderAsignEdit.h"

#include "adults/frmAdults.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "ui_dlgAddDenLeaderAsignEdit.h"

namespace orlo
{

dlgAddDenLeaderAsignEdit::dlgAddDenLeaderAsignEdit()
    : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgAddDenLeaderAsignEdit>())
{
    ui->setupUi(this);
    setDefaultButton(ui->cmdSave);
    setCancelButton(ui->cmdCancel);
    connect(ui->cmbDen, &widgets::ComboBox::clicked, this, [this] {
        mDenIndex = ui->cmbDen->listIndex();
        mDenChanged = true;
    });
    connect(ui->cmdSave, &QPushButton::clicked, this, &dlgAddDenLeaderAsignEdit::cmdSave_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &dlgAddDenLeaderAsignEdit::unload);
}

dlgAddDenLeaderAsignEdit::~dlgAddDenLeaderAsignEdit() = default;

// The initial texts of the boxes don't stand for rows of their lists.
void dlgAddDenLeaderAsignEdit::load()
{
    using namespace leaderLists;
    auto& adults = widgets::Instance<frmAdults>::get();
    mAdultSID = adults.GetAdultSID();
    mOldDenSID = adults.GetDenText(mDenText, mTitle, mPackKey);
    const bool inDen = mOldDenSID != 0;
    ui->cmbDenTitles->setText(mTitle);
    if (inDen) {
        ui->cmbDen->setText(mDenText);
        mDenSIDs = addDens(*ui->cmbDen, mAdultSID, QString());
    } else {
        ui->lblDen->hide();
        ui->cmbDen->hide();
        ui->lblDen0rPack->setText(QStringLiteral("Pack Position:"));
    }
    mTitleRanks = addTitles(*ui->cmbDenTitles, inDen ? denTitles() : packTitles(), Unranked::Last);
}

void dlgAddDenLeaderAsignEdit::cmdSave_Click()
{
    if (mOldDenSID < 1) {
        updatePackPosition();
        return;
    }
    if (mDenChanged)
        if (const std::int16_t den = leaderLists::entry(mDenSIDs, mDenIndex); den != mOldDenSID) {
            movePosition(den);
            return;
        }
    changeTitle();
}

void dlgAddDenLeaderAsignEdit::updatePackPosition()
{
    if (const int row = ui->cmbDenTitles->listIndex(); row >= 0) {
        database().execute(
            QStringLiteral("Update Leader_Pack_Assn Set Position_Title = '%1', Sort_Order = %2 Where "
                           "Leader_Pack_Assn = %3")
                .arg(ui->cmbDenTitles->text(), QString::number(leaderLists::entry(mTitleRanks, row)), mPackKey));
        widgets::Instance<frmAdults>::get().PopulateDenAssignments();
    }
    unload();
}

QString dlgAddDenLeaderAsignEdit::heldPosition() const
{
    return QStringLiteral("Select * from Leader_Den_Assignments  Where Adult_SID = %1 and Den_SID = %2")
        .arg(mAdultSID)
        .arg(mOldDenSID);
}

// Moving a position leaves it without a rank.
void dlgAddDenLeaderAsignEdit::movePosition(std::int16_t den)
{
    auto positions = database().openRecordset(heldPosition());
    if (positions.recordCount() > 0) {
        positions.moveFirst();
        positions.remove();
    }
    positions.addNew();
    positions.setValue(u"Den_SID", int{den});
    positions.setValue(u"Adult_SID", int{mAdultSID});
    positions.setValue(u"Den_Title", ui->cmbDenTitles->text());
    positions.update();
    widgets::Instance<frmAdults>::get().PopulateDenAssignments();
    unload();
}

void dlgAddDenLeaderAsignEdit::changeTitle()
{
    if (ui->cmbDen->text().isEmpty())
        return;
    if (auto positions = database().openRecordset(heldPosition()); positions.recordCount() > 0) {
        positions.moveFirst();
        positions.edit();
        positions.setValue(u"Den_Title", ui->cmbDenTitles->text());
        positions.setValue(u"Sort_Order", int{leaderLists::entry(mTitleRanks, ui->cmbDenTitles->listIndex())});
        positions.update();
        widgets::Instance<frmAdults>::get().PopulateDenAssignments();
    }
    unload();
}

} // namespace orlo
