#pragma once

#include <QAbstractTableModel>

#include <vector>

namespace orlo::widgets
{

/// The texts of a TextGrid, header row included. While notices are held back views keep seeing the number of rows that
/// they knew; release() then tells them in one step what became of it.
class TextGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Rows of the grid, the header row being row 0.
    [[nodiscard]] int gridRows() const { return int(m_texts.size()); }
    /// The number of columns.
    [[nodiscard]] int gridCols() const { return m_cols; }
    /// Sets the number of rows; new ones are empty.
    void setGridRows(int rows);
    /// Sets the number of columns; new ones are empty.
    void setGridCols(int cols);
    /// Takes a row out.
    void removeGridRow(int row);
    /// The text of a cell.
    [[nodiscard]] const QString& text(int row, int col) const { return m_texts[std::size_t(row)][std::size_t(col)]; }
    /// Sets the text of a cell.
    void setText(int row, int col, const QString& text);
    /// Aligns the texts of a column.
    void setAlignment(int col, Qt::Alignment alignment);

    /// From here to release() views hear of no change.
    void hold() { m_held = true; }
    /// Tells views of all that changed since hold().
    void release();

private:
    using Row = std::vector<QString>;
    void publishRows();

    int m_cols = 2;
    int m_shownRows = 0; // what views were told, the header row left out
    bool m_held = false;
    bool m_textsChanged = false; // while held
    std::vector<Row> m_texts = std::vector<Row>(1, Row(2));
    std::vector<Qt::Alignment> m_alignments = std::vector<Qt::Alignment>(2, Qt::AlignLeft);
};

} // namespace orlo::widgets
