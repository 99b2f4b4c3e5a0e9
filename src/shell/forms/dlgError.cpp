#include "shell/forms/dlgError.h"

#include "platform/System.h"
#include "shell/forms/Module1.h"
#include "ui_dlgError.h"

#include <QStyle>

namespace orlo
{

dlgError::dlgError() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgError>())
{
    ui->setupUi(this);
    setDefaultButton(ui->cmdOk);
    setCancelButton(ui->cmdOk);
    const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    ui->picError->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical, nullptr, this).pixmap(side));
    connect(ui->cmdOk, &QPushButton::clicked, this, &dlgError::unload);
}

dlgError::~dlgError() = default;

void dlgError::load()
{
    const QString number = QString::number(gErrNumber);
    ui->txtErrorText->setPlainText(gErrText);
    ui->txtErrorType->setText(gErrType);
    ui->txtErrorNumber->setText(number);
    ui->txtErrorSource->setText(gErrSource);
    ui->txtErrorDescription->setPlainText(gErrDescription);
    platform::logError(QStringLiteral("ORLO_1: %1, %2, %3, \r%4").arg(gErrType, number, gErrSource, gErrDescription));
}

} // namespace orlo
