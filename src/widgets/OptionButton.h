#pragma once

#include <QRadioButton>

namespace orlo::widgets
{

/// An option button that tells when it becomes the set one of its group, by the user or by the program.
class OptionButton : public QRadioButton
{
    Q_OBJECT

public:
    explicit OptionButton(QWidget* parent = nullptr);

protected:
    /// The whole control takes a click, however short its caption is.
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }

Q_SIGNALS:
    void selected();

protected:
    /// The whole button takes the mouse, not only its text.
    bool hitButton(const QPoint& point) const override { return rect().contains(point); }
};

} // namespace orlo::widgets
