#pragma once

#include <QWidget>

namespace orlo::reports
{

/// The engine's own window for what went wrong in a run. It belongs to no screen, so it never waits for one or holds
/// one up; its text can be selected and copied. Closing it deletes it.
class ReportMessage : public QWidget
{
    Q_OBJECT

public:
    ReportMessage(const QString& title, const QString& text);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace orlo::reports
