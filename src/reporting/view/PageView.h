#pragma once

#include "reporting/view/TextSelection.h"

#include <QAbstractScrollArea>

#include <memory>

namespace orlo::reporting
{

/// The pages of a document below each other, of which only the visible ones are painted. Pages count from 0.
class PageView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    /// How the scale follows the window.
    enum class Fit {
        None,
        Shrink, ///< the size on paper, or less where the width of the window asks for it
        Width,
        Page
    };

    static constexpr double MinZoom = 0.1;
    static constexpr double MaxZoom = 8;

    explicit PageView(std::shared_ptr<const Document> document, QWidget* parent = nullptr);

    /// Shows the whole of the document whose first page alone stood here; the reader's place stays.
    void setDocument(std::shared_ptr<const Document> document);

    /// What is shown.
    [[nodiscard]] const std::shared_ptr<const Document>& document() const { return m_document; }
    /// The number of pages so far.
    [[nodiscard]] int pageCount() const;
    /// The page at the upper part of the window, or the one last gone to.
    [[nodiscard]] int currentPage() const { return m_currentPage; }
    /// Makes the page the current one and brings its top, or a line of it in points from there, to the top of the
    /// window as far as it can be scrolled.
    void goToPage(int page, double top = 0);
    /// What is read at the top of the window: how far down the current page, in points.
    [[nodiscard]] double currentTop() const;

    /// 1 shows a page at its size on paper. What is read in the middle of the window stays there.
    void setZoom(double zoom);
    [[nodiscard]] double zoom() const { return m_zoom; }
    /// Fits the page to the window, now and whenever that changes its size.
    void setFit(Fit fit);
    /// What the zoom follows.
    [[nodiscard]] Fit fit() const { return m_fit; }

    /// Marks the hits, one of them, counted from 0, as the current one; -1 for none.
    void setHits(std::vector<TextSpan> hits, int current);
    /// Brings the current hit into view.
    void showHit();
    /// Brings the beginning of a stretch of text into view.
    void bringIntoView(const TextSpan& span);
    /// The part of the viewport that a box of the page takes, the box in points.
    [[nodiscard]] QRectF inViewport(int page, const QRectF& box) const;
    /// The point of the page, in points, at a point of the viewport.
    [[nodiscard]] QPointF onPage(int page, QPointF inViewport) const;

    /// The text that is marked for being copied.
    [[nodiscard]] const TextSelection& selection() const { return m_selection; }
    /// Selects a stretch of a page; none where it is empty.
    void select(const TextSpan& span);
    /// Selects the text of all pages.
    void selectAll();
    /// Puts the marked text on the clipboard.
    void copy() const;

    /// Where the page lies in the viewport, in its pixels.
    [[nodiscard]] QRectF pageBox(int page) const;

Q_SIGNALS:
    /// After another page came to the top; the first is 0.
    void currentPageChanged(int page);
    /// After the pages moved.
    void scrolled();
    /// After other text was selected.
    void selectionChanged();
    /// After zoom or fit changed.
    void zoomChanged();

protected:
    bool viewportEvent(QEvent* event) override;
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
    /// What the mouse does with its button held down.
    enum class Drag {
        None,
        Marking, ///< a stretch of text
        Moving,  ///< the paper
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
