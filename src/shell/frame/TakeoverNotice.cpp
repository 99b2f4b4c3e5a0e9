#include "shell/frame/TakeoverNotice.h"

#include "store/jet/FormerFile.h"
#include "widgets/Form.h"
#include "widgets/MessageBox.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QTimer>

namespace orlo
{

namespace
{

constexpr int LookEvery = 100; // ms

QWidget* visibleWindow()
{
    if (QWidget* active = QApplication::activeWindow())
        return active;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find_if(windows, [](const QWidget* window) { return window->isVisible(); });
    return found == windows.end() ? nullptr : *found;
}

// Holds back what a window does when activated: the main window would start the update already in progress.
class ActivationHold : public QObject
{
public:
    ActivationHold() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override { return event->type() == QEvent::ActivationChange; }
};

QPointer<QLabel> line;

// A line across the visible window: another window would take the activation that the main window waits for.
void showProgress(const QString& file, int percent)
{
    if (percent >= 100) {
        // The next step may leave no time for painting, and the line must not stay there.
        QWidget* const window = line ? line->parentWidget() : nullptr;
        delete line;
        if (window)
            window->repaint();
        return;
    }
    if (!line) {
        QWidget* const window = visibleWindow();
        if (!window)
            return;
        line = new QLabel(window);
        line->setObjectName(QStringLiteral("lblTakeover"));
        line->setAutoFillBackground(true);
        QPalette colors; // not the splash's, which is disabled and writes white on its picture
        for (const auto role : {QPalette::WindowText, QPalette::Window})
            colors.setColor(QPalette::All, role, QApplication::palette().color(QPalette::Active, role));
        line->setPalette(colors);
        line->setAlignment(Qt::AlignCenter);
        line->setMargin(line->fontMetrics().height() / 2);
    }
    line->setText(QStringLiteral("Bringing %1 into this version's format: %2 %").arg(file).arg(percent));
    line->resize(line->parentWidget()->width(), line->sizeHint().height());
    line->move(0, line->parentWidget()->height() - line->height());
    line->raise();
    line->show();
    const ActivationHold hold;
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

// A message box above the splash would disappear with it.
void tellOverFrame(const QString& report)
{
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, report] {
        const QWidget* frame = widgets::mainWindow();
        if (!frame || !frame->isVisible() || QApplication::activeModalWidget())
            return;
        timer->stop();
        timer->deleteLater();
        widgets::message(report);
    });
    timer->start(LookEvery);
}

} // namespace

void watchTakeovers()
{
    store::setTakeoverWatch({showProgress, tellOverFrame});
}

bool isTakeoverShown()
{
    return line;
}

} // namespace orlo
