#pragma once

#include <QSpinBox>

namespace orlo::reporting
{

/// The box for the page number. Numbers beyond the last page mean the last one.
class PageBox : public QSpinBox
{
    Q_OBJECT

public:
    using QSpinBox::QSpinBox;

    [[nodiscard]] QValidator::State validate(QString& text, int& place) const override;
    void fixup(QString& text) const override;
};

} // namespace orlo::reporting
