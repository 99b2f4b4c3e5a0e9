#pragma once

#include <QListWidget>

namespace orlo::widgets
{

/// A list box. Rows are numbered from 0; no row is the current one until somebody makes it so.
class ListBox : public QListWidget
{
    Q_OBJECT

public:
    explicit ListBox(QWidget* parent = nullptr);

    /// Takes a row out; where it was the current one, none is. Raises 5 for a row that isn't there.
    void removeItem(int index);
    /// The number of rows.
    [[nodiscard]] int listCount() const { return count(); }
    /// A row's text, "" for a row that isn't there.
    [[nodiscard]] QString list(int index) const;

    /// The current row, -1 for none.
    [[nodiscard]] int listIndex() const { return currentRow(); }
    /// Makes a row the current one, -1 none. Raises 5 for a row that isn't there.
    void setListIndex(int index);

    /// Whether a row is highlighted, which in a box for several rows more than one can be. Raise 5 as above.
    [[nodiscard]] bool selected(int index) const;
    void setSelected(int index, bool on);

Q_SIGNALS:
    /// Another row became the current one, by the user or by the program, or the user clicked the current one.
    void clicked();
    /// After a double click on a row.
    void doubleClicked();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] QListWidgetItem& row(int index) const;
    void highlightCurrent();

    bool m_silent = false;
};

} // namespace orlo::widgets
