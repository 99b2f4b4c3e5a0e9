#pragma once

#include <QTableView>

#include <vector>

namespace orlo::widgets
{

class TextGridModel;

/// A plain grid of texts. Row 0 is the fixed header row, column 0 a narrow fixed column for marks; both count in all
/// row and column numbers. Whole rows are selected, nothing is edited. A cell outside raises 9 everywhere.
class TextGrid : public QTableView
{
    Q_OBJECT

public:
    explicit TextGrid(QWidget* parent = nullptr);
    ~TextGrid() override;

    /// The number of rows, including the header row.
    [[nodiscard]] int rows() const;
    /// Adds empty rows at the end or removes rows there. Raises 5 below 1.
    void setRows(int count);
    /// The number of columns.
    [[nodiscard]] int cols() const;
    /// Adds empty columns at the right or removes columns there. Raises 5 below 1.
    void setCols(int count);

    /// The text of a cell.
    [[nodiscard]] QString text(int row, int col) const;
    /// Sets the text of a cell.
    void setText(int row, int col, const QString& text);

    /// The current row, 0 for none.
    [[nodiscard]] int row() const;
    /// Makes a row current.
    void setRow(int row);

    /// Adds an empty row at the end and returns its number.
    int addRow();
    /// Removes a row. Raises 5 for the last one below the header: setRows(1) empties a grid.
    void removeRow(int row);

    /// A column's minimum width in twips; marks, each word of the heading and the column's texts always fit. 0 hides
    /// it.
    void setColWidth(int col, int twips);
    /// Makes room in a column for a text it may have to hold, at any font size.
    void fitCol(int col, const QString& text);
    /// The heading's minimum height in twips; its texts always fit.
    void setHeadingHeight(int twips);
    /// Aligns the texts of a column.
    void setColAlignment(int col, Qt::Alignment alignment);
    /// Sets the column that takes the remaining width; only there long texts are cut off.
    void setStretchColumn(int col);
    /// That column, -1 for none.
    [[nodiscard]] int stretchColumn() const { return m_stretched; }

    /// Stops repainting while the grid is filled. Calls nest; the last setRedraw(true) shows all changes at once.
    void setRedraw(bool on);

Q_SIGNALS:
    /// Emitted after a double click on a row below the header, or Space; the row is current.
    void rowDoubleClicked();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                                       const QEvent* event) const override;
    /// Gives the remaining width to the column that takes it.
    virtual void stretch();
    void applyHeights();

private:
    void requireRow(int row) const;
    void requireCol(int col) const;
    void makeCurrent(int row);
    [[nodiscard]] int minimumWidthOf(int col) const;
    [[nodiscard]] int widthFor(const QString& text) const;
    void widen(int col, int width);
    void fitHeadings();
    void fitTexts(const QModelIndex& first, const QModelIndex& last);
    void fitAll();

    TextGridModel* m_model;
    std::vector<int> m_widths;      // twips
    std::vector<QString> m_samples; // the widest texts that columns must have room for
    int m_stretched = -1;
    int m_headingHeight = 0;  // twips, minimum
    bool m_heightsDue = true; // headings or their room changed since the header's height was computed
    int m_holds = 0;
    int m_heldRow = 0; // the current row while repainting is stopped
};

/// Stops a grid's repainting while it lives.
class RedrawHold
{
public:
    explicit RedrawHold(TextGrid& grid) : m_grid(grid) { grid.setRedraw(false); }
    ~RedrawHold() { m_grid.setRedraw(true); }
    RedrawHold(const RedrawHold&) = delete;
    RedrawHold& operator=(const RedrawHold&) = delete;

private:
    TextGrid& m_grid;
};

} // namespace orlo::widgets
