#pragma once

#include <QComboBox>

namespace orlo::widgets
{

/// A combo box restricted to its rows; EditableComboBox accepts any text. Rows count from 0, and none is chosen at
/// first.
class ComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ComboBox(QWidget* parent = nullptr);

    /// The field's text, typed or picked.
    [[nodiscard]] QString text() const { return currentText(); }
    /// Sets the text of an editable box. Otherwise chooses the row with this text, ignoring case, "" choosing none;
    /// raises 5 if there is no such row.
    void setText(const QString& text);

    /// The chosen row; -1 if the text wasn't chosen from the list.
    [[nodiscard]] int listIndex() const;
    /// Chooses a row and its text; -1 chooses none. Raises 5 if there is no such row.
    void setListIndex(int index);

    /// Clears list, choice and text, without a signal, since a refill follows.
    void removeAll();
    /// Replaces the rows without disturbing what is shown. `chosen` is the chosen row's new position, or -1 if it is
    /// gone: then an editable box keeps its text and the other kind shows none. Emits nothing.
    void refill(const QStringList& rows, int chosen);
    /// The number of rows.
    [[nodiscard]] int listCount() const { return count(); }
    /// A row's text; "" if there is no such row.
    [[nodiscard]] QString list(int index) const { return itemText(index); }

    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

Q_SIGNALS:
    /// Emitted when an editable box's text changes, by the user or in code, but not when a row is chosen.
    void textChange();
    /// Emitted when the user picks a row, even the chosen one, or when code chooses another row.
    void clicked();
    /// Emitted before the list opens; it may be refilled.
    void dropDown();

private:
    void widenList();
    void chooseShownRow();

    bool m_silent = false;
    int m_row = -1;           // the last row of currentIndexChanged()
    bool m_signalled = false; // that change has already signalled the pick in progress
};

/// A combo box that accepts any text. A typed text that equals a row doesn't choose that row.
class EditableComboBox : public ComboBox
{
    Q_OBJECT

public:
    explicit EditableComboBox(QWidget* parent = nullptr);
};

} // namespace orlo::widgets
