#include "pack/frmPackDenPositions.h"

#include "shell/forms/Module1.h"
#include "ui_frmPackDenPositions.h"
#include "widgets/BoundGrid.h"
#include "widgets/DataControl.h"

namespace orlo
{

namespace
{

constexpr int TitleColumn = 0;

// The layout of a list of titles if there is no layout file.
widgets::GridLayout titleLayout(const QString& field)
{
    return {{{QStringLiteral("Position Title"), field, 4200},
             {QStringLiteral("Sort Rank"), QStringLiteral("Sort_Order"), 1100, Qt::AlignRight}}};
}

// Reads a list again in the order of its record source, and keeps the marked title marked.
void reload(widgets::DataControl& control, widgets::BoundGrid& grid, widgets::StoredLayout& layout)
{
    const QString title = grid.columns().isEmpty() ? QString() : grid.columnText(TitleColumn);
    const int row = grid.row();
    control.refresh();
    grid.applyLayout(layout.read(gAppPath));
    const int found = grid.findRow(TitleColumn, title);
    grid.setRow(found >= 0 ? found : row);
}

} // namespace

frmPackDenPositions::frmPackDenPositions()
    : Form(widgets::FormKind::Child), ui(std::make_unique<Ui::frmPackDenPositions>()),
      dcDenPositions(new widgets::DataControl(this)), dcPackPositions(new widgets::DataControl(this)),
      m_denLayout(QStringLiteral("\\Den_Titles.grd"), titleLayout(QStringLiteral("Den_Title"))),
      m_packLayout(QStringLiteral("\\Pack_Titles.grd"), titleLayout(QStringLiteral("Pack_Titles")))
{
    ui->setupUi(this);
    dcDenPositions->setObjectName(QStringLiteral("dcDenPositions"));
    dcPackPositions->setObjectName(QStringLiteral("dcPackPositions"));
    ui->dbgDenPositions->setDataControl(dcDenPositions);
    ui->dbgPackPositions->setDataControl(dcPackPositions);
    for (widgets::BoundGrid* grid : {ui->dbgDenPositions, ui->dbgPackPositions})
        grid->setStretchColumn(TitleColumn);
    connect(ui->cmdRefreshDenPostions, &QPushButton::clicked, this, &frmPackDenPositions::refreshDenTitles);
    connect(ui->cmdRefreshPackPostions, &QPushButton::clicked, this, &frmPackDenPositions::refreshPackTitles);
    connect(ui->Command1, &QPushButton::clicked, this, &frmPackDenPositions::close);
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
    reload(*dcDenPositions, *ui->dbgDenPositions, m_denLayout);
}

void frmPackDenPositions::refreshPackTitles()
{
    reload(*dcPackPositions, *ui->dbgPackPositions, m_packLayout);
}

} // namespace orlo
