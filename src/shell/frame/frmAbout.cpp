#include "shell/frame/frmAbout.h"

#include "platform/Application.h"
#include "platform/System.h"
#include "shell/forms/Module1.h"
#include "ui_frmAbout.h"
#include "widgets/MessageBox.h"

#include <QApplication>
#include <QProcess>

namespace orlo
{

namespace
{
constexpr QSize IconSize(64, 64);
} // namespace

frmAbout::frmAbout() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::frmAbout>())
{
    ui->setupUi(this);
    setDefaultButton(ui->cmdOK);
    setCancelButton(ui->cmdOK);
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmAbout::unload);
}

frmAbout::~frmAbout() = default;

void frmAbout::load()
{
    setWindowTitle(QStringLiteral("About ") + platform::title());
    ui->lblVersion->setText(platform::versionText());
    ui->lblTitle->setText(platform::title());
    ui->picIcon->setPixmap(QApplication::windowIcon().pixmap(IconSize, devicePixelRatioF()));
}

void frmAbout::StartSysInfo()
{
    auto tool = GetKeyValue(QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"), QStringLiteral("PATH"));
    if (!tool) {
        tool = GetKeyValue(QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location"), QStringLiteral("MSINFO"));
        if (tool)
            tool->append(QStringLiteral("\\MSINFO32.EXE"));
        if (tool && !gFileSystem.fileExists(*tool))
            tool.reset();
    }
    if (tool)
        (void)QProcess::startDetached(*tool, {});
    else
        widgets::message(QStringLiteral("System Information Is Unavailable At This Time"));
}

std::optional<QString> frmAbout::GetKeyValue(const QString& key, const QString& name)
{
    return platform::registryValue(key, name);
}

} // namespace orlo
