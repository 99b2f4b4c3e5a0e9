#pragma once

#include <QString>

#include <functional>

class QLineEdit;
class QPlainTextEdit;
class QWidget;

namespace orlo::store
{
class Value;
}

namespace orlo::widgets
{
class CheckBox;
class ComboBox;
class OptionButton;
} // namespace orlo::widgets

namespace orlo
{

/// A field of a record and its control. Null shows as an empty text, "No" or off.
struct RecordField {
    using Changed = std::function<void()>;

    QStringView name;
    QWidget* control;
    std::function<void(const store::Value&)> show; ///< shows a stored value
    std::function<store::Value()> value;           ///< the control's value, for a save
    std::function<void()> clear;                   ///< sets the value of a new record
    std::function<void(const Changed&)> tell;      ///< registers a function for every change, by the user or by code
};

/// A box that shows the stored value as a text, and converts a typed one. A stored text longer than the box's limit is
/// kept unchanged until somebody touches the box.
[[nodiscard]] RecordField boxField(QStringView name, QLineEdit* box, std::function<QString(const store::Value&)> text,
                                   std::function<store::Value()> typed);
/// The text, untrimmed. A multi-line text that nobody touched keeps its stored line ends and blanks.
[[nodiscard]] RecordField textField(QStringView name, QLineEdit* box);
[[nodiscard]] RecordField textField(QStringView name, QPlainTextEdit* box);
/// The text of a combo box.
[[nodiscard]] RecordField textField(QStringView name, widgets::ComboBox* list);
/// The number at the start of the text; 0 if there is none.
[[nodiscard]] RecordField numberField(QStringView name, QLineEdit* box);
/// The same, with digits only.
[[nodiscard]] RecordField wholeNumberField(QStringView name, QLineEdit* box);
/// A date; an empty box gives Null.
[[nodiscard]] RecordField dateField(QStringView name, QLineEdit* box);
/// A date field in which a special date, never shown, means that there is none.
[[nodiscard]] RecordField birthDateField(QStringView name, QLineEdit* box);
/// Puts that special date into an empty box, for a save.
void markMissingBirthDate(QLineEdit& box);
/// 'Y' or 'N' as a list of "Yes" and "No", left unchanged in a new record.
[[nodiscard]] RecordField letterField(QStringView name, widgets::ComboBox* list);
/// A yes/no as a list of "Yes" and "No".
[[nodiscard]] RecordField yesNoField(QStringView name, widgets::ComboBox* list);
/// A yes/no as a check box, with its value in a new record; a save may read a different box than the one shown.
[[nodiscard]] RecordField checkField(QStringView name, widgets::CheckBox* shown, const widgets::CheckBox* saved,
                                     bool atFirst);
/// A yes/no as a pair of options, yes in a new record.
[[nodiscard]] RecordField optionField(QStringView name, widgets::OptionButton* yes, widgets::OptionButton* no);

/// Makes a new record keep the text of the box.
[[nodiscard]] RecordField kept(RecordField field);
/// Makes changes of the field go unnoticed.
[[nodiscard]] RecordField silent(RecordField field);

/// A date as date fields take it, "mm/dd/yyyy"; a text that isn't a date is returned unchanged, for the field to
/// refuse.
[[nodiscard]] QString dateText(const QString& typed);

} // namespace orlo
