#pragma once

#include <QMdiArea>

namespace orlo
{

/// The frame's ground, on which the screens lie: a soft one, with a quiet emblem in its middle.
class WorkArea : public QMdiArea
{
    Q_OBJECT

public:
    explicit WorkArea(QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void takeGround();
};

} // namespace orlo
