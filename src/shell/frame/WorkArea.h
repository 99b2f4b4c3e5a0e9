#pragma once

#include <QMdiArea>

namespace orlo
{

/// The main window's background: soft, with a quiet emblem in the middle.
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
