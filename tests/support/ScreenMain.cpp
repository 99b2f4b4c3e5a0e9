#include "support/Main.h"
#include "widgets/Application.h"

#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace
{

// Tests run in the program's own application object, so that failures and focus checks work as in the program. The
// report that would end the process first fails the row and so names it.
class TestApplication : public orlo::widgets::Application
{
public:
    using Application::Application;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* box = event->type() == QEvent::Show ? qobject_cast<QMessageBox*>(watched) : nullptr;
        if (box && box->text().startsWith(QLatin1String("Run-time error"))) {
            QTest::qFail(qPrintable(box->text()), __FILE__, __LINE__);
            QTimer::singleShot(1000, box, &QDialog::reject); // if nobody waits for it
        }
        return Application::eventFilter(watched, event);
    }
};

} // namespace

int main(int argc, char** argv)
{
    const TestApplication application(argc, argv);
    QApplication::setCursorFlashTime(0); // for pictures of it
    return orlo::test::runTests(QApplication::arguments());
}
