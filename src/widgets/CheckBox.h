#pragma once

#include <QCheckBox>

namespace orlo::widgets
{

/// A check box that signals every change of its value, by the user or by the program.
class CheckBox : public QCheckBox
{
    Q_OBJECT

public:
    explicit CheckBox(QWidget* parent = nullptr);

protected:
    /// The whole control can be clicked, however short its caption.
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }

Q_SIGNALS:
    /// Emitted after the value changed.
    void changed();
};

} // namespace orlo::widgets
