#pragma once

#include <QComboBox>

namespace orlo::widgets
{

/// A combo box that takes only rows of its list; an EditableComboBox takes any text. Rows are numbered from 0, and no
/// row is chosen until somebody chooses it.
class ComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ComboBox(QWidget* parent = nullptr);

    /// The text of the field, typed or picked.
    [[nodiscard]] QString text() const { return currentText(); }
    /// Sets the text of an editable box; chooses the equal row of the other kind, without regard to case, "" choosing
    /// none. Raises 5 there for a text that isn't in the list.
    void setText(const QString& text);

    /// The chosen row, -1 where the text isn't one chosen from the list.
    [[nodiscard]] int listIndex() const;
    /// Chooses a row and its text; -1 chooses none. Raises 5 for a row that isn't there.
    void setListIndex(int index);

    /// Empties list, choice and text; without a signal, since a refill follows.
    void removeAll();
    /// Fills the list anew under what the box shows. `chosen` is the new row of the choice, -1 where that has gone:
    /// then an editable box keeps its text and the other kind shows none. No signal is sent.
    void refill(const QStringList& rows, int chosen);
    /// The number of rows.
    [[nodiscard]] int listCount() const { return count(); }
    /// A row's text, "" for a row that isn't there.
    [[nodiscard]] QString list(int index) const { return itemText(index); }

    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

Q_SIGNALS:
    /// The text of an editable box changed, by whatever hand, but not by the choice of a row.
    void textChange();
    /// The user picked a row, the chosen one again included, or another row was chosen by the program.
    void clicked();
    /// The list is about to open and may be filled anew.
    void dropDown();

private:
    void widenList();
    void chooseShownRow();

    bool m_silent = false;
    int m_row = -1;           // the row that currentIndexChanged() named last
    bool m_signalled = false; // the change of row has already signalled the pick that is under way
};

/// A combo box that takes any text. A typed text that happens to equal a row is still typed and not picked.
class EditableComboBox : public ComboBox
{
    Q_OBJECT

public:
    explicit EditableComboBox(QWidget* parent = nullptr);
};

} // namespace orlo::widgets
