#include "shell/forms/dlgError.h"

#include "platform/System.h"
#include "shell/forms/Module1.h"
#include "ui_dlgError.h"
#include "widgets/Contrast.h"
#include "widgets/MessageBox.h"

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QStyle>

#include <algorithm>

namespace orlo
{

namespace
{

// Makes the box as high as its text, whatever its width and letters; a long text scrolls.
void fitHeight(QTextEdit& box)
{
    constexpr int MostLines = 12;
    const auto fit = [&box](const QSizeF& text) {
        box.setFixedHeight(2 * box.frameWidth() +
                           std::min(qCeil(text.height()), MostLines * box.fontMetrics().height()));
    };
    QTextDocument& document = *box.document();
    QObject::connect(document.documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, &box, fit);
    document.setTextWidth(box.minimumWidth() - 2 * box.frameWidth());
    fit(document.size());
}

void linkWebSite(QTextDocument& document, const QPalette& colors)
{
    QTextCharFormat link;
    link.setForeground(widgets::raised(colors.color(QPalette::Link), colors.color(QPalette::Text),
                                       {colors.color(QPalette::Base)}, widgets::ReadableText));
    link.setAnchor(true);
    link.setAnchorHref(QUrl::fromUserInput(WebSite.toString()).toString());
    link.setFontUnderline(true);
    if (QTextCursor found = document.find(WebSite.toString()); !found.isNull())
        found.mergeCharFormat(link);
}

} // namespace

dlgError::dlgError() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgError>())
{
    ui->setupUi(this);
    setDefaultButton(ui->cmdOk);
    setCancelButton(ui->cmdOk);
    const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    ui->picError->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical, nullptr, this).pixmap(side));
    connect(ui->cmdOk, &QPushButton::clicked, this, &dlgError::unload);
    connect(ui->cmdCopy, &QPushButton::clicked, this, &dlgError::copyDetails);
    connect(ui->txtErrorText, &QTextBrowser::anchorClicked, this, &dlgError::openWebSite);
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
    linkWebSite(*ui->txtErrorText->document(), palette());
    fitHeight(*ui->txtErrorText);
    fitHeight(*ui->txtErrorDescription);
    platform::logError(QStringLiteral("ORLO_1: %1, %2, %3, \r%4").arg(gErrType, number, gErrSource, gErrDescription));
}

// As they stand on the page, a line each, to be sent to whoever can help.
void dlgError::copyDetails()
{
    const auto line = [](const QLabel* label, const QString& text) {
        return label->text().remove(u':') + QStringLiteral(": ") + text + u'\n';
    };
    QGuiApplication::clipboard()->setText(line(ui->lblErrorType, ui->txtErrorType->text()) +
                                          line(ui->lblErrorNumber, ui->txtErrorNumber->text()) +
                                          line(ui->lblErrorSource, ui->txtErrorSource->text()) +
                                          line(ui->lblErrorDescription, ui->txtErrorDescription->toPlainText()));
}

void dlgError::openWebSite(const QUrl& address)
{
    if (!QDesktopServices::openUrl(address))
        widgets::message(QStringLiteral("Nothing on this computer opens %1 by itself.").arg(address.toString()));
}

} // namespace orlo
