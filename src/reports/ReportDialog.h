#pragma once

#include "widgets/Form.h"

class QPushButton;

namespace orlo
{

namespace reporting
{
class ReportControl;
}

/// A window that runs one report, to the preview or to the printer, and stays open for the next run: what the report
/// dialogs have in common.
class ReportDialog : public widgets::Form
{
    Q_OBJECT

protected:
    /// The name is that of the report's control.
    explicit ReportDialog(const QString& reportName);

    /// Has the buttons run the report and close the window; Escape closes it, too.
    void bindControls(QPushButton* cmdView, QPushButton* cmdPrint, QPushButton* cmdCancel);

    /// Sets on the control what a run with the window's choices needs, but for the destination and the pages.
    virtual void prepare() = 0;

    /// Names a report file of the application's folder, "\Name.rpt".
    void setReport(const QString& file);
    /// Gives the preview its caption and opens it maximised, with the page list.
    void setWindow(const QString& title);

    [[nodiscard]] reporting::ReportControl& report() { return *m_report; }

private:
    void run(int destination);

    reporting::ReportControl* m_report;
};

} // namespace orlo
