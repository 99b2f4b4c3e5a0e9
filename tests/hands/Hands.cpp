#include "hands/Hands.h"

#include "hands/Server.h"
#include "shell/forms/Module1.h"
#include "shell/frame/mdiPendrake.h"
#include "support/RecordScreen.h"
#include "widgets/Form.h"

#include <QTest>

namespace orlo::test
{

namespace
{

// ---- What can be seen

QMainWindow& frame()
{
    return mdiPendrake::instance();
}

// The modal box or dialog, or else the active window; within the frame, the active child window first. While a combo
// box's list is open, no window may be active.
QWidgetList workedOn()
{
    QWidget* active = QApplication::activeWindow();
    auto* child = frame().findChild<QMdiArea*>()->currentSubWindow();
    if (active && active != &frame())
        return {active};
    if (QApplication::activeModalWidget())
        return {QApplication::activeModalWidget()};
    return child ? QWidgetList{child, &frame()} : QWidgetList{&frame()};
}

// A list without a frame is covered completely by its own rows.
bool isInSight(const QWidget& widget)
{
    const auto* area = qobject_cast<const QAbstractScrollArea*>(&widget);
    return !(area ? area->viewport() : &widget)->visibleRegion().isEmpty();
}

QWidget* shown(const QString& name)
{
    for (const QWidget* place : workedOn())
        for (QWidget* widget : place->findChildren<QWidget*>(name))
            if (isInSight(*widget))
                return widget;
    return nullptr;
}

QMessageBox* messageBox()
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return box && box->isActiveWindow() ? box : nullptr;
}

using Place = std::optional<QPoint>;

// A window that has just appeared, or is being moved, may not yet be where the program thinks.
bool standsWhereItSeems(const QWidget& window)
{
    return (placeOfWindow(window.winId()) - window.mapToGlobal(QPoint()) * window.devicePixelRatio())
               .manhattanLength() <= 2; // for rounding
}

Place middle(const QWidget* widget, QRect part)
{
    part &= widget->visibleRegion().boundingRect();
    if (part.isEmpty() || !(widget->isActiveWindow() || widget->window()->windowType() == Qt::Popup) ||
        !standsWhereItSeems(*widget->window()))
        return {};
    return widget->mapToGlobal(part.center()) * widget->devicePixelRatio();
}

Place placeOfTab(const QString& title)
{
    for (const QWidget* place : workedOn())
        for (const auto* bar : place->findChildren<QTabBar*>())
            for (int tab = 0; tab < bar->count(); ++tab)
                if (bar->isVisible() && bar->tabText(tab).remove('&') == title)
                    return middle(bar, bar->tabRect(tab));
    return {};
}

Place placeOfRow(QWidget* widget, const QStringList& cell)
{
    const auto* box = qobject_cast<QComboBox*>(widget);
    auto* view = box ? box->view() : qobject_cast<QAbstractItemView*>(widget);
    if (!view || !view->isVisible())
        return {};
    const int row = cell[0].toInt();
    const int column = cell.value(1).toInt();
    if (auto* table = qobject_cast<QTableView*>(view); table && column < 0) {
        const auto* heads = table->verticalHeader();
        return middle(heads->viewport(),
                      QRect(0, heads->sectionViewportPosition(row), heads->width(), heads->sectionSize(row)));
    }
    const auto index = view->model()->index(row, column, view->rootIndex());
    view->scrollTo(index);
    return middle(view->viewport(), view->visualRect(index));
}

} // namespace

std::optional<QPoint> placeOf(const QString& word)
{
    static const QMap<QString, QMessageBox::StandardButton> answers{
        {"yes", QMessageBox::Yes}, {"no", QMessageBox::No}, {"ok", QMessageBox::Ok}};
    if (answers.contains(word)) {
        const auto* button = messageBox() ? messageBox()->button(answers[word]) : nullptr;
        return button ? middle(button, button->rect()) : Place();
    }
    if (word.startsWith("tab:"))
        return placeOfTab(word.sliced(4).replace('_', ' '));
    QWidget* widget = shown(word.section('[', 0, 0));
    if (!widget)
        return {};
    if (word.contains('['))
        return placeOfRow(widget, word.section('[', 1).chopped(1).split(','));
    QRect part = widget->rect();
    if (qobject_cast<QCheckBox*>(widget) || qobject_cast<QRadioButton*>(widget))
        part.setWidth(16);
    else if (qobject_cast<QComboBox*>(widget))
        part.setLeft(part.right() - 12);
    return middle(widget, part);
}

namespace
{

QString textOf(const QWidget& widget)
{
    if (const auto* pages = qobject_cast<const QTabWidget*>(&widget))
        return pages->tabText(pages->currentIndex()).remove('&');
    if (const auto* list = qobject_cast<const QAbstractItemView*>(&widget))
        return QString::number(list->currentIndex().row());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return button->isCheckable() ? button->isChecked() ? "on" : "off" : button->isEnabled() ? "live" : "grey";
    for (const char* property : {"currentText", "plainText", "text"})
        if (widget.property(property).isValid())
            return widget.property(property).toString();
    return {};
}

QString focusName()
{
    const QWidget* focus = QApplication::focusWidget();
    while (focus && (focus->objectName().isEmpty() || focus->objectName().startsWith("qt_")))
        focus = focus->parentWidget();
    return focus ? focus->objectName() : "nothing";
}

// ---- The words

void click(const std::function<Place()>& find, unsigned button = 1, int times = 1)
{
    Place before;
    Place place = await(find);
    while (place && place != before) { // what has just appeared may still move
        moveTo(*place);
        before = std::exchange(place, await(find));
    }
    expect(place.has_value(), "not to be seen");
    press(button, times);
    settle();
}

void openByMenus(const QAction* command)
{
    QList<QWidget*> holders;
    for (QObject* object : command->associatedObjects())
        if (qobject_cast<QMenuBar*>(object) || qobject_cast<QMenu*>(object))
            holders += static_cast<QWidget*>(object);
    auto* menu = qobject_cast<QMenu*>(holders.value(0));
    if (menu)
        openByMenus(menu->menuAction());
    click([&] {
        auto* action = const_cast<QAction*>(command);
        auto* bar = qobject_cast<QMenuBar*>(holders.value(0));
        return menu ? middle(menu, menu->actionGeometry(action)) : middle(bar, bar->actionGeometry(action));
    });
}

} // namespace

void awaitKeys()
{
    const auto ready = [] {
        const auto* window = QGuiApplication::focusWindow();
        const bool blocked = QApplication::activeModalWidget() && window == frame().windowHandle();
        return QApplication::activePopupWidget() ||
               (window && !blocked && focusOfServer() == window->winId() && activeOfManager() == window->winId());
    };
    expect(await(ready), "no window takes keys");
}

namespace
{

// "Alt+c,Alt+n/80"; at most one of the words may be a control.
void burstOf(const QString& word)
{
    QStringList strokes = word.section('/', 0, 0).split(',');
    for (const QString& stroke : strokes)
        if (!areKeys(stroke))
            moveTo(await([&] { return placeOf(stroke); }).value());
    awaitKeys();
    burst(strokes, word.section('/', 1).toInt());
}

void step(const QString& word)
{
    static const QRegularExpression isBurst(QStringLiteral("^[^'?=]*/\\d+$"));
    if (isBurst.match(word).hasMatch())
        return burstOf(word);
    const QString rest = word.sliced(1).replace('_', ' ');
    const QString text = word.section('=', 1).replace('_', ' ');
    const auto shows = [&, name = word.section('=', 0, 0)] { return shown(name) ? textOf(*shown(name)) : "nothing"; };
    const bool keys = word.startsWith('\'') || word.endsWith('~') || areKeys(word);
    if (keys || word == "close")
        awaitKeys();
    if (word.startsWith('\''))
        type(rest);
    else if (word.endsWith('~'))
        hold(word.chopped(1));
    else if (keys)
        strike(word);
    else if (word == "close")
        closeByFrame();
    else if (word.startsWith('@'))
        expect(await([&] { return focusName() == word.sliced(1); }), "the focus is on " + ask(focusName));
    else if (word.startsWith('?'))
        expect(await([&] { return messageBox() && messageBox()->text().startsWith(rest); }),
               "asked: " + ask([] {
                   const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                   return !box ? "nothing" : (box->isActiveWindow() ? "" : "without the keys, ") + box->text();
               }));
    else if (word == "!")
        expect(!ask([] {
            return QApplication::activePopupWidget() || qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        }),
               "a menu is open, or something is asked");
    else if (word.contains('='))
        expect(await([&] { return shows() == text; }), "it shows " + ask(shows));
    else if (const auto* command = ask([&] { return frame().findChild<QAction*>(word); }))
        openByMenus(command);
    else if (const QString wheel = word.section(':', 0, 0); wheel == "up" || wheel == "down")
        click([&] { return placeOf(word.section(':', 1)); }, wheel == "up" ? 4 : 5);
    else
        click([&] { return placeOf(word.startsWith("2:") ? word.sliced(2) : word); }, 1, word.startsWith("2:") ? 2 : 1);
}

bool closeOne()
{
    if (auto* popup = QApplication::activePopupWidget())
        return popup->close();
    auto* modal = QApplication::activeModalWidget();
    if (auto* dialog = qobject_cast<QDialog*>(modal))
        dialog->done(QMessageBox::No);
    else if (auto* form = qobject_cast<widgets::Form*>(modal)) // it may show another message
        QMetaObject::invokeMethod(form, &widgets::Form::unload, Qt::QueuedConnection);
    return modal != nullptr;
}

void runWords(const QString& script)
{
    for (const QString& word : script.split(' ', Qt::SkipEmptyParts)) {
        try {
            step(word);
            settle();
            expect(!ask([] { return messageBox() && messageBox()->text().startsWith("Run-time"); }), "it ends");
            const auto seen = [] { return !QApplication::focusWidget() || QApplication::focusWidget()->isVisible(); };
            expect(await(seen), "the focus is on hidden " + ask(focusName));
        } catch (const std::exception& error) {
            throw std::runtime_error(word.toStdString() + ": " + error.what());
        }
    }
}

void closeAll()
{
    while (ask(closeOne))
        settle();
    QMetaObject::invokeMethod(qApp, [] { widgets::Form::unloadAll(); });
    for (settle(); ask(closeOne);)
        settle();
}

} // namespace

bool showFrame()
{
    frame().showMaximized();
    return QTest::qWaitForWindowActive(&frame());
}

void copyFiles()
{
    copyLayouts();
    for (const QFileInfo& file : QDir(ORLO_SOURCE_DIR "/src/reports/files").entryInfoList(QDir::Files))
        QFile::copy(file.filePath(), gAppPath + u'/' + file.fileName());
}

QString atTheScreen(const std::function<void()>& work)
{
    const Server server;
    QString fault;
    const std::unique_ptr<QThread> person(QThread::create([&] {
        try {
            work();
        } catch (const std::exception& error) {
            fault = error.what();
        }
        closeAll();
    }));
    QEventLoop loop;
    QObject::connect(person.get(), &QThread::finished, &loop, &QEventLoop::quit);
    person->start();
    loop.exec();
    return fault;
}

QString runHands(const QString& script)
{
    QApplication::setDoubleClickInterval(5000); // however slow the machine is
    return atTheScreen([&script] { runWords(script); });
}

} // namespace orlo::test
