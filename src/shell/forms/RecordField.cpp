#include "shell/forms/RecordField.h"

#include "platform/Conversion.h"
#include "widgets/ComboBox.h"
#include "widgets/TextBox.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextBlock>

#include <memory>

namespace orlo
{

namespace
{

using store::Value;

const QString Yes = QStringLiteral("Yes");
const QString No = QStringLiteral("No");
const QDate NoBirthDate(1001, 1, 1);

// A text of several lines as it is stored and as its box shows it, which knows one kind of line end and of blank.
struct Lines {
    QString stored;
    QString shown;
};

// The document's own way lays a text of one line out twice, and the cursor has its glyphs made once more.
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
    if (box.toPlainText() != text || document.isModified() || document.isUndoAvailable() || document.isRedoAvailable())
        replaceAll(document, text);
    document.setModified(false);
    box.setTextCursor(QTextCursor(&document));
    lines.shown = box.toPlainText();
}

// A time of day, which another program may have stored, has no room in the box.
QString dayText(const Value& value)
{
    return value.isDate() ? platform::shortDate(value.toDate().date) : value.textOrEmpty();
}

// A list of "Yes" and "No"; what isn't the one value shows as "No".
RecordField listField(QStringView name, widgets::ComboBox* list, const Value& yes, const Value& no)
{
    return {name, list, [list, yes](const Value& value) { list->setText(value == yes ? Yes : No); },
            [list, yes, no] { return list->text() == Yes ? yes : no; }};
}

} // namespace

RecordField boxField(QStringView name, QLineEdit* box, std::function<QString(const Value&)> text,
                     std::function<Value()> typed)
{
    const auto stored = std::make_shared<Value>();
    return {name, box,
            [box, stored, text = std::move(text)](const Value& value) {
                *stored = value;
                widgets::fillBox(*box, text(value));
            },
            [box, stored, typed = std::move(typed)] { return widgets::showsBeginning(*box) ? *stored : typed(); }};
}

RecordField textField(QStringView name, QLineEdit* box)
{
    return boxField(name, box, &Value::textOrEmpty, [box] { return Value(box->text()); });
}

RecordField textField(QStringView name, QPlainTextEdit* box)
{
    const auto lines = std::make_shared<Lines>();
    return {name, box, [box, lines](const Value& value) { showLines(*box, *lines, value.textOrEmpty()); },
            [box, lines] {
                QString text = box->toPlainText();
                const bool untouched = !box->document()->isModified() && text == lines->shown;
                return Value(untouched ? lines->stored : text.remove(QChar::Null));
            }};
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
    return listField(name, list, true, false);
}

RecordField checkField(QStringView name, QAbstractButton* shown, const QAbstractButton* saved)
{
    return {name, shown, [shown](const Value& value) { shown->setChecked(value == Value(true)); },
            [saved] { return Value(saved->isChecked()); }};
}

RecordField optionField(QStringView name, QAbstractButton* yes, QAbstractButton* no)
{
    return {name, yes, [yes, no](const Value& value) { (value == Value(true) ? yes : no)->setChecked(true); },
            [yes] { return Value(yes->isChecked()); }};
}

QString dateText(const QString& typed)
{
    const auto date = platform::readDate(typed);
    return date ? platform::longDate(date->date) : typed;
}

} // namespace orlo
