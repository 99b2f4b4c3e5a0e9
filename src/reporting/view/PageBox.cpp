#include "reporting/view/PageBox.h"

#include <algorithm>

namespace orlo::reporting
{

namespace
{

constexpr qsizetype MaxDigits = 9;

// The number at the start of a text; 0 for none.
int numberIn(const QString& text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
    return text.left(std::min<qsizetype>(end - text.begin(), MaxDigits)).toInt();
}

} // namespace

QValidator::State PageBox::validate(QString& text, int& place) const
{
    const QValidator::State state = QSpinBox::validate(text, place);
    return state == QValidator::Invalid && numberIn(text) > maximum() ? QValidator::Intermediate : state;
}

void PageBox::fixup(QString& text) const
{
    text = textFromValue(std::min(numberIn(text), maximum())) + suffix();
}

} // namespace orlo::reporting
