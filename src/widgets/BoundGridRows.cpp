// What the grid does with several rows at once.

#include "platform/RuntimeError.h"
#include "widgets/BoundGrid.h"
#include "widgets/BoundGridModel.h"
#include "widgets/MessageBox.h"
#include "widgets/TextBox.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QScopedValueRollback>

#include <algorithm>

namespace orlo::widgets
{

// From the last one up, so that the remaining numbers stay valid.
void BoundGrid::deleteRows(QModelIndexList rows)
{
    std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.row() > b.row(); });
    QList<int> numbers;
    for (const QModelIndex& index : std::as_const(rows))
        if (index.row() < m_model->recordCount())
            numbers.append(index.row());
    if (numbers.isEmpty())
        return m_model->cancel(); // the row of a new record
    const QString what = numbers.size() == 1 ? QStringLiteral("Delete the marked row?")
                                             : QStringLiteral("Delete the %1 marked rows?").arg(numbers.size());
    if (!ask(what, caption(), Preset::No))
        return;
    m_model->cancel();
    for (const int number : std::as_const(numbers)) {
        try {
            m_model->removeRecord(number);
        } catch (const platform::RuntimeError& error) {
            const QScopedValueRollback guard(m_committing, true);
            message(error.description(), caption());
            return;
        }
    }
}

// Copies cells as lines with tabs, as spreadsheets do.
void BoundGrid::copyCells() const
{
    QModelIndexList cells = selectionModel()->selectedIndexes();
    std::sort(cells.begin(), cells.end());
    QString text;
    for (int row = -1; const QModelIndex& cell : std::as_const(cells)) {
        if (isColumnHidden(cell.column()))
            continue;
        if (row >= 0)
            text += cell.row() == row ? u'\t' : u'\n';
        row = cell.row();
        text += cell.data().toString();
    }
    if (!cells.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

// Pastes from the current cell to the right and down; a refused row ends it.
void BoundGrid::pasteCells()
{
    const QModelIndex first = currentIndex();
    const QMimeData* held = QGuiApplication::clipboard()->mimeData();
    if (!held || !held->hasFormat(QStringLiteral("text/plain")))
        return; // a picture would empty the cell
    QString text = held->text();
    if (text.endsWith(u'\n'))
        text.chop(1);
    const QStringList lines = text.split(u'\n');
    for (int row = first.row(); first.isValid() && row < first.row() + int(lines.size()); ++row) {
        if (row >= m_model->rowCount() || (m_model->openRow() >= 0 && m_model->openRow() != row && !writeOpenRow()))
            return;
        int column = first.column();
        for (const QString& cell : lines[row - first.row()].split(u'\t')) {
            while (isColumnHidden(column))
                ++column;
            if (column < m_model->columnCount())
                m_model->setData(m_model->index(row, column++), oneLine(cell), Qt::EditRole);
        }
        setCurrentIndex(m_model->index(row, first.column()));
    }
}

} // namespace orlo::widgets
