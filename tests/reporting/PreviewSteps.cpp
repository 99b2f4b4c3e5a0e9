#include "reporting/PreviewSteps.h"

#include "reporting/view/NoticeBar.h"
#include "support/Main.h"
#include "support/Picture.h"

#include <QtWidgets/QtWidgets>

namespace orlo::test
{

using namespace orlo::reporting;

std::shared_ptr<const Document> documentOf(const QString& text)
{
    auto document = std::make_shared<Document>();
    document->title = "Pack: 47/awards";
    document->fonts = {QFont("DejaVu Sans", 10), QFont("DejaVu Sans", 40)};
    document->columns = {"Name", "Quantity"};
    const QStringList parts = text.split(", ");
    for (int page = 0; page < parts[0].toInt(); ++page) {
        const QString number = QLocale::c().toString(QDate(2026, page + 1, 1), "MMMM");
        document->pages.push_back(
            {{TextItem{{72, 72, 400, 14}, "Page " + number}, TextItem{{72, 400, 400, 14}, "first row and another ROW"},
              BoxItem{{72, 700, 468, 20}, 0, Qt::black, Qt::darkGreen}}});
        document->outline.push_back({"Den " + number, 0, page});
        document->rows.push_back({QStringLiteral("Café, \"%1\"").arg(page), QString::number(page)});
    }
    for (const QString& part : parts.mid(1)) {
        QString words = part.section(": ", 1).replace("\\n", "\n");
        const QStringList at = part.section(':', 0, 0).split(' ');
        const auto number = [&](int i) { return at.value(i).toDouble(); };
        if (part == "first")
            document->complete = false;
        else if (part == "labels")
            document->exactSize = true;
        else if (part == "no outline")
            document->outline.clear();
        else if (at[0] == "paper")
            document->paper = {number(1), number(2)};
        else if (part == "blank")
            document->pages[0].items.clear();
        else if (at[0] == "warns")
            document->warnings += words;
        else if (at[0] == "entry")
            document->outline.push_back({words, at[1].toInt(), at[2].toInt() - 1, number(3)});
        else {
            std::vector<Item>& items = document->pages[at[0].toUInt() - 1].items;
            const QRectF box(number(2), number(3), number(4), number(5));
            const QColor color(words.section(' ', 0, 0)), fill(words.section(' ', 1, 1));
            const auto empty = int(words.count('_'));
            if (at[1] == "line")
                items.push_back(LineItem{box.topLeft(), {number(4), number(5)}, number(6), color});
            else if (at[1] == "box")
                items.push_back(BoxItem{box, number(6), color, fill.isValid() ? fill : Qt::transparent});
            else if (at[1] == "picture") {
                items.push_back(PictureItem{box, QImage(2, 2, QImage::Format_RGB32)});
                std::get<PictureItem>(items.back()).picture.fill(color);
            } else
                items.push_back(TextItem{box, words.remove('_'), at[1] == "big", QColor::fromString(at[1]), empty});
        }
    }
    return document;
}

PreviewSteps::PreviewSteps(const QString& document) : m_preview(documentOf(document))
{
    const PageView* view = &this->view();
    connect(view, &PageView::currentPageChanged, this, [this, view](int page) {
        note(QStringLiteral("page %1").arg(page + 1) + (page == view->currentPage() ? "" : ", not shown"));
    });
    connect(view, &PageView::scrolled, this, [this] { note("scrolled"); });
    connect(view, &PageView::zoomChanged, this, [this] { note("zoom"); });
    connect(view, &PageView::selectionChanged, this, [this] { note("selection"); });
    QDesktopServices::setUrlHandler("file", this, "opened");
    QGuiApplication::clipboard()->clear();
    run("size 900 540");
}

QStringList PreviewSteps::picture() const
{
    if (!m_preview.window)
        return {"closed"};
    QStringList lines = pictureOf(*m_preview.window);
    lines.removeIf([](const QString& line) { return line.endsWith("], hidden"); });        // a list behind another
    lines.replaceInStrings(QRegularExpression("^((cboZoom|spnPage): .*), hidden"), "\\1"); // for lack of room
    QStringList off;
    for (const auto* action : m_preview.window->findChildren<QAction*>(QRegularExpression("^act")))
        off += action->isEnabled() ? QStringList() : QStringList(action->objectName().sliced(3));
    const QRectF box = view().pageBox(view().currentPage());
    lines += "off: " + off.join(' ');
    QMap<int, QString> column; // from top to bottom
    for (const char* part : {"vwPages", "findBar", "noticeBar"})
        if (const auto* shown = m_preview.child<QWidget>(part); shown->isVisible())
            column[shown->y()] = part;
    lines += "column: " + column.values().join(' ');
    lines += QString::asprintf("page: at %g, %g, %g x %g", box.left(), box.top(), box.width(), box.height());
    lines += "window: " + m_preview.window->windowTitle() +
             (m_preview.window->testAttribute(Qt::WA_QuitOnClose) ? ", and the program runs as long" : "");
    lines += "described: " + view().accessibleDescription() + "; " +
             m_preview.child<QComboBox>("cboZoom")->accessibleDescription();
    QPoint marked;
    reader().selection(0, &marked.rx(), &marked.ry());
    lines += QString::asprintf("reader: at %d, %d to %d marked", reader().cursorPosition(), marked.x(), marked.y());
    lines += "pointer: " + QVariant::fromValue(view().viewport()->cursor().shape()).toString() +
             (view().viewport()->hasMouseTracking() ? "" : ", only pressed");
    if (m_preview.child<QWidget>("qt_tabwidget_tabbar")->isVisible())
        lines += "tabs:";
    if (const auto* outline = m_preview.child<QTreeWidget>("treOutline"))
        lines += "entry: " + outline->currentItem()->text(0);
    return lines + QStringList(("clipboard: " + QGuiApplication::clipboard()->text().replace('\n', "\\n")).trimmed());
}

QStringList PreviewSteps::run(const QString& step)
{
    const QString word = step.section(' ', 0, 0), rest = step.section(' ', 1);
    const auto part = [&](int i) { return rest.section(' ', i, i); };
    const auto number = [&](int i) { return part(i).toInt(); };
    const auto point = [&](int i) { return QPointF(part(i).toDouble(), part(i + 1).toDouble()); };
    m_told.clear();
    QStringList seen;
    if (word == "key") {
        const QKeyCombination key = QKeySequence(rest)[0];
        QTest::keyClick(QApplication::focusWidget(), key.key(), key.keyboardModifiers());
    } else if (word == "type")
        for (const QChar c : rest)
            QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, c, Qt::NoModifier);
    else if (word == "wheel") {
        const QPointF at(100, 200);
        QWheelEvent event(at, view().viewport()->mapToGlobal(at), {}, {0, 120 * number(0)}, Qt::NoButton,
                          part(1) == "Ctrl" ? Qt::ControlModifier : Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view().viewport(), &event);
    } else if (word == "size") // of what shows the pages
        m_preview.window->resize(m_preview.window->size() + QSize(number(0), number(1)) - view().viewport()->size());
    else if (word == "do")
        action(rest).trigger();
    else if (word == "click")
        click(part(0), number(1));
    else if (word == "focus")
        m_preview.child<QWidget>(rest)->setFocus(Qt::TabFocusReason);
    else if (word == "show")
        m_preview.window->setDocument(documentOf(rest));
    else if (word == "goto")
        view().goToPage(number(0) - 1, number(1));
    else if (word == "tell")
        m_preview.window->tell(rest);
    else if (word == "notice")
        m_preview.window->findChild<NoticeBar*>()->tell("saved", rest);
    else if (word == "commands")
        seen += commands();
    else if (word == "menus") // which some desktops show elsewhere
        m_preview.window->menuBar()->setVisible(rest != "elsewhere");
    else if (word == "traits") {
        const auto *across = view().horizontalScrollBar(), *down = view().verticalScrollBar();
        seen += traitsOf(*m_preview.window) + placesOf(*m_preview.window)
                << QString::asprintf("place of the pages: %d and %d at once, %d and %d by arrows, opened in %dx%d, "
                                     "zooms without scrolling: %d",
                                     across->pageStep(), down->pageStep(), across->singleStep(), down->singleStep(),
                                     m_preview.opened.width(), m_preview.opened.height(),
                                     m_preview.child<QComboBox>("cboZoom")->maxVisibleItems());
    } else if (word == "color") { // at a point of a page
        const QPoint there = view().inViewport(number(0) - 1, {point(1), QSizeF()}).topLeft().toPoint();
        const QImage image = view().viewport()->grab().toImage();
        seen += image.valid(there) ? image.pixelColor(there).name() : "beyond the window";
    } else if (word == "read")
        seen += QStringList{reader().text(0, reader().characterCount()).replace('\n', "\\n"), readerParts()};
    else if (word == "line") { // the line at a place of the text, and the letter there
        QPoint ends;
        const QString line = reader().textAtOffset(number(0), QAccessible::LineBoundary, &ends.rx(), &ends.ry());
        const QRect letter = reader().characterRect(number(0));
        const QRect at =
            letter.isEmpty() ? QRect() : QRect(view().viewport()->mapFromGlobal(letter.topLeft()), letter.size());
        QDebug(&seen.emplaceBack()).nospace() << ends << line << at << reader().offsetAtPoint(letter.center());
    } else if (word == "at")
        seen += QString::number(reader().offsetAtPoint(view().viewport()->mapToGlobal(point(0).toPoint())));
    else if (word == "caret")
        reader().setCursorPosition(number(0));
    else if (word == "mark")
        reader().addSelection(number(0), number(1));
    else if (word == "select")
        reader().setSelection(0, number(0), number(1));
    else if (word == "unmark")
        reader().removeSelection(0);
    else if (word == "bring")
        reader().scrollToSubstring(number(0), number(1));
    else if (word == "find") // an underscore stands for a blank
        for (const TextSpan& hit : findText(*view().document(), QString(rest).replace('_', ' '))) {
            const PageText text(*view().document(), hit.page);
            seen += QString::number(text.boxes(hit.from, hit.to).size()) + ": " +
                    text.text().mid(hit.from, hit.to - hit.from).replace(PageText::LineBreak, "\\n");
        }
    else if (word == "across" || word == "down") { // the colours along a line, and where each begins
        QImage image = m_preview.child<QAbstractScrollArea>(part(0))->viewport()->grab().toImage();
        image = word == "down" ? image.transformed(QTransform(0, 1, 1, 0, 0, 0)) : image;
        QString colors, last;
        for (int i = 0; image.valid(i, number(1)); ++i)
            if (const QString color = image.pixelColor(i, number(1)).name(); std::exchange(last, color) != color)
                colors += QString(" %1 %2").arg(i).arg(color);
        seen += "paint of " + rest + ':' + colors;
    } else if (QStringList({"press", "right", "drag", "move", "release", "double", "twice"}).contains(word))
        mouse(word, number(0) - 1, point(1), part(3) == "Shift");
    else
        fail("no such step: " + step);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return seen + (m_told.isEmpty() ? QStringList() : QStringList("told: " + m_told.join(", ")));
}

QStringList PreviewSteps::commands() const
{
    QStringList lines;
    const auto* tools = m_preview.child<QToolBar>("tlbPreview");
    QList<const QWidget*> holders{tools, &view()};
    for (const auto* menu : m_preview.window->menuBar()->findChildren<QMenu*>())
        holders += menu->title().isEmpty() ? QList<const QWidget*>() : QList<const QWidget*>{menu};
    for (const QWidget* holder : std::as_const(holders))
        for (auto* action : holder->actions()) {
            const auto* shown = holder == tools && !action->isSeparator() ? tools->widgetForAction(action) : nullptr;
            const QString sign = !action->isVisible() ? "hidden" : action->icon().isNull() ? "no sign" : "sign";
            lines += QStringList{holder->windowTitle() + holder->property("title").toString(),
                                 shown ? shown->accessibleName() : action->text(),
                                 QKeySequence::listToString(action->shortcuts()), action->toolTip(), sign}
                         .join(" | ");
        }
    const std::unique_ptr<QMenu> bars(m_preview.window->createPopupMenu()); // over the tool bar
    for (const auto* bar : bars->actions())
        lines += bar->isSeparator() ? QStringList()
                                    : QStringList("hides " + bar->text() + (bar->isEnabled() ? "" : ", off"));
    const auto* pages = m_preview.child<QListView>("lstPages")->model();
    lines += "first of lstPages is read as " + pages->index(0, 0).data(Qt::AccessibleTextRole).toString();
    const QRegularExpression ours("^[a-z]{2,3}[A-Z]|_lineedit$"); // not Qt's other parts
    for (const auto* part : m_preview.window->findChildren<QWidget*>(ours))
        if (!part->accessibleName().isEmpty())
            lines += part->objectName() + " is read as " + part->accessibleName();
    return lines;
}

// What a screen reader works with.
QAccessibleTextInterface& PreviewSteps::reader() const
{
    return *QAccessible::queryAccessibleInterface(&view())->textInterface();
}

QString PreviewSteps::readerParts() const
{
    auto* page = QAccessible::queryAccessibleInterface(&view());
    const QAccessible::State state = page->state();
    QString parts;
    QDebug out(&parts);
    out << page->role() << page->text(QAccessible::Value).size() << page->text(QAccessible::Name)
        << bool(state.readOnly) << bool(state.multiLine) << bool(state.selectableText)
        << page->textInterface()->selectionCount();
    for (int child = 0; child < page->childCount(); ++child)
        out << page->child(child)->object()->objectName() << page->indexOfChild(page->child(child));
    int from = -1, to = -1;
    page->textInterface()->attributes(3, &from, &to);
    out << from << to;
    return parts.trimmed();
}

QAction& PreviewSteps::action(const QString& name) const
{
    for (auto* action : m_preview.window->findChildren<QAction*>())
        if (action->objectName() == "act" + name || action->text().remove('&') == name)
            return *action;
    fail("no such action: " + name);
    throw 0;
}

void PreviewSteps::click(const QString& name, int row) const
{
    auto* control = m_preview.child<QWidget>(name);
    if (const auto* rows = qobject_cast<QAbstractItemView*>(control))
        QTest::mouseClick(rows->viewport(), Qt::LeftButton, {},
                          rows->visualRect(rows->model()->index(row - 1, 0)).center());
    else
        QTest::mouseClick(control, Qt::LeftButton);
}

void PreviewSteps::mouse(const QString& word, int page, QPointF point, bool shift) const
{
    const QPointF at = view().inViewport(page, {point, QSizeF()}).topLeft();
    const bool pressed = word == "press" || word == "right";
    const auto type = pressed                               ? QEvent::MouseButtonPress
                      : word == "double" || word == "twice" ? QEvent::MouseButtonDblClick
                      : word == "release"                   ? QEvent::MouseButtonRelease
                                                            : QEvent::MouseMove;
    const auto button = word == "right" || word == "twice" ? Qt::RightButton : Qt::LeftButton;
    const auto held = pressed || word == "drag" ? button : Qt::NoButton;
    QMouseEvent event(type, at, view().viewport()->mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button,
                      held, shift ? Qt::ShiftModifier : Qt::NoModifier);
    QApplication::sendEvent(view().viewport(), &event);
}

} // namespace orlo::test
