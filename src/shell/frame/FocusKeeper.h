#pragma once

#include <QMdiSubWindow>
#include <QPointer>

namespace orlo
{

/// Keeps the focus of a child window in its control. Qt hides the window while it becomes as large as the work area,
/// small or normal, and moves the focus on meanwhile. Its coming back counts as the window's doing, so that nothing is
/// selected or checked anew. The keeper belongs to the window.
class FocusKeeper : public QObject
{
public:
    explicit FocusKeeper(QMdiSubWindow* window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take(QWidget* control);
    void put(QWidget* control);

    QMdiSubWindow* m_window;
    QPointer<QWidget> m_kept;
};

} // namespace orlo
