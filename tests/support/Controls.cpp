#include "support/Controls.h"

#include "widgets/ListBox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPushButton>
#include <QTest>

#include <algorithm>

namespace orlo::test
{

std::shared_ptr<Told> takeNext(const std::function<bool(QWidget&, Told&)>& take)
{
    auto told = std::make_shared<Told>();
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, told, take] {
        if (QWidget* modal = QApplication::activeModalWidget(); modal && take(*modal, *told)) {
            timer->stop();
            timer->deleteLater();
        }
    });
    timer->start(5);
    return told;
}

std::shared_ptr<Told> answerNext(QMessageBox::StandardButton button)
{
    return takeNext([button](QWidget& modal, Told& told) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        if (!box || told.shown || !box->isActiveWindow()) // an earlier call may wait for it until then
            return false;
        told = {box->text(), box->windowTitle(), true, QVariant::fromValue(box->icon()).toString() + u','};
        told.kind += box->textFormat() == Qt::PlainText ? "" : " rich,";
        told.kind += told.kind[0] == 'Q' || box->windowFlags() & Qt::WindowCloseButtonHint ? "" : " no close box,";
        told.before = lookBehind ? lookBehind() : QStringList();
        told.kind += std::ranges::count_if(QApplication::topLevelWidgets(), &QWidget::isVisible) > 1 ? "" : " alone,";
        for (const auto* each : box->buttons())
            told.kind += (each == box->defaultButton() ? " *" : " ") + each->text().remove('&');
        if (button == QMessageBox::NoButton)
            QTest::keyClick(box->focusWidget(), Qt::Key_Return);
        else if (auto* pressed = box->button(button))
            QTest::mouseClick(pressed, Qt::LeftButton);
        else
            box->reject();
        return true;
    });
}

Unanswered::Unanswered(QStringList& seen)
{
    setInterval(10000);
    callOnTimeout([&seen] {
        auto* modal = QApplication::activeModalWidget();
        seen += modal ? QStringList("unanswered: " + modal->windowTitle()) : QStringList();
        if (auto* box = qobject_cast<QMessageBox*>(modal))
            box->done(QMessageBox::No);
        else if (modal)
            modal->close();
    });
}

std::shared_ptr<Told> dismissReport()
{
    return takeNext([](QWidget& modal, Told& told) {
        if (modal.objectName() != QLatin1String("dlgError") || told.shown)
            return false;
        told.shown = true;
        for (const char* field : {"Type", "Number", "Source", "Description", "Text"}) {
            const auto* shown = modal.findChild<QWidget*>(QLatin1String("txtError") + QLatin1String(field));
            told.text += shown->property("text").toString() + shown->property("plainText").toString() + u'\n';
        }
        press(modal, "cmdOk");
        return true;
    });
}

QWidget* topLevel(const QString& name)
{
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == name && window->isVisible())
            return window;
    return nullptr;
}

void press(const QObject& window, const QString& name)
{
    QTest::mouseClick(&control<QWidget>(window, name.toUtf8().constData()), Qt::LeftButton);
}

void clickRow(widgets::ListBox& list, int row, Qt::KeyboardModifier modifier)
{
    if (row < 0 || row >= list.count())
        fail(QStringLiteral("no row %1 in ").arg(row) + list.objectName());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifier, list.visualItemRect(list.item(row)).center());
}

} // namespace orlo::test
