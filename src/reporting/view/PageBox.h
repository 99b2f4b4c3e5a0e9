#pragma once

#include <QSpinBox>

namespace orlo::reporting
{

/// The box for a page's number. A number beyond the last page means the last one.
class PageBox : public QSpinBox
{
    Q_OBJECT

public:
    using QSpinBox::QSpinBox;

    [[nodiscard]] QValidator::State validate(QString& text, int& place) const override;
    void fixup(QString& text) const override;
};

} // namespace orlo::reporting
