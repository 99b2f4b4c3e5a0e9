#pragma once

#include "widgets/Form.h"

class QPushButton;

namespace orlo
{

namespace reporting
{
class ReportControl;
}

/// A window that runs a report, to the preview or the printer, and stays open for the next run; base of the report
/// dialogs.
class ReportDialog : public widgets::Form
{
    Q_OBJECT

protected:
    /// The name of the report control.
    explicit ReportDialog(const QString& reportName);

    /// Connects the buttons to run the report and close the window; Escape closes it, too.
    void bindControls(QPushButton* cmdView, QPushButton* cmdPrint, QPushButton* cmdCancel);

    /// Sets up the control for a run with the window's choices, except destination and pages.
    virtual void prepare() = 0;

    /// Sets a report file in the application's folder, "\Name.rpt".
    void setReport(const QString& file);
    /// Sets the preview's caption and opens it maximised, with the page list.
    void setWindow(const QString& title);

    [[nodiscard]] reporting::ReportControl& report() { return *m_report; }

private:
    void run(int destination);

    reporting::ReportControl* m_report;
};

} // namespace orlo
