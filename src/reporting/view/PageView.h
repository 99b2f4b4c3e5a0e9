#pragma once

#include "reporting/view/TextSelection.h"

#include <QAbstractScrollArea>

#include <memory>

namespace orlo::reporting
{

/// The pages of a document, one below the other; only visible ones are painted. Pages count from 0.
class PageView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    /// How the scale follows the window's size.
    enum class Fit {
        None,
        Shrink, ///< actual size, or less if the window is narrower
        Width,
        Page
    };

    static constexpr double MinZoom = 0.1;
    static constexpr double MaxZoom = 8;

    explicit PageView(std::shared_ptr<const Document> document, QWidget* parent = nullptr);

    /// Replaces the first page, shown alone so far, by the whole document; keeps the reader's place.
    void setDocument(std::shared_ptr<const Document> document);

    /// What is shown.
    [[nodiscard]] const std::shared_ptr<const Document>& document() const { return m_document; }
    /// The number of pages so far.
    [[nodiscard]] int pageCount() const;
    /// The page in the upper part of the window, or the one last gone to.
    [[nodiscard]] int currentPage() const { return m_currentPage; }
    /// Makes the page current and scrolls its top, or a line at this distance from it in points, to the top of the
    /// window if possible.
    void goToPage(int page, double top = 0);
    /// The distance from the current page's top to the top of the window, in points.
    [[nodiscard]] double currentTop() const;

    /// 1 is the size on paper. Keeps the middle of the window in place.
    void setZoom(double zoom);
    [[nodiscard]] double zoom() const { return m_zoom; }
    /// Fits the page to the window in one of the ways, now and on every resize.
    void setFit(Fit fit);
    /// What the scale follows.
    [[nodiscard]] Fit fit() const { return m_fit; }

    /// Marks the matches, and one of them, counted from 0, as current; -1 for none.
    void setHits(std::vector<TextSpan> hits, int current);
    /// Scrolls the current match into view.
    void showHit();
    /// Brings the beginning of a stretch of text into view.
    void bringIntoView(const TextSpan& span);
    /// The part of the viewport that a box of the page takes, the box in points.
    [[nodiscard]] QRectF inViewport(int page, const QRectF& box) const;
    /// The point of the page, in points, at a point of the viewport.
    [[nodiscard]] QPointF onPage(int page, QPointF inViewport) const;

    /// The selected text.
    [[nodiscard]] const TextSelection& selection() const { return m_selection; }
    /// Selects a stretch of a page; none where it is empty.
    void select(const TextSpan& span);
    /// Selects the text of all pages.
    void selectAll();
    /// Copies the selection to the clipboard.
    void copy() const;

    /// The page's area in the viewport, in pixels.
    [[nodiscard]] QRectF pageBox(int page) const;

Q_SIGNALS:
    /// Emitted after the current page changed; the first is 0.
    void currentPageChanged(int page);
    /// Emitted after the pages moved.
    void scrolled();
    /// Emitted after the selection changed.
    void selectionChanged();
    /// Emitted after zoom or fit changed.
    void zoomChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    /// What dragging does.
    enum class Drag {
        None,
        Marking, ///< selects text
        Moving,  ///< moves the paper
    };

    [[nodiscard]] QSizeF pageSize() const;
    [[nodiscard]] double pageTop(int page) const;
    [[nodiscard]] int pageAt(double y) const;
    [[nodiscard]] double fittingZoom() const;
    void rescale(double zoom, QPointF anchor);
    void layOut();
    void readOn(int direction);
    void paintSpan(QPainter& painter, const PageText& text, const TextSpan& span, const QColor& color) const;
    void noteCurrentPage();
    void setCurrentPage(int page);
    void describePage();
    [[nodiscard]] TextPlace placeAt(QPointF inViewport) const;
    [[nodiscard]] bool isTextAt(QPointF inViewport) const;
    void selectionMoved();

    std::shared_ptr<const Document> m_document;
    double m_zoom = 1;
    Fit m_fit = Fit::Shrink;
    std::vector<TextSpan> m_hits;
    int m_currentHit = -1;
    int m_currentPage = 0;
    bool m_goingToPage = false;
    QPoint m_dragFrom;
    Drag m_drag = Drag::None;
    TextSelection m_selection;
};

} // namespace orlo::reporting
