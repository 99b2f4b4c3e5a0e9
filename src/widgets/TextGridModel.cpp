#include "widgets/TextGridModel.h"

#include "widgets/Accessible.h"

namespace orlo::widgets
{

int TextGridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_shownRows;
}

int TextGridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_cols;
}

QVariant TextGridModel::data(const QModelIndex& index, int role) const
{
    const int row = index.row() + 1;
    if (!index.isValid() || row >= gridRows()) // a removed row, before the removal was announced
        return {};
    if (role == Qt::DisplayRole)
        return text(row, index.column());
    if (role == Qt::AccessibleDescriptionRole) { // the rest of the row, its mark first
        const QString others = otherCells(index, [this](int column) { return !text(0, column).isEmpty(); });
        const bool marked = index.column() != 0 && !text(row, 0).isEmpty();
        return marked ? QStringLiteral("marked") + (others.isEmpty() ? QString() : QStringLiteral(", ") + others)
                      : others;
    }
    if (role == Qt::TextAlignmentRole) {
        const auto alignment = index.column() == 0 ? Qt::AlignHCenter : m_alignments[std::size_t(index.column())];
        return QVariant::fromValue(alignment | Qt::AlignVCenter);
    }
    return {};
}

QVariant TextGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_cols)
        return {};
    if (role == Qt::DisplayRole)
        return text(0, section);
    if (role == Qt::AccessibleTextRole && text(0, section).isEmpty())
        return section == 0 ? QStringLiteral("Mark") : QStringLiteral("Key");
    if (role == Qt::AccessibleTextRole)
        return text(0, section);
    if (role == Qt::TextAlignmentRole)
        return int(m_alignments[std::size_t(section)] | Qt::AlignVCenter) | int(Qt::TextWordWrap);
    return {};
}

void TextGridModel::setGridRows(int rows)
{
    m_texts.resize(std::size_t(rows), Row(std::size_t(m_cols)));
    if (m_held)
        m_textsChanged = true; // removed and re-added rows lost their texts
    else
        publishRows();
}

void TextGridModel::setGridCols(int cols)
{
    if (cols == m_cols)
        return;
    const bool more = cols > m_cols;
    if (more)
        beginInsertColumns({}, m_cols, cols - 1);
    else
        beginRemoveColumns({}, cols, m_cols - 1);
    m_cols = cols;
    m_alignments.resize(std::size_t(cols), Qt::AlignLeft);
    for (Row& row : m_texts)
        row.resize(std::size_t(cols));
    if (more)
        endInsertColumns();
    else
        endRemoveColumns();
}

void TextGridModel::removeGridRow(int row)
{
    if (!m_held)
        beginRemoveRows({}, row - 1, row - 1);
    m_texts.erase(m_texts.begin() + row);
    if (m_held) {
        m_textsChanged = true;
        return;
    }
    --m_shownRows;
    endRemoveRows();
}

void TextGridModel::setText(int row, int col, const QString& text)
{
    QString& cell = m_texts[std::size_t(row)][std::size_t(col)];
    if (cell == text)
        return;
    cell = text;
    if (row == 0)
        Q_EMIT headerDataChanged(Qt::Horizontal, col, col);
    else if (m_held)
        m_textsChanged = true;
    else
        Q_EMIT dataChanged(index(row - 1, col), index(row - 1, col));
}

void TextGridModel::setAlignment(int col, Qt::Alignment alignment)
{
    m_alignments[std::size_t(col)] = alignment;
    Q_EMIT headerDataChanged(Qt::Horizontal, col, col);
    if (m_shownRows > 0)
        Q_EMIT dataChanged(index(0, col), index(m_shownRows - 1, col), {Qt::TextAlignmentRole});
}

void TextGridModel::release()
{
    m_held = false;
    publishRows();
    if (m_textsChanged && m_shownRows > 0)
        Q_EMIT dataChanged(index(0, 0), index(m_shownRows - 1, m_cols - 1));
    m_textsChanged = false;
}

void TextGridModel::publishRows()
{
    const int rows = gridRows() - 1;
    if (rows > m_shownRows) {
        beginInsertRows({}, m_shownRows, rows - 1);
        m_shownRows = rows;
        endInsertRows();
    } else if (rows < m_shownRows) {
        beginRemoveRows({}, rows, m_shownRows - 1);
        m_shownRows = rows;
        endRemoveRows();
    }
}

} // namespace orlo::widgets
