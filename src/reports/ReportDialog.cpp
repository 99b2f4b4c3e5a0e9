#include "reports/ReportDialog.h"

#include "reporting/view/ReportControl.h"
#include "shell/forms/Module1.h"

namespace orlo
{

ReportDialog::ReportDialog(const QString& reportName)
    : Form(widgets::FormKind::Window), m_report(new reporting::ReportControl(reportName, this))
{
}

void ReportDialog::bindControls(QPushButton* cmdView, QPushButton* cmdPrint, QPushButton* cmdCancel)
{
    setCancelButton(cmdCancel);
    for (QPushButton* button : {cmdView, cmdPrint})
        widgets::pressOncePerDoubleClick(*button);
    connect(cmdView, &QPushButton::clicked, this, [this] { run(reporting::ToPreview); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] { run(reporting::ToPrinter); });
    connect(cmdCancel, &QPushButton::clicked, this, &ReportDialog::close);
}

void ReportDialog::setReport(const QString& file)
{
    m_report->setReportFile(gAppPath + file);
}

void ReportDialog::setWindow(const QString& title)
{
    m_report->setWindowOption(true);
    m_report->setWindowTitle(title);
    m_report->setWindowState(reporting::PreviewMaximised);
}

void ReportDialog::run(int destination)
{
    if (!writeOpenRows()) // the report reads what is stored
        return;
    m_report->setDestination(destination);
    prepare();
    m_report->setFirstPage(1);
    m_report->setLastPage(0);
    m_report->run();
}

} // namespace orlo
