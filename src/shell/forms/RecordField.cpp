#include "shell/forms/RecordField.h"

#include "platform/Conversion.h"
#include "store/engine/Value.h"
#include "widgets/CheckBox.h"
#include "widgets/ComboBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextBox.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextBlock>

#include <memory>
#include <utility>

namespace orlo
{

namespace
{

using store::Value;

const QString Yes = QStringLiteral("Yes");
const QString No = QStringLiteral("No");
const QDate NoBirthDate(1001, 1, 1);

// A multi-line text as stored and as its box shows it; the box unifies line ends and blanks.
struct Lines {
    QString stored;
    QString shown;
};

// QTextDocument's own way lays out a one-line text twice, and a cursor makes its glyphs once more.
void replaceAll(QTextDocument& document, const QString& text)
{
    document.setUndoRedoEnabled(false);
    QTextCursor all(&document);
    all.beginEditBlock();
    all.select(QTextCursor::Document);
    all.insertText(text);
    all.endEditBlock();
    document.setUndoRedoEnabled(true);
    document.firstBlock().layout()->setCacheEnabled(true);
}

void showLines(QPlainTextEdit& box, Lines& lines, const QString& text)
{
    QTextDocument& document = *box.document();
    lines.stored = text;
    if (box.toPlainText() != text || document.isModified() || document.isRedoAvailable())
        replaceAll(document, text);
    document.setModified(false);
    box.setTextCursor(QTextCursor(&document));
    lines.shown = box.toPlainText();
}

// The box has no room for a time of day, which another program may have stored.
QString dayText(const Value& value)
{
    return value.isDate() ? platform::shortDate(value.toDate().date) : value.textOrEmpty();
}

// The box also signals when the same text is set; only a different one is a change.
void tellOfLines(QPlainTextEdit* box, const RecordField::Changed& changed)
{
    QObject::connect(box, &QPlainTextEdit::textChanged, box, [box, changed, last = box->toPlainText()]() mutable {
        const QString before = std::exchange(last, box->toPlainText());
        if (last != before)
            changed();
    });
}

void tellOfChoice(widgets::ComboBox* list, const RecordField::Changed& changed)
{
    QObject::connect(list, &widgets::ComboBox::textChange, list, changed);
    QObject::connect(list, &widgets::ComboBox::clicked, list, changed);
}

// A list of "Yes" and "No"; anything but the `yes` value shows as "No".
RecordField listField(QStringView name, widgets::ComboBox* list, const Value& yes, const Value& no)
{
    return {name,
            list,
            [list, yes](const Value& value) { list->setText(value == yes ? Yes : No); },
            [list, yes, no] { return list->text() == Yes ? yes : no; },
            [] {},
            [list](const auto& changed) { tellOfChoice(list, changed); }};
}

} // namespace

RecordField boxField(QStringView name, QLineEdit* box, std::function<QString(const Value&)> text,
                     std::function<Value()> typed)
{
    const auto stored = std::make_shared<Value>();
    return {name,
            box,
            [box, stored, text = std::move(text)](const Value& value) {
                *stored = value;
                widgets::fillBox(*box, text(value));
            },
            [box, stored, typed = std::move(typed)] { return widgets::showsBeginning(*box) ? *stored : typed(); },
            [box] { widgets::fillBox(*box, QString()); },
            [box](const auto& changed) { QObject::connect(box, &QLineEdit::textChanged, box, changed); }};
}

RecordField textField(QStringView name, QLineEdit* box)
{
    return boxField(name, box, &Value::textOrEmpty, [box] { return Value(box->text()); });
}

RecordField textField(QStringView name, QPlainTextEdit* box)
{
    const auto lines = std::make_shared<Lines>();
    return {name,
            box,
            [box, lines](const Value& value) { showLines(*box, *lines, value.textOrEmpty()); },
            [box, lines] {
                QString text = box->toPlainText();
                const bool untouched = !box->document()->isModified() && text == lines->shown;
                return Value(untouched ? lines->stored : text.remove(QChar::Null));
            },
            [box] { box->clear(); },
            [box](const auto& changed) { tellOfLines(box, changed); }};
}

RecordField textField(QStringView name, widgets::ComboBox* list)
{
    return {name,
            list,
            [list](const Value& value) { list->setText(value.textOrEmpty()); },
            [list] { return Value(list->text()); },
            [list] { list->setText(QString()); },
            [list](const auto& changed) { tellOfChoice(list, changed); }};
}

RecordField numberField(QStringView name, QLineEdit* box)
{
    return boxField(name, box, &Value::textOrEmpty, [box] { return Value(platform::val(box->text())); });
}

RecordField wholeNumberField(QStringView name, QLineEdit* box)
{
    return boxField(name, box, &Value::textOrEmpty, [box] { return Value(platform::leadingDigits(box->text())); });
}

RecordField dateField(QStringView name, QLineEdit* box)
{
    return boxField(name, box, dayText,
                    [box] { return box->text().isEmpty() ? Value() : Value(dateText(box->text())); });
}

RecordField birthDateField(QStringView name, QLineEdit* box)
{
    const auto text = [](const Value& value) {
        const bool missing = value.isDate() && value.toDate().date == NoBirthDate;
        return missing ? QString() : dayText(value);
    };
    return boxField(name, box, text, [box] { return Value(dateText(box->text())); });
}

void markMissingBirthDate(QLineEdit& box)
{
    if (box.text().isEmpty())
        box.setText(platform::longDate(NoBirthDate));
}

RecordField letterField(QStringView name, widgets::ComboBox* list)
{
    return listField(name, list, u"Y", u"N");
}

RecordField yesNoField(QStringView name, widgets::ComboBox* list)
{
    RecordField field = listField(name, list, true, false);
    field.clear = [list] { list->setText(No); };
    return field;
}

RecordField checkField(QStringView name, widgets::CheckBox* shown, const widgets::CheckBox* saved, bool atFirst)
{
    return {name,
            shown,
            [shown](const Value& value) { shown->setChecked(value == Value(true)); },
            [saved] { return Value(saved->isChecked()); },
            [shown, atFirst] { shown->setChecked(atFirst); },
            [shown](const auto& changed) { QObject::connect(shown, &widgets::CheckBox::changed, shown, changed); }};
}

RecordField optionField(QStringView name, widgets::OptionButton* yes, widgets::OptionButton* no)
{
    return {name,
            yes,
            [yes, no](const Value& value) { (value == Value(true) ? yes : no)->setChecked(true); },
            [yes] { return Value(yes->isChecked()); },
            [yes] { yes->setChecked(true); },
            [yes, no](const auto& changed) {
                for (auto* option : {yes, no})
                    QObject::connect(option, &widgets::OptionButton::selected, option, changed);
            }};
}

// Keeps what is shown, without what the record stores beyond it.
RecordField kept(RecordField field)
{
    auto* box = qobject_cast<QLineEdit*>(field.control);
    field.clear = [box] { widgets::fillBox(*box, box->text()); };
    return field;
}

RecordField silent(RecordField field)
{
    field.tell = [](const auto&) {};
    return field;
}

QString dateText(const QString& typed)
{
    const auto date = platform::readDate(typed);
    return date ? platform::longDate(date->date) : typed;
}

} // namespace orlo
