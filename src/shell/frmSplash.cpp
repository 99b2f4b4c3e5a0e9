#include "shell/frmSplash.h"

#include "platform/Application.h"
#include "shell/mdiPendrake.h"
#include "ui_frmSplash.h"
#include "widgets/Twips.h"

#include <QPainter>
#include <QScreen>
#include <QTimer>

namespace orlo
{

namespace
{
constexpr QSize PictureSize(483, 401);
}

frmSplash::frmSplash()
    : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::frmSplash>()), tmrSplashWait(new QTimer(this))
{
    ui->setupUi(this);
    setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    tmrSplashWait->setObjectName(QStringLiteral("tmrSplashWait"));
    connect(tmrSplashWait, &QTimer::timeout, this, &frmSplash::tmrSplashWait_Timer);
}

frmSplash::~frmSplash() = default;

void frmSplash::startTimer(int interval) { tmrSplashWait->start(interval); }

void frmSplash::load()
{
    setCursor(Qt::WaitCursor);
    ui->lblVersion->setText(platform::versionText());

    const bool dense = devicePixelRatioF() > 1;
    m_picture.load(dense ? QStringLiteral(":/art/splash@2x.png") : QStringLiteral(":/art/splash.png"));
    m_picture.setDevicePixelRatio(dense ? 2 : 1);
    setFixedSize(m_picture.isNull() ? PictureSize : m_picture.deviceIndependentSize().toSize());
    move(screen()->availableGeometry().center() - rect().center());

    ui->lblVersion->adjustSize();
    ui->lblVersion->move(width() / 2 - ui->lblVersion->width() / 2, height() / 2 + widgets::twipsToPixels(100, this));
    ui->lblWarning->setFixedWidth(width() - widgets::twipsToPixels(1200, this));
    ui->lblWarning->adjustSize();
    ui->lblWarning->move(width() / 2 - ui->lblWarning->width() / 2,
                         height() - ui->lblWarning->height() - widgets::twipsToPixels(400, this));
    setEnabled(false);
}

void frmSplash::keyPressEvent(QKeyEvent*) { unload(); }

void frmSplash::paintEvent(QPaintEvent*) { QPainter(this).drawPixmap(0, 0, m_picture); }

void frmSplash::tmrSplashWait_Timer()
{
    tmrSplashWait->stop();
    mdiPendrake::instance().show();
    unload();
}

} // namespace orlo
