#pragma once

#include <QAbstractTableModel>

#include <vector>

namespace orlo::widgets
{

/// The texts of a TextGrid, including the header row. While notifications are held back, views keep seeing the old
/// number of rows; release() then announces all changes in one step.
class TextGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The number of rows; row 0 is the header row.
    [[nodiscard]] int gridRows() const { return int(m_texts.size()); }
    /// The number of columns.
    [[nodiscard]] int gridCols() const { return m_cols; }
    /// Sets the number of rows; new ones are empty.
    void setGridRows(int rows);
    /// Sets the number of columns; new ones are empty.
    void setGridCols(int cols);
    /// Removes a row.
    void removeGridRow(int row);
    /// The text of a cell.
    [[nodiscard]] const QString& text(int row, int col) const { return m_texts[std::size_t(row)][std::size_t(col)]; }
    /// Sets the text of a cell.
    void setText(int row, int col, const QString& text);
    /// Aligns the texts of a column.
    void setAlignment(int col, Qt::Alignment alignment);

    /// Until release(), views aren't notified of changes.
    void hold() { m_held = true; }
    /// Notifies views of all changes since hold().
    void release();

private:
    using Row = std::vector<QString>;
    void publishRows();

    int m_cols = 2;
    int m_shownRows = 0; // rows announced to views, without the header row
    bool m_held = false;
    bool m_textsChanged = false; // while held
    std::vector<Row> m_texts = std::vector<Row>(1, Row(2));
    std::vector<Qt::Alignment> m_alignments = std::vector<Qt::Alignment>(2, Qt::AlignLeft);
};

} // namespace orlo::widgets
