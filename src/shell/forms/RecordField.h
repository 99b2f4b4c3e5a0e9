#pragma once

#include "store/engine/Value.h"

#include <functional>

class QLineEdit;
class QPlainTextEdit;
class QWidget;

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
    std::function<void(const store::Value&)> show; ///< shows the stored value
    std::function<store::Value()> value;           ///< what the control gives to a save
    std::function<void()> clear;                   ///< what a new record begins with
    std::function<void(const Changed&)> tell;      ///< runs this on every change, by the user or by code
};

/// A box that shows the stored value as a text, and what a text that was typed means. A value whose text is longer than
/// the box's limit is given as it was stored until somebody touches the box.
[[nodiscard]] RecordField boxField(QStringView name, QLineEdit* box, std::function<QString(const store::Value&)> text,
                                   std::function<store::Value()> typed);
/// The text as it stands, untrimmed. One of several lines that nobody touched is given as it was stored, whatever kinds
/// of line ends and blanks it has.
[[nodiscard]] RecordField textField(QStringView name, QLineEdit* box);
[[nodiscard]] RecordField textField(QStringView name, QPlainTextEdit* box);
/// The text of a list or of its line.
[[nodiscard]] RecordField textField(QStringView name, widgets::ComboBox* list);
/// The number that the text begins with; 0 where it begins with none.
[[nodiscard]] RecordField numberField(QStringView name, QLineEdit* box);
/// The same with leading digits only.
[[nodiscard]] RecordField wholeNumberField(QStringView name, QLineEdit* box);
/// A date; an empty box gives Null.
[[nodiscard]] RecordField dateField(QStringView name, QLineEdit* box);
/// A date whose absence a date of its own marks, which doesn't show.
[[nodiscard]] RecordField birthDateField(QStringView name, QLineEdit* box);
/// Puts that date into an empty box, for a save.
void markMissingBirthDate(QLineEdit& box);
/// 'Y' and 'N' in a list of "Yes" and "No", which a new record finds as it was.
[[nodiscard]] RecordField letterField(QStringView name, widgets::ComboBox* list);
/// A yes/no in a list of "Yes" and "No".
[[nodiscard]] RecordField yesNoField(QStringView name, widgets::ComboBox* list);
/// A yes/no in a check box, and what it is in a new record; a save may ask another box than the one that shows it.
[[nodiscard]] RecordField checkField(QStringView name, widgets::CheckBox* shown, const widgets::CheckBox* saved,
                                     bool atFirst);
/// A yes/no in a pair of options, yes in a new record.
[[nodiscard]] RecordField optionField(QStringView name, widgets::OptionButton* yes, widgets::OptionButton* no);

/// The field in a box whose text a new record takes over from the one that shows.
[[nodiscard]] RecordField kept(RecordField field);
/// The field without its changes being told of.
[[nodiscard]] RecordField silent(RecordField field);

/// A date for a date field as it is written: "mm/dd/yyyy", or the text itself where it is no date, for the field to
/// refuse.
[[nodiscard]] QString dateText(const QString& typed);

} // namespace orlo
