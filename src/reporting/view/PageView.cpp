#include "reporting/view/PageView.h"

#include "reporting/view/PageReader.h"
#include "reporting/view/Sheet.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace orlo::reporting
{

namespace
{

constexpr double Gap = 16; // pixels around each page
constexpr double ZoomStep = 1.1;
constexpr int LineStep = 40;        // pixels per arrow key
constexpr double BlankEdge = 0.045; // the part of a page's height at its bottom that is always blank
constexpr int NearEdge = 12;        // pixels from the edge within which selecting scrolls

const QColor FoundColor(255, 238, 140);
const QColor CurrentFoundColor(255, 190, 90);
const QColor SelectedColor(170, 205, 245);

} // namespace

PageView::PageView(std::shared_ptr<const Document> document, QWidget* parent)
    : QAbstractScrollArea(parent), m_document(std::move(document))
{
    makePagesReadable();
    setObjectName(QStringLiteral("vwPages"));
    setAccessibleName(QStringLiteral("Report pages"));
    setFrameShape(QFrame::NoFrame);
    viewport()->setBackgroundRole(QPalette::Dark);
    viewport()->setCursor(Qt::OpenHandCursor);
    viewport()->setMouseTracking(true);
    horizontalScrollBar()->setSingleStep(LineStep);
    verticalScrollBar()->setSingleStep(LineStep);
    describePage();
}

void PageView::setDocument(std::shared_ptr<const Document> document)
{
    m_document = std::move(document);
    setHits({}, -1);
    if (m_drag == Drag::Marking) // the selection began in the old pages
        m_drag = Drag::None;
    m_selection.clear();
    selectionMoved();
    if (const double zoom = m_fit == Fit::None ? m_zoom : fittingZoom(); zoom == m_zoom)
        layOut();
    else // the paper is another
        rescale(zoom, QPointF(viewport()->width() / 2.0, Gap));
    if (m_currentPage >= pageCount())
        noteCurrentPage();
    describePage();
}

int PageView::pageCount() const
{
    return static_cast<int>(m_document->pages.size());
}

void PageView::goToPage(int page, double top)
{
    page = std::clamp(page, 0, std::max(pageCount() - 1, 0));
    const double y = pageTop(page) + top * pageSize().height() / m_document->paper.height();
    {
        const QScopedValueRollback<bool> keep(m_goingToPage, true);
        verticalScrollBar()->setValue(static_cast<int>(std::lround(y - Gap)));
    }
    // If several pages fit into the window, not all of them can scroll to its top.
    setCurrentPage(page);
    Q_EMIT scrolled();
}

double PageView::currentTop() const
{
    const QRectF sheet = pageBox(m_currentPage);
    return std::max(viewport()->height() / 8.0 - sheet.top(), 0.0) * m_document->paper.height() / sheet.height();
}

void PageView::setZoom(double zoom)
{
    m_fit = Fit::None;
    // At the start of the document keep the top fixed, elsewhere the middle of the window.
    const double y = verticalScrollBar()->value() == 0 ? Gap : viewport()->height() / 2.0;
    rescale(zoom, QPointF(viewport()->width() / 2.0, y));
}

void PageView::setFit(Fit fit)
{
    m_fit = fit;
    rescale(fittingZoom(), QPointF(viewport()->width() / 2.0, Gap));
    Q_EMIT zoomChanged(); // the way to fit is new even where the scale isn't
}

void PageView::setHits(std::vector<TextSpan> hits, int current)
{
    m_hits = std::move(hits);
    m_currentHit = current;
    viewport()->update();
}

QRectF PageView::pageBox(int page) const
{
    const QSizeF size = pageSize();
    const double free = viewport()->width() - size.width();
    const double left = free > 2 * Gap ? std::floor(free / 2) : Gap - horizontalScrollBar()->value();
    return {QPointF(left, pageTop(page) - verticalScrollBar()->value()), size};
}

void PageView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    const int scrolled = verticalScrollBar()->value();
    const int first = pageAt(event->rect().top() + scrolled - Gap);
    const int last = std::min(pageAt(event->rect().bottom() + scrolled + Gap), pageCount() - 1);
    for (int page = first; page <= last; ++page) {
        const QRectF sheet = pageBox(page);
        paintShadow(painter, sheet);
        paintSheet(painter, sheet, *m_document, page);
    }
    painter.setPen(Qt::NoPen);
    painter.setCompositionMode(QPainter::CompositionMode_Multiply); // as a marker pen does: the text stays black
    auto hit = std::lower_bound(m_hits.begin(), m_hits.end(), first,
                                [](const TextSpan& span, int page) { return span.page < page; });
    for (int page = first; page <= last && (hit != m_hits.end() || !m_selection.isEmpty()); ++page) {
        const PageText text(*m_document, page);
        paintSpan(painter, text, m_selection.on(page, text), SelectedColor);
        for (; hit != m_hits.end() && hit->page == page; ++hit)
            paintSpan(painter, text, *hit, hit - m_hits.begin() == m_currentHit ? CurrentFoundColor : FoundColor);
    }
}

void PageView::resizeEvent(QResizeEvent*)
{
    if (m_fit == Fit::None)
        layOut();
    else
        rescale(fittingZoom(), QPointF(viewport()->width() / 2.0, Gap));
    noteCurrentPage();
}

void PageView::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Home:
        goToPage(0);
        break;
    case Qt::Key_End:
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
        break;
    case Qt::Key_PageDown:
        readOn(1);
        break;
    case Qt::Key_PageUp:
        readOn(-1);
        break;
    case Qt::Key_Space:
        readOn(event->modifiers() & Qt::ShiftModifier ? -1 : 1);
        break;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void PageView::wheelEvent(QWheelEvent* event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    const double notches = event->angleDelta().y() / 120.0;
    if (notches != 0) {
        m_fit = Fit::None;
        rescale(m_zoom * std::pow(ZoomStep, notches), event->position());
    }
    event->accept();
}

// A press on text selects, one beside it drags the paper.
void PageView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragFrom = event->position().toPoint();
    const bool marking = isTextAt(event->position());
    m_drag = marking ? Drag::Marking : Drag::Moving;
    if (!marking)
        viewport()->setCursor(Qt::ClosedHandCursor);
    if (marking)
        m_selection.begin(placeAt(event->position()), event->modifiers() & Qt::ShiftModifier);
    else
        m_selection.clear();
    selectionMoved();
}

void PageView::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton) || m_drag == Drag::None) {
        viewport()->setCursor(isTextAt(event->position()) ? Qt::IBeamCursor : Qt::OpenHandCursor);
        return;
    }
    if (m_drag == Drag::Marking) {
        const int y = event->position().toPoint().y();
        if (y < NearEdge || y > viewport()->height() - NearEdge)
            verticalScrollBar()->setValue(verticalScrollBar()->value() + (y < NearEdge ? -LineStep : LineStep));
        m_selection.extendTo(placeAt(event->position()));
        selectionMoved();
        return;
    }
    const QPoint moved = event->position().toPoint() - m_dragFrom;
    m_dragFrom += moved;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - moved.y());
}

void PageView::mouseReleaseEvent(QMouseEvent* event)
{
    m_drag = Drag::None;
    viewport()->setCursor(isTextAt(event->position()) ? Qt::IBeamCursor : Qt::OpenHandCursor);
}

void PageView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !isTextAt(event->position()))
        return;
    m_selection.takeWord(*m_document, placeAt(event->position()));
    selectionMoved();
}

void PageView::select(const TextSpan& span)
{
    m_selection.begin({span.page, span.from}, false);
    m_selection.extendTo({span.page, span.to});
    selectionMoved();
}

void PageView::selectAll()
{
    m_selection.takeAll(*m_document);
    selectionMoved();
}

void PageView::copy() const
{
    m_selection.copy(*m_document);
}

QPointF PageView::onPage(int page, QPointF inViewport) const
{
    const QRectF sheet = pageBox(page);
    return (inViewport - sheet.topLeft()) * (m_document->paper.width() / sheet.width());
}

QRectF PageView::inViewport(int page, const QRectF& box) const
{
    const QRectF sheet = pageBox(page);
    const double scale = sheet.width() / m_document->paper.width();
    return {sheet.topLeft() + box.topLeft() * scale, box.size() * scale};
}

TextPlace PageView::placeAt(QPointF inViewport) const
{
    const int page = pageAt(inViewport.y() + verticalScrollBar()->value());
    return {page, PageText(*m_document, page).placeAt(onPage(page, inViewport))};
}

bool PageView::isTextAt(QPointF inViewport) const
{
    const int page = pageAt(inViewport.y() + verticalScrollBar()->value());
    return page < pageCount() && PageText(*m_document, page).isTextAt(onPage(page, inViewport));
}

void PageView::selectionMoved()
{
    viewport()->update();
    Q_EMIT selectionChanged();
}

void PageView::paintSpan(QPainter& painter, const PageText& text, const TextSpan& span, const QColor& color) const
{
    painter.setBrush(color);
    for (const QRectF& box : text.boxes(span.from, span.to))
        painter.drawRoundedRect(inViewport(span.page, box).adjusted(-1, -1, 1, 1), 2, 2);
}

void PageView::scrollContentsBy(int, int)
{
    viewport()->update();
    noteCurrentPage();
    if (!m_goingToPage)
        Q_EMIT scrolled();
}

QSizeF PageView::pageSize() const
{
    const QSizeF size = m_document->paper * (m_zoom * logicalDpiX() / PointsPerInch);
    return {std::round(size.width()), std::round(size.height())};
}

double PageView::pageTop(int page) const
{
    return Gap + page * (pageSize().height() + Gap);
}

int PageView::pageAt(double y) const
{
    const int page = static_cast<int>(std::floor((y - Gap / 2) / (pageSize().height() + Gap)));
    return std::clamp(page, 0, std::max(pageCount() - 1, 0));
}

double PageView::fittingZoom() const
{
    const QSizeF paper = m_document->paper * (logicalDpiX() / PointsPerInch);
    // Measured as if the scroll bar were there, so that it doesn't change the scale when it comes and goes.
    const int bar = verticalScrollBar()->isVisible() ? 0 : verticalScrollBar()->sizeHint().width();
    const double width = (viewport()->width() - bar - 2 * Gap) / paper.width();
    if (m_fit == Fit::Width)
        return width;
    if (m_fit == Fit::Shrink)
        return std::min(width, 1.0);
    return std::min(width, (viewport()->height() - 2 * Gap) / paper.height());
}

// Changes the scale and keeps the point of the document under the anchor in place.
void PageView::rescale(double zoom, QPointF anchor)
{
    zoom = std::clamp(zoom, MinZoom, MaxZoom);
    const int page = pageAt(verticalScrollBar()->value() + anchor.y());
    const QRectF before = pageBox(page);
    const double downPage = (anchor.y() - before.top()) / before.height();
    const double acrossPage = (anchor.x() - before.left()) / before.width();
    const bool changed = zoom != m_zoom;
    m_zoom = zoom;
    layOut();
    const QSizeF size = pageSize();
    verticalScrollBar()->setValue(static_cast<int>(std::lround(pageTop(page) + downPage * size.height() - anchor.y())));
    horizontalScrollBar()->setValue(static_cast<int>(std::lround(Gap + acrossPage * size.width() - anchor.x())));
    viewport()->update();
    noteCurrentPage();
    if (changed)
        Q_EMIT zoomChanged();
}

void PageView::layOut()
{
    const QSizeF size = pageSize();
    const double height = Gap + pageCount() * (size.height() + Gap);
    const double width = size.width() + 2 * Gap;
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, static_cast<int>(std::max(height - viewport()->height(), 0.0)));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setRange(0, static_cast<int>(std::max(width - viewport()->width(), 0.0)));
}

// Scrolls one window's height, but stops at the start of the next page or the end of the previous one, so that every
// page is read from its top. A page counts as read if only its blank bottom edge is hidden.
void PageView::readOn(int direction)
{
    QScrollBar* bar = verticalScrollBar();
    const int top = bar->value();
    const int height = viewport()->height();
    const int step = std::max(height - LineStep, 1);
    const double pageHeight = pageSize().height() + Gap;
    const int page = pageAt(top + Gap);
    const double start = pageTop(page) - Gap;
    const double end = start + pageHeight;
    const double edge = Gap + BlankEdge * pageHeight;
    if (direction > 0)
        bar->setValue(top + height >= end - edge ? static_cast<int>(std::lround(end))
                                                 : std::min(top + step, static_cast<int>(end) - 1));
    else if (top > static_cast<int>(start) + 1)
        bar->setValue(std::max(top - step, static_cast<int>(start)));
    else
        bar->setValue(static_cast<int>(pageHeight - height <= edge ? start - pageHeight : start - height));
}

void PageView::showHit()
{
    if (m_currentHit >= 0)
        bringIntoView(m_hits[static_cast<std::size_t>(m_currentHit)]);
}

void PageView::bringIntoView(const TextSpan& span)
{
    const std::vector<QRectF> boxes = PageText(*m_document, span.page).boxes(span.from, span.to);
    if (boxes.empty())
        return;
    const QRectF box = inViewport(span.page, boxes.front());
    if (!QRectF(viewport()->rect()).contains(box)) {
        const QScopedValueRollback<bool> keep(m_goingToPage, true);
        verticalScrollBar()->setValue(verticalScrollBar()->value() +
                                      static_cast<int>(box.center().y() - viewport()->height() / 2.0));
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() +
                                        static_cast<int>(box.center().x() - viewport()->width() / 2.0));
    }
    setCurrentPage(span.page);
    Q_EMIT scrolled();
}

// The current page is the one a quarter down the window, or the last one at the end.
void PageView::noteCurrentPage()
{
    if (m_goingToPage)
        return;
    const QScrollBar* bar = verticalScrollBar();
    const bool atEnd = bar->maximum() > 0 && bar->value() == bar->maximum();
    setCurrentPage(atEnd ? std::max(pageCount() - 1, 0) : pageAt(bar->value() + viewport()->height() / 4.0));
}

void PageView::setCurrentPage(int page)
{
    if (page == m_currentPage)
        return;
    m_currentPage = page;
    describePage();
    Q_EMIT currentPageChanged(page);
}

void PageView::describePage()
{
    setAccessibleDescription(QStringLiteral("Page %1 of %2").arg(m_currentPage + 1).arg(pageCount()));
    tellOfPage(*this);
}

} // namespace orlo::reporting
