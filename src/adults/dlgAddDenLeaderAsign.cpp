#include "adults/dlgAddDenLeaderAsign.h"

#include "adults/frmAdults.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "ui_dlgAddDenLeaderAsign.h"

namespace orlo
{

namespace
{

void keepRoom(QWidget& control)
{
    QSizePolicy policy = control.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    control.setSizePolicy(policy);
}

} // namespace

dlgAddDenLeaderAsign::dlgAddDenLeaderAsign()
    : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgAddDenLeaderAsign>())
{
    ui->setupUi(this);
    setDefaultButton(ui->cmdSave);
    setCancelButton(ui->cmdCancel);
    for (QWidget* control : std::initializer_list<QWidget*>{ui->cmbDenTitles, ui->lblPackTitle})
        keepRoom(*control); // the buttons don't move when the kind changes
    connect(ui->optDenPosition, &widgets::OptionButton::selected, this, [this] { showKind(true); });
    connect(ui->optPackPosition, &widgets::OptionButton::selected, this, [this] { showKind(false); });
    connect(ui->cmbDen, &widgets::ComboBox::clicked, this, [this] { mDenIndex = ui->cmbDen->listIndex(); });
    for (widgets::ComboBox* titles : {ui->cmbDenTitles, ui->cmbPackTitles})
        setLeaveCheck(titles, [this, titles] {
            if (!titles->text().isEmpty())
                ui->cmdSave->setEnabled(true);
            return true;
        });
    connect(ui->cmdSave, &QPushButton::clicked, this, &dlgAddDenLeaderAsign::cmdSave_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &dlgAddDenLeaderAsign::unload);
}

dlgAddDenLeaderAsign::~dlgAddDenLeaderAsign() = default;

// A pack title without a rank fails here; a den title without one counts as the lowest.
void dlgAddDenLeaderAsign::load()
{
    using namespace leaderLists;
    mAdultSID = widgets::Instance<frmAdults>::get().GetAdultSID();
    mDenSIDs = addDens(*ui->cmbDen, mAdultSID, QStringLiteral("Order By Den_Number"));
    mDenRanks = addTitles(*ui->cmbDenTitles, denTitles(), Unranked::Last);
    mPackRanks = addTitles(*ui->cmbPackTitles, packTitles(), Unranked::Fails);
    showKind(true);
}

void dlgAddDenLeaderAsign::showKind(bool den)
{
    for (QWidget* control : std::initializer_list<QWidget*>{ui->lblDen, ui->cmbDen, ui->lblDenTitle, ui->cmbDenTitles})
        control->setVisible(den);
    for (QWidget* control : std::initializer_list<QWidget*>{ui->lblPackTitle, ui->cmbPackTitles})
        control->setVisible(!den);
    ui->cmdSave->setEnabled(den ? !mDenSIDs.empty() && !mDenRanks.empty() : !mPackRanks.empty());
}

void dlgAddDenLeaderAsign::cmdSave_Click()
{
    if (ui->optDenPosition->isChecked())
        addDenPosition();
    else
        addPackPosition();
}

// The set contains no adult's rows; it only takes the new one.
void dlgAddDenLeaderAsign::addDenPosition()
{
    if (ui->cmbDen->text().isEmpty())
        return;
    auto positions =
        database().openRecordset(QStringLiteral("Select * from Leader_Den_Assignments Where Adult_SID = 0 "));
    positions.addNew();
    positions.setValue(u"Den_SID", int{leaderLists::entry(mDenSIDs, mDenIndex)});
    positions.setValue(u"Adult_SID", int{mAdultSID});
    positions.setValue(u"Den_Title", ui->cmbDenTitles->text());
    positions.setValue(u"Sort_Order", int{leaderLists::entry(mDenRanks, ui->cmbDenTitles->listIndex())});
    positions.update();
    finish();
}

void dlgAddDenLeaderAsign::addPackPosition()
{
    const QString title = ui->cmbPackTitles->text();
    if (title.isEmpty())
        return;
    database().execute(QStringLiteral(" Insert Into Leader_Pack_Assn (Position_Title, Leader_SID,  Sort_Order ) "
                                      "Values ( '%1', %2, %3 )")
                           .arg(title, QString::number(mAdultSID),
                                QString::number(leaderLists::entry(mPackRanks, ui->cmbPackTitles->listIndex()))));
    finish();
}

void dlgAddDenLeaderAsign::finish()
{
    widgets::Instance<frmAdults>::get().PopulateDenAssignments();
    unload();
}

} // namespace orlo
