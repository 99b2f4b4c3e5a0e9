#pragma once

#include <QListWidget>

namespace orlo::widgets
{

/// A list box. Rows count from 0, and none is current at first.
class ListBox : public QListWidget
{
    Q_OBJECT

public:
    explicit ListBox(QWidget* parent = nullptr);

    /// Removes a row; if it was the current one, none is. Raises 5 if there is no such row.
    void removeItem(int index);
    /// The number of rows.
    [[nodiscard]] int listCount() const { return count(); }
    /// A row's text, "" if there is no such row.
    [[nodiscard]] QString list(int index) const;

    /// The current row, -1 for none.
    [[nodiscard]] int listIndex() const { return currentRow(); }
    /// Makes a row current, -1 none. Raises 5 if there is no such row.
    void setListIndex(int index);

    /// Whether a row is highlighted; with multiple selection several can be. Raises 5 as above.
    [[nodiscard]] bool selected(int index) const;
    void setSelected(int index, bool on);

Q_SIGNALS:
    /// Emitted when another row became current, by the user or in code, or when the user clicked the current one.
    void clicked();
    /// Emitted after a double click on a row.
    void doubleClicked();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] QListWidgetItem& row(int index) const;
    void highlightCurrent();

    bool m_silent = false;
};

} // namespace orlo::widgets
