#include "shell/frame/frmSplash.h"

#include "platform/Application.h"
#include "shell/frame/TakeoverNotice.h"
#include "shell/frame/mdiPendrake.h"
#include "ui_frmSplash.h"
#include "widgets/NestedLoop.h"
#include "widgets/Twips.h"

#include <QCloseEvent>
#include <QPainter>
#include <QResource>
#include <QScreen>
#include <QThread>
#include <QTimer>

namespace orlo
{

namespace
{
constexpr QSize PictureSize(483, 401);
constexpr QColor Border(0x6f, 0x98, 0xa8);
constexpr int FontPixels = 12;
constexpr int LookForEndEvery = 100; // ms
constexpr int LongestWait = 100;     // ms

// The build embeds the picture as raw pixels, so that nothing needs decoding before it is shown.
QImage picture(int scale)
{
    const QResource pixels(QStringLiteral(":/art/splash@%1x.rgb").arg(scale));
    const QSize size = PictureSize * scale;
    if (pixels.size() != qint64{size.width()} * size.height() * 4)
        return {};
    QImage image(pixels.data(), size.width(), size.height(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    return image;
}

} // namespace

frmSplash::frmSplash()
    : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::frmSplash>()), tmrSplashWait(new QTimer(this))
{
    ui->setupUi(this);
    // The picture's size and dark ground are the same on every desktop, and so are its texts.
    QFont text = font();
    text.setPixelSize(FontPixels);
    setFont(text);
    QPalette onPicture = palette();
    onPicture.setColor(QPalette::WindowText, Qt::white);
    setPalette(onPicture);
    ui->lblVersion->hide();
    ui->lblWarning->hide();
    setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    tmrSplashWait->setObjectName(QStringLiteral("tmrSplashWait"));
    connect(tmrSplashWait, &QTimer::timeout, this, &frmSplash::tmrSplashWait_Timer);
}

frmSplash::~frmSplash() = default;

void frmSplash::openFrameAfter(int milliseconds)
{
    tmrSplashWait->setTimerType(Qt::PreciseTimer);
    tmrSplashWait->start(milliseconds);
}

void frmSplash::awaitPicture()
{
    const widgets::NestedLoop loop;
    QTimer end;
    end.setSingleShot(true);
    end.start(LongestWait);
    while (!m_isShown && end.isActive())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

void frmSplash::load()
{
    setCursor(Qt::WaitCursor);
    ui->lblVersion->setText(platform::versionText());

    m_picture = picture(devicePixelRatioF() > 1 ? 2 : 1);
    setFixedSize(PictureSize);
    move(screen()->availableGeometry().center() - rect().center());

    QLabel& version = *ui->lblVersion;
    version.move(width() / 2 - version.width() / 2, height() / 2 + widgets::twipsToPixels(100, this));
    QLabel& warning = *ui->lblWarning;
    warning.move(width() / 2 - warning.width() / 2, height() - warning.height() - widgets::twipsToPixels(400, this));
    setEnabled(false);
}

// Before the event loop runs, the last window's close doesn't end the process: it would go on without a window.
void frmSplash::closeEvent(QCloseEvent* event)
{
    if (isUnloading() || QThread::currentThread()->loopLevel() > 0)
        Form::closeEvent(event);
    else
        event->ignore();
}

void frmSplash::keyPressEvent(QKeyEvent*)
{
    unload();
}

// A process's first text waits for fonts to be found; the picture doesn't.
void frmSplash::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.drawImage(0, 0, m_picture);
    painter.setPen(Border);
    painter.drawRect(rect().adjusted(0, 0, -1, -1)); // a thin edge, visible on any desktop
    QTimer::singleShot(0, this, [this] { m_isShown = true; });
    for (QLabel* label : {ui->lblVersion, ui->lblWarning})
        QTimer::singleShot(0, label, &QWidget::show);
}

void frmSplash::tmrSplashWait_Timer()
{
    if (isTakeoverShown()) // the main window comes once the database is open
        return tmrSplashWait->start(LookForEndEvery);
    tmrSplashWait->stop();
    mdiPendrake::instance().show();
    unload();
    // The report of a failed start may still be open, and the main window must not cover it.
    if (QWidget* report = QApplication::activeModalWidget()) {
        report->raise();
        report->activateWindow();
    }
}

} // namespace orlo
