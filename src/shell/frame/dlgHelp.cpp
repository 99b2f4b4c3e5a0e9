#include "shell/frame/dlgHelp.h"

#include "platform/FileSystem.h"
#include "shell/forms/Module1.h"
#include "ui_dlgHelp.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace orlo
{

dlgHelp::dlgHelp() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgHelp>())
{
    ui->setupUi(this);
    setCancelButton(ui->cmdClose);
    connect(ui->cmdClose, &QPushButton::clicked, this, &dlgHelp::unload);
    connect(ui->Label2, &QLabel::linkActivated, this, &QDesktopServices::openUrl);
}

dlgHelp::~dlgHelp() = default;

void dlgHelp::load()
{
    // Where the folder only points to the manual, a browser that may not look into the user's folders reads it there.
    const QString manual =
        QFileInfo(platform::nativePath(gAppPath + QStringLiteral("\\manual\\index.html"))).canonicalFilePath();
    if (!manual.isEmpty())
        ui->Label2->setText(
            ui->Label2->text() +
            QStringLiteral("<br><br>Meanwhile, the manual on this computer tells how everything is done: "
                           "<a href=\"%1\">Open the ORLO manual</a>")
                .arg(QString::fromLatin1(QUrl::fromLocalFile(manual).toEncoded())));
}

} // namespace orlo
