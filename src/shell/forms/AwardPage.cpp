#include "shell/forms/AwardPage.h"

#include "shell/forms/Module1.h"
#include "shell/forms/PersonName.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "widgets/TextGrid.h"

#include <QLabel>

namespace orlo
{

namespace
{
constexpr int DateColumn = 1;
constexpr int HeadingHeight = 250; // twips
} // namespace

AwardPage::AwardPage(widgets::TextGrid* grid, QLabel* name, QLabel* noteName, FillRow fillRow)
    : m_grid(grid), m_name(name), m_noteName(noteName), m_fillRow(std::move(fillRow))
{
    for (QLabel* label : {m_name, m_noteName})
        label->setTextFormat(Qt::PlainText); // names may look like markup
}

void AwardPage::setUp(const std::vector<Column>& columns, int stretched)
{
    cut();
    m_grid->setHeadingHeight(HeadingHeight);
    for (int col = 0; const Column& column : columns) {
        m_grid->setColWidth(col, column.width);
        m_grid->setColAlignment(col, column.alignment);
        m_grid->setText(0, col++, column.heading);
    }
    m_grid->setStretchColumn(stretched);
    m_grid->fitCol(DateColumn, QStringLiteral("12/30/2000"));
}

void AwardPage::setName(const QString& name)
{
    m_name->setText(name);
    m_noteName->setText(name.trimmed());
}

void AwardPage::cut()
{
    m_grid->setRows(1);
    m_noteName->clear();
}

void AwardPage::addAwards(const QString& statement)
{
    const widgets::RedrawHold hold(*m_grid);
    for (auto awards = database().openRecordset(statement); !awards.eof(); awards.moveNext())
        m_fillRow(*m_grid, m_grid->addRow(), awards);
}

void AwardPage::reload(const QString& name, const QString& statement)
{
    const widgets::RedrawHold hold(*m_grid);
    cut();
    setName(name);
    addAwards(statement);
}

QString awardText(const store::Recordset& award)
{
    return rightTrimmed(award[u"Insignia_Name"].textOrEmpty()) + u' ' + award[u"Insignia_Type"].textOrEmpty();
}

} // namespace orlo
