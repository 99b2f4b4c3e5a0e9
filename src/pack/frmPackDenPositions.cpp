#include "pack/frmPackDenPositions.h"

#include "shell/forms/Module1.h"
#include "ui_frmPackDenPositions.h"
#include "widgets/BoundGrid.h"
#include "widgets/DataControl.h"

#include <QHeaderView>

namespace orlo
{

namespace
{

// Reads a list anew, in the order of its record source.
void reload(widgets::DataControl& control, widgets::BoundGrid& grid, const QString& layoutName)
{
    control.refresh();
    grid.applyLayout(widgets::GridLayout::load(gAppPath + layoutName));
    // Room to spare goes to the titles.
    grid.horizontalHeader()->setStretchLastSection(false);
    grid.horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
}

} // namespace

frmPackDenPositions::frmPackDenPositions()
    : Form(widgets::FormKind::Child), ui(std::make_unique<Ui::frmPackDenPositions>()),
      dcDenPositions(new widgets::DataControl(this)), dcPackPositions(new widgets::DataControl(this))
{
    ui->setupUi(this);
    dcDenPositions->setObjectName(QStringLiteral("dcDenPositions"));
    dcPackPositions->setObjectName(QStringLiteral("dcPackPositions"));
    ui->dbgDenPositions->setDataControl(dcDenPositions);
    ui->dbgPackPositions->setDataControl(dcPackPositions);
    connect(ui->cmdRefreshDenPostions, &QPushButton::clicked, this, &frmPackDenPositions::refreshDenTitles);
    connect(ui->cmdRefreshPackPostions, &QPushButton::clicked, this, &frmPackDenPositions::refreshPackTitles);
    connect(ui->Command1, &QPushButton::clicked, this, &frmPackDenPositions::Command1_Click);
}

frmPackDenPositions::~frmPackDenPositions() = default;

void frmPackDenPositions::load()
{
    dcDenPositions->setDatabase(database);
    dcPackPositions->setDatabase(database);
    dcDenPositions->setRecordSource(QStringLiteral("Select * from Den_Titles Order By Sort_Order,  Den_Title "));
    dcPackPositions->setRecordSource(QStringLiteral("Select * from Pack_Positions Order By Sort_Order, Pack_Titles"));
    refreshDenTitles();
    refreshPackTitles();
}

void frmPackDenPositions::refreshDenTitles()
{
    reload(*dcDenPositions, *ui->dbgDenPositions, QStringLiteral("\\Den_Titles.grd"));
}

void frmPackDenPositions::refreshPackTitles()
{
    reload(*dcPackPositions, *ui->dbgPackPositions, QStringLiteral("\\Pack_Titles.grd"));
}

// The access key leaves the focus in the grid: a row that is refused keeps the form open, as it does for the mouse.
void frmPackDenPositions::Command1_Click()
{
    if (ui->dbgDenPositions->commitRow() && ui->dbgPackPositions->commitRow())
        unload();
}

} // namespace orlo
