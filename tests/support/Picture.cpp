#include "support/Picture.h"

#include "support/Controls.h"
#include "widgets/Glyphs.h"

#include <QTest>
#include <QtWidgets/QtWidgets>

namespace orlo::test
{

namespace
{

QString quoted(QString text)
{
    return u'"' + text.replace(u'\n', QStringLiteral("\\n")) + u'"';
}

// Rows with a star at a chosen one, or at the current cell where cells are chosen, behind their own marks. Those of a
// tree that are in sight, with ">" for each level.
QString rowsOf(const QAbstractItemView& view, What what)
{
    const auto* table = qobject_cast<const QTableView*>(&view);
    const auto* tree = qobject_cast<const QTreeView*>(&view);
    const bool areCells = view.selectionBehavior() == QAbstractItemView::SelectItems && table;
    const QAbstractItemModel& model = *view.model();
    const auto line = [&](const auto& cell) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            if (!table || !table->isColumnHidden(column))
                cells += cell(column);
        return cells.join(u'/');
    };
    const auto alignment = [&](int column) {
        const auto aligned = Qt::Alignment(model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt());
        return what == What::Changing ? "" : aligned & Qt::AlignRight ? ">" : aligned & Qt::AlignHCenter ? "^" : "";
    };
    QStringList rows;
    if (table)
        rows += line([&](int c) { return model.headerData(c, Qt::Horizontal).toString() + alignment(c); }) + u':';
    const auto next = [&](const QModelIndex& at) { return tree ? tree->indexBelow(at) : model.index(at.row() + 1, 0); };
    for (QModelIndex at = model.index(0, 0); at.isValid(); at = next(at)) {
        const auto chosen = !areCells && view.selectionModel()->isRowSelected(at.row(), at.parent());
        const auto tick = at.data(Qt::CheckStateRole).toInt();
        const auto cell = [&](int column) {
            const bool current = areCells && view.currentIndex() == at.siblingAtColumn(column);
            return (current ? "*" : "") + at.siblingAtColumn(column).data().toString();
        };
        const QString mark = areCells ? model.headerData(at.row(), Qt::Vertical).toString()
                                      : QString(tree ? tree->visualRect(at).left() / tree->indentation() - 1 : 0, '>');
        rows += mark + (mark.isEmpty() ? "" : " ") + (chosen ? "*" : "") + (tick ? "x " : "") + line(cell);
    }
    return '[' + rows.join("; ") + ']';
}

// How a list or grid works, whatever it holds.
QString manners(const QAbstractItemView& view)
{
    QStringList words{QVariant::fromValue(view.selectionMode()).toString(),
                      QVariant::fromValue(view.selectionBehavior()).toString()};
    const auto add = [&](bool so, const char* word) { words += so ? QStringList(word) : QStringList(); };
    add(view.editTriggers() & QAbstractItemView::AnyKeyPressed, "typed");
    add(view.alternatingRowColors(), "striped");
    add(view.tabKeyNavigation(), "keeps Tab");
    add(view.horizontalScrollMode() == QAbstractItemView::ScrollPerPixel, "smooth");
    if (const auto* table = qobject_cast<const QTableView*>(&view)) {
        add(table->wordWrap(), "wraps");
        const auto* headings = table->horizontalHeader();
        add(headings->sectionsClickable() || headings->highlightSections(), "pressed headings");
    }
    return words.join(u' ');
}

// What there is to say of the widths of a shown grid's columns; nothing if they fill it.
QStringList widthsOf(const QAbstractItemView& view)
{
    const auto* table = qobject_cast<const QTableView*>(&view);
    if (!table || !view.isVisible())
        return {};
    const auto* headings = table->horizontalHeader();
    QStringList words;
    if (headings->length() < view.viewport()->width())
        words += "spare room";
    if (view.horizontalScrollBar()->maximum() > 0)
        words += "scrolls";
    for (int column = 0; column < headings->count(); ++column)
        if (view.selectionBehavior() == QAbstractItemView::SelectItems && !table->isColumnHidden(column) &&
            headings->sectionSize(column) < headings->sectionSizeHint(column))
            words += "cut heading";
    for (int column = 1; column < headings->count(); ++column) // such as keys, which belong beside the view
        if (view.model()->headerData(column, Qt::Horizontal).toString().isEmpty() && !table->isColumnHidden(column) &&
            table->columnViewportPosition(column) < view.viewport()->width())
            words += "untitled column";
    return words;
}

QString stateOf(const QWidget& control, What what)
{
    QStringList state;
    const auto add = [&](bool so, const QString& text) { state += so ? QStringList(text) : QStringList(); };
    const bool all = what == What::Everything;
    const bool focused = control.window()->focusWidget() == &control; // also while a box is up
    if (const auto* box = qobject_cast<const QLineEdit*>(&control)) {
        state += quoted(box->text());
        add(all && box->maxLength() < 32767, "at most " + QString::number(box->maxLength()));
        add(box->isReadOnly(), "read only");
        add(box->hasSelectedText(), "marked " + quoted(box->selectedText()));
        add(!focused && box->cursorPosition() > 0, QString("cursor at %1").arg(box->cursorPosition()));
    } else if (const auto* number = qobject_cast<const QAbstractSpinBox*>(&control))
        state += quoted(number->text());
    else if (const QVariant text = control.property("plainText"); text.isValid())
        state += quoted(text.toString());
    else if (const auto* combo = qobject_cast<const QComboBox*>(&control)) {
        state += quoted(combo->currentText());
        add(all && combo->isEditable(), "typed");
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) {
        const auto* push = qobject_cast<const QPushButton*>(button);
        state += quoted(button->text());
        add(button->isChecked(), "chosen");
        add(push && push->isDefault() && (all || !focused), "default"); // the focused one looks so, too
    } else if (const auto* label = qobject_cast<const QLabel*>(&control)) {
        state += quoted(label->text());
        add(all && label->alignment() & Qt::AlignHCenter, "centred");
        add(all && label->autoFillBackground(), "on a ground of its own");
        add(all && label->textFormat() == Qt::PlainText, "plain");
        add(label->buddy(), "of " + (label->buddy() ? label->buddy()->objectName() : QString()));
    } else if (const auto* group = qobject_cast<const QGroupBox*>(&control))
        add(!group->title().isEmpty(), quoted(group->title()));
    else if (const auto* tabs = qobject_cast<const QTabWidget*>(&control))
        for (int page = 0; page < tabs->count(); ++page)
            state += (page == tabs->currentIndex() ? "*" : "") + quoted(tabs->tabText(page));
    else if (const auto* calendar = qobject_cast<const QCalendarWidget*>(&control))
        state += calendar->selectedDate().toString(Qt::ISODate) +
                 QString(" of %1/%2").arg(calendar->monthShown()).arg(calendar->yearShown());
    else if (const auto* view = qobject_cast<const QAbstractItemView*>(&control))
        state += QStringList(rowsOf(*view, what) + (all ? ", " + manners(*view) : QString())) + widthsOf(*view);
    else if (const auto* area = qobject_cast<const QScrollArea*>(&control); area && area->widget() && all) {
        add(area->frameShape() != QFrame::NoFrame, "framed");
        add(area->viewport()->autoFillBackground() || area->widget()->autoFillBackground(), "filled");
    }
    const bool says = !state.isEmpty();
    if (!says && qobject_cast<QStackedWidget*>(control.parentWidget()))
        return {}; // a page, which its tab shows
    add(says && all && !control.accessibleName().isEmpty(), "called " + quoted(control.accessibleName()));
    add(says && all && !control.toolTip().isEmpty(), "tip " + quoted(control.toolTip()));
    add(!control.isEnabledTo(control.parentWidget()), "off");
    add(control.isHidden() && !qobject_cast<const QMenu*>(&control), "hidden");
    for (const char* size : {"chars", "mostChars", "edge"})
        add(says && all && control.property(size).isValid(), size + (' ' + control.property(size).toString()));
    return state.join(", ");
}

// The glyph on a button or a command, whatever its colour.
QString glyphOf(const QIcon& icon)
{
    static const auto Names = {"First", "Previous", "Next", "Last", "ZoomIn", "ZoomOut", "Find",  "Up",
                               "Down",  "Print",    "Pdf",  "Csv",  "Pages",  "Refresh", "Close", "Calendar"};
    const auto shape = [](const QIcon& drawing) {
        return drawing.pixmap(24).toImage().convertToFormat(QImage::Format_Alpha8);
    };
    for (int glyph = 0; const char* name : Names)
        if (shape(widgets::glyphIcon(widgets::Glyph(glyph++))) == shape(icon))
            return QStringLiteral(" glyph ") + name;
    return QStringLiteral(" another icon");
}

bool isOwn(const QWidget& control)
{
    const bool isOfThisMachine =
        control.inherits("orlo::widgets::FolderList") || control.inherits("orlo::widgets::DriveList");
    return !isOfThisMachine && !control.objectName().isEmpty() && !control.objectName().startsWith("qt") &&
           !qobject_cast<QComboBox*>(control.parentWidget()) && !qobject_cast<QTabBar*>(control.parentWidget());
}

// The controls that the screen still shows as they were, since nothing told them to paint themselves again.
QStringList staleOf(QWidget& form)
{
    QImage shown, due;
    for (int turn = 0; turn < 3 && (turn == 0 || shown != due); ++turn) { // some wait for a moment without work
        QCoreApplication::processEvents();
        shown = form.screen()->grabWindow(form.winId()).toImage().convertToFormat(QImage::Format_RGB32);
        due = form.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    QStringList names;
    for (const auto* control : shown.size() == due.size() ? form.findChildren<QWidget*>() : QWidgetList())
        if (const QRect at(control->mapTo(&form, QPoint()), control->size());
            shown != due && isOwn(*control) && control->isVisible() && shown.copy(at) != due.copy(at))
            names += control->objectName();
    return names.isEmpty() ? names : QStringList("paint of before, still shown: " + names.join(' '));
}

} // namespace

QStringList pictureOf(const QWidget& form, What what)
{
    const QWidget* modal = QApplication::activeModalWidget();
    const bool behind = modal && modal != &form; // a box whose answer is under way takes no events
    QStringList lines;
    for (const auto* control : form.findChildren<QWidget*>()) {
        if (const QString state = isOwn(*control) ? stateOf(*control, what) : QString(); !state.isEmpty())
            lines += control->objectName() + ": " + state;
        if (const auto* box = qobject_cast<const QComboBox*>(control); box && isOwn(*box))
            lines += box->objectName() + " offers: [" + textsOf(*box) + ']';
    }
    QStringList parts; // that nobody sees, but outside programs find
    for (const auto* part : form.findChildren<QObject*>())
        if (!part->isWidgetType() && !part->objectName().isEmpty() && !part->objectName().startsWith('_') &&
            !part->objectName().startsWith("qt") && !qobject_cast<const QLayout*>(part))
            parts += part->objectName();
    if (what == What::Everything && !parts.isEmpty())
        lines += "parts: " + parts.join(' ');
    const auto* focus = form.focusWidget();
    const bool isEditor = focus && focus->objectName().isEmpty() && focus->parentWidget();
    const auto* place = isEditor ? focus->parentWidget()->parentWidget() : focus;
    return lines +
           QStringList("focus: " + (place ? place->objectName() : "nothing") +
                       (isEditor ? ", typing " + stateOf(*focus, what) : "")) +
           (isPainted ? paintOf(form) : QStringList()) +
           (form.isWindow() && form.isVisible() && !behind ? staleOf(const_cast<QWidget&>(form)) : QStringList());
}

QStringList changesOf(const QStringList& before, const QStringList& now)
{
    QStringList changes;
    for (const QString& line : now.size() > 1 ? before : QStringList()) // a form that was closed shows nothing
        if (const QString name = line.section(u':', 0, 0);
            !now.contains(line) && now.filter(QRegularExpression(u'^' + name + u':')).isEmpty() &&
            !name.startsWith(u"paint of"))
            changes += name + ": -";
    for (const QString& line : now)
        changes += before.contains(line) ? QStringList() : QStringList(line);
    return changes;
}

void comparePicture(const QStringList& seen, const QString& wanted)
{
    QStringList shown = seen, lines = wanted.trimmed().split(u'\n');
    const bool others =
        QSysInfo::productType() == u"windows" || QFontInfo(QApplication::font()).family() != u"DejaVu Sans";
    const bool paintsOtherwise = others || !QLatin1String(qVersion()).startsWith(QLatin1String("6.4."));
    for (QStringList* either : {&shown, &lines}) // other letters take other room, another Qt has other words
        either->removeIf([&](const QString& line) {
            return (others && (line.startsWith(u"place of ") || line.startsWith(u"how "))) ||
                   (paintsOtherwise && line.startsWith(u"paint of "));
        });
    if (std::exchange(isPainted, false))
        QApplication::setPalette(QPalette());
    if (shown != lines)
        qWarning("%s", qPrintable(seen.join(u'\n')));
    QCOMPARE(shown, lines);
}

QStringList tabOrderOf(const QWidget& form)
{
    QStringList lines;
    int place = 0;
    for (const auto* at = form.nextInFocusChain(); at != &form; at = at->nextInFocusChain())
        if ((at->focusPolicy() & Qt::TabFocus) && form.isAncestorOf(at) && isOwn(*at) && !at->focusProxy()) {
            if (place++ % 8 == 0)
                lines += "Tab: " + at->objectName();
            else
                lines.last() += ' ' + at->objectName();
        }
    return lines;
}

QStringList shapeOf(const QWidget& form)
{
    const auto size = [](const QWidget& part) { return QString("%1x%2").arg(part.width()).arg(part.height()); };
    QStringList lines;
    for (const auto* control : form.findChildren<QWidget*>()) {
        if (!control->isVisible() || control->objectName().isEmpty() || control->objectName().startsWith("qt_"))
            continue;
        lines += control->objectName() + ": " + size(*control);
        const auto* table = qobject_cast<const QTableView*>(control);
        for (int column = 0; table && column < table->model()->columnCount(); ++column)
            lines.last() += QString(", %1").arg(table->columnWidth(column));
        for (const auto* heading : control->findChildren<QHeaderView*>(Qt::FindDirectChildrenOnly))
            lines.last() += QString(", %1 by %2").arg(size(*heading)).arg(heading->defaultSectionSize());
        if (const auto* area = qobject_cast<const QAbstractScrollArea*>(control))
            for (const auto* bar : {area->horizontalScrollBar(), area->verticalScrollBar()})
                lines.last() += QString(", scrolls %1").arg(bar->maximum());
    }
    return lines;
}

QStringList placesOf(const QWidget& form)
{
    QStringList lines;
    for (const auto* control : form.findChildren<QWidget*>())
        if (const QPoint at = control->mapTo(&form, QPoint()); isOwn(*control) && control->isVisible())
            lines += QString::asprintf("place of %s: %d,%d %dx%d", qPrintable(control->objectName()), at.x(), at.y(),
                                       control->width(), control->height());
    return lines;
}

QStringList paintOf(const QWidget& form)
{
    struct Paint {
        int pixels = 0;
        QRect box;
        int run = 0; // the longest one of pixels side by side
    };
    constexpr int Letter = 12; // no letter has so long a run
    constexpr int Corner = 4;  // a round one mixes the colours around it
    constexpr int Alike = 60;  // such are the shades of a button, three lines high at most, which aren't told
    const auto distance = [](QRgb a, QRgb b) {
        return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
    };
    const auto told = [](const QString& color, const Paint& paint) {
        const QRect& box = paint.box;
        return QString::asprintf("; %s %d,%d %dx%d (%d)", qPrintable(color), box.x(), box.y(), box.width(),
                                 box.height(), paint.pixels);
    };
    const QImage image = const_cast<QWidget&>(form).grab().toImage().convertToFormat(QImage::Format_RGB32);
    QList<std::pair<QString, QRect>> controls{{isOwn(form) ? form.objectName() : "window", form.rect()}};
    QList<int> owners(image.width() * image.height()); // the innermost control at each pixel
    for (const auto* control : form.findChildren<QWidget*>()) {
        const bool ofBox = qobject_cast<const QComboBox*>(control->parentWidget());
        if (!control->isVisible() || control->window() != form.window() || control->objectName().isEmpty() ||
            control->objectName().startsWith("qt") || ofBox)
            continue;
        QRect place(control->mapTo(&form, QPoint()), control->size());
        for (const auto* around = control->parentWidget(); around != &form; around = around->parentWidget())
            place &= QRect(around->mapTo(&form, QPoint()), around->size());
        place &= image.rect();
        for (int y = place.top(); y <= place.bottom(); ++y)
            std::fill_n(owners.begin() + y * image.width() + place.left(), place.width(), int(controls.size()));
        controls.emplaceBack(isOwn(*control) ? control->objectName() : QString(), place);
    }
    QList<QMap<QRgb, Paint>> paints(controls.size());
    for (int y = 0; y < image.height(); ++y) {
        const auto* colors = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        const int* owner = owners.constData() + y * image.width();
        for (int x = 0, end = 0; x < image.width(); x = end) {
            while (end < image.width() && colors[end] == colors[x] && owner[end] == owner[x])
                ++end;
            const QRect& place = controls[owner[x]].second;
            const int cut = std::max(0, Corner - std::min(y - place.top(), place.bottom() - y));
            const int first = std::max(x, place.left() + cut), last = std::min(end - 1, place.right() - cut);
            if (first > last)
                continue;
            Paint& paint = paints[owner[x]][colors[x]];
            paint.pixels += last - first + 1;
            paint.box |= QRect(QPoint(first, y), QPoint(last, y)).translated(-place.topLeft());
            paint.run = std::max(paint.run, end - x);
        }
    }
    QStringList lines;
    for (qsizetype at = 0; at < paints.size(); ++at) {
        const auto& colors = paints[at];
        QList<QRgb> others = colors.keys();
        std::ranges::stable_sort(others, std::ranges::greater(), [&](QRgb color) { return colors[color].pixels; });
        if (controls[at].first.isEmpty() || others.isEmpty() ||
            (at > 0 && others == QList{form.palette().window().color().rgb()}))
            continue;
        QList<QRgb> areas{others.takeFirst()};
        QString line = "paint of " + controls[at].first + ": " + QColor(areas[0]).name();
        const auto isArea = [&](QRgb color) { return colors[color].run >= Letter; };
        QRgb ink = areas[0];
        for (const QRgb color : others)
            if (!isArea(color))
                ink = distance(color, areas[0]) > distance(ink, areas[0]) ? color : ink;
            else if (colors[color].pixels > 3 * colors[color].box.width() ||
                     std::ranges::none_of(areas, [&](QRgb area) { return distance(area, color) < Alike; })) {
                areas += color;
                line += told(QColor(color).name(), colors[color]);
            }
        Paint text;
        for (const QRgb color : others)
            if (!isArea(color) && 2 * distance(color, areas[0]) > distance(ink, areas[0])) {
                text.pixels += colors[color].pixels;
                text.box |= colors[color].box;
            }
        lines += line + (text.pixels > 0 ? told("ink " + QColor(ink).name(), text) : QString());
    }
    return lines;
}

void showColours(const QString& scheme)
{
    const bool light = scheme == "light", dark = scheme == "dark"; // otherwise with a stark contrast
    QPalette palette(QColor(light ? 0xefefef : dark ? 0x2d2f33 : 0x000000));
    palette.setColor(QPalette::Base, light ? 0xffffff : dark ? 0x1e2023 : 0x000000);
    palette.setColor(QPalette::Highlight, light ? 0x308cc6 : dark ? 0x4678be : 0x707000);
    palette.setColor(QPalette::HighlightedText, light || dark ? Qt::white : Qt::black);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) // as faint as on some desktops
        palette.setColor(QPalette::Disabled, role, light ? 0xbebebe : dark ? 0x55575b : 0x3ff23f);
    QApplication::style()->polish(palette); // as it polishes the desktop's
    QApplication::setPalette(palette);
    isPainted = true;
}

QStringList traitsOf(const QWidget& form)
{
    static const QStringList OfControls =
        QString("focusPolicy contextMenuPolicy frameShape alignment textFormat wordWrap textInteractionFlags "
                "buttonSymbols autoRaise documentMode usesScrollButtons features movable iconSize clearButtonEnabled "
                "keyboardTracking insertPolicy headerHidden uniformRowHeights uniformItemSizes autoDefault toolTip "
                "verticalScrollMode tabBarAutoHide windowTitle")
            .split(' ');
    static const QStringList OfCommands{"text", "shortcut", "checkable", "toolTip"};
    static const QRegularExpression around("QVariant\\(\\S+, (.*)\\)|QFlags<\\S+>\\((.*)\\)"),
        usual(" focusPolicy Qt::NoFocus| contextMenuPolicy Qt::Default\\w+| iconSize QSize\\(\\S+ (16|-1)\\)"
              "| shortcut QKeySequence\\(\"\"\\)"
              "| textFormat Qt::AutoText| textInteractionFlags Links\\w+| frameShape QFrame::NoFrame"
              "| alignment (AlignLeading\\|AlignVCenter|AlignLeft\\|AlignLeading)");
    QStringList lines;
    for (const auto* part : form.findChildren<QObject*>()) {
        const auto* control = qobject_cast<const QWidget*>(part);
        const auto* command = qobject_cast<const QAction*>(part);
        if (control ? !isOwn(*control)
                    : !command || command->objectName().isEmpty() || command->objectName().startsWith('_'))
            continue;
        QString words;
        for (const QString& name : command ? OfCommands : OfControls)
            if (const QVariant value = part->property(name.toLatin1().constData());
                value.isValid() && value != false && value != "") {
                QString text;
                QDebug(&text).nospace() << value;
                words += QString(" %1 %2").arg(name, text.replace(around, "\\1").replace(around, "\\2"));
            }
        if (const auto* area = qobject_cast<const QAbstractScrollArea*>(part))
            words += u' ' + QVariant::fromValue(area->viewport()->backgroundRole()).toString();
        if (const QIcon icon = part->property("icon").value<QIcon>(); !icon.isNull())
            words += glyphOf(icon);
        words.remove(usual);
        lines += words.isEmpty() ? QStringList() : QStringList("how " + part->objectName() + ':' + words);
    }
    return lines;
}

} // namespace orlo::test
