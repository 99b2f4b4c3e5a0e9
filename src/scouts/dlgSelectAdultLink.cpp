#include "scouts/dlgSelectAdultLink.h"

#include "scouts/frmScouts.h"
#include "shell/forms/Module1.h"
#include "shell/forms/PersonName.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "ui_dlgSelectAdultLink.h"
#include "widgets/EmptyText.h"

namespace orlo
{

dlgSelectAdultLink::dlgSelectAdultLink()
    : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgSelectAdultLink>())
{
    ui->setupUi(this);
    widgets::sayWhenEmpty(*ui->lstDenLeaders, QStringLiteral("This den has no leader yet."));
    setDefaultButton(ui->cmdSelect);
    setCancelButton(ui->cmdCancel);
    connect(ui->cmdSelect, &QPushButton::clicked, this, [this] {
        const int row = ui->lstDenLeaders->listIndex();
        answer(row < 0 ? std::int16_t{0} : mAdultSIDs[static_cast<std::size_t>(row)]);
    });
    connect(ui->cmdCancel, &QPushButton::clicked, this, [this] { answer(0); });
}

dlgSelectAdultLink::~dlgSelectAdultLink() = default;

void dlgSelectAdultLink::load()
{
    auto leaders = database().openRecordset(
        QStringLiteral(
            "Select * From Scouts_Parents_As_DenLeader Where Den_SID = %1 Order By First_Name, MI, Last_Name")
            .arg(widgets::Instance<frmScouts>::get().GetDenSIDPub()));
    for (; !leaders.eof(); leaders.moveNext()) {
        ui->lstDenLeaders->addItem(leaders[u"First_Name"].textOrEmpty() + middlePart(leaders[u"MI"].textOrEmpty()) +
                                   leaders[u"Last_Name"].textOrEmpty());
        mAdultSIDs.push_back(leaders[u"Adult_SID"].toInt16());
    }
}

void dlgSelectAdultLink::answer(std::int16_t adult)
{
    widgets::Instance<frmScouts>::get().SetParentDenLeaderSID(adult);
    unload();
}

} // namespace orlo
