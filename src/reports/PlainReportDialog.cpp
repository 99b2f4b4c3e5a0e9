#include "reports/PlainReportDialog.h"

#include "reporting/view/ReportControl.h"
#include "shell/forms/Module1.h"
#include "ui_PlainReportDialog.h"

namespace orlo
{

PlainReportDialog::PlainReportDialog(const PlainReport& plain)
    : ReportDialog(QString::fromLatin1(plain.control)), m_plain(plain), ui(std::make_unique<Ui::PlainReportDialog>())
{
    ui->setupUi(this);
    setObjectName(QString::fromLatin1(plain.form));
    setWindowTitle(QString::fromUtf16(plain.title));
    ui->Label1->setText(QString::fromUtf16(plain.contents));
    bindControls(ui->cmdView, ui->cmdPrint, ui->cmdCancel);
}

PlainReportDialog::~PlainReportDialog() = default;

void PlainReportDialog::prepare()
{
    report().setDatabaseFile(0, databasePath());
    setReport(QString::fromUtf16(m_plain.file));
    setWindow(QString::fromUtf16(m_plain.title));
}

} // namespace orlo
