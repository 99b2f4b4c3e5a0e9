#include "support/Windows.h"

#include "reporting/view/PreviewWindow.h"
#include "shell/forms/Module1.h"
#include "shell/frame/Screens.h"
#include "shell/frame/mdiPendrake.h"
#include "support/Controls.h"
#include "support/Pack.h"
#include "support/TestApp.h"
#include "widgets/Form.h"

#include <QAction>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <utility>

namespace orlo::test
{

void addWindows()
{
    QTest::addColumn<Open>("open");
    QTest::newRow("mdiPendrake") << Open([] {});
    for (const ListedScreen& screen : screens())
        QTest::newRow(qPrintable(screen.form)) << Open(screen.open);
    QTest::newRow("previewWindow") << Open([] {
        auto document = std::make_shared<reporting::Document>();
        document->pages.resize(2);
        auto* window = new reporting::PreviewWindow(document);
        window->show();
        control<QAction>(*window, "actFind").trigger();
    });
}

void prepareForWindows()
{
    copyLayouts();
    fill(Pack);
    gEditAssignedSID = gEditInsigniaSID = 1;
    gEditQuantity = 3;
    gEditDate = "1/2/2026";
    gEditAwardText = "Star Pin";
    mdiPendrake::instance().show();
    mdiPendrake::instance().activateWindow();
}

bool openAndLook(const Open& open, const std::function<void(QWidget&)>& look)
{
    auto& frame = mdiPendrake::instance();
    bool looked = false;
    QPointer<QWidget> former;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, qApp, [&] {
        const QPointer window = QApplication::activeWindow();
        const auto* child = control<QMdiArea>(frame, "mdiArea").currentSubWindow();
        QWidget* shown = child && child->isVisible() ? child->widget() : window.data();
        if (!shown || (shown == &frame) != (QTest::currentDataTag() == QByteArray("mdiPendrake")))
            return; // not up yet
        if (std::exchange(former, shown) != shown)
            return; // its layouts aren't settled yet
        timer.stop();
        look(*shown);
        for (auto* pages : shown->findChildren<QTabWidget*>())
            for (int page = pages->count(); page-- > 0; look(*shown))
                pages->setCurrentIndex(page);
        widgets::Form::unloadAll();
        if (window != &frame)
            delete window;
        looked = true;
    });
    timer.start(5);
    open();
    return QTest::qWaitFor([&] { return looked; });
}

} // namespace orlo::test
