#pragma once

#include "widgets/Form.h"

#include <QImage>

#include <memory>

class QTimer;
namespace Ui
{
class frmSplash;
}

namespace orlo
{

/// The start picture. At its timer's first tick it opens the main window and closes.
class frmSplash : public widgets::Form
{
    Q_OBJECT

public:
    frmSplash();
    ~frmSplash() override;

    /// Sets the interval of tmrSplashWait and starts it.
    void openFrameAfter(int milliseconds);
    /// Returns when the picture is on the screen, or after a moment where the screen keeps it waiting.
    void awaitPicture();

protected:
    void load() override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void tmrSplashWait_Timer();

    std::unique_ptr<Ui::frmSplash> ui;
    QTimer* tmrSplashWait;
    QImage m_picture;
    bool m_isShown = false; // painted, and handed to the screen
};

} // namespace orlo
