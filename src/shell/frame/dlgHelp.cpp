#include "shell/frame/dlgHelp.h"

#include "platform/FileSystem.h"
#include "shell/forms/Module1.h"
#include "ui_dlgHelp.h"
#include "widgets/MessageBox.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace orlo
{

dlgHelp::dlgHelp() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgHelp>())
{
    ui->setupUi(this);
    setCancelButton(ui->cmdClose);
    connect(ui->cmdClose, &QPushButton::clicked, this, &dlgHelp::unload);
    connect(ui->Label2, &QLabel::linkActivated, this, &dlgHelp::openManual);
}

dlgHelp::~dlgHelp() = default;

void dlgHelp::load()
{
    // If the folder only points to the manual, open it where it really is: sandboxed browsers can't read the user's
    // folders.
    const QString manual =
        QFileInfo(platform::nativePath(gAppPath + QStringLiteral("\\manual\\index.html"))).canonicalFilePath();
    if (!manual.isEmpty())
        ui->Label2->setText(
            ui->Label2->text() +
            QStringLiteral("<br><br>Meanwhile, the manual on this computer tells how everything is done: "
                           "<a href=\"%1\">Open the ORLO manual</a>")
                .arg(QString::fromLatin1(QUrl::fromLocalFile(manual).toEncoded())));
}

// Without a browser, or the tool that starts it, the click would do nothing without a word.
void dlgHelp::openManual(const QString& link)
{
    const QUrl url(link);
    if (!QDesktopServices::openUrl(url))
        widgets::message(
            QStringLiteral("Nothing on this computer opens the manual by itself. Open this file in a browser:\n") +
            QDir::toNativeSeparators(url.toLocalFile()));
}

} // namespace orlo
