#include "reporting/view/PageReader.h"

#include "reporting/view/PageView.h"

#include <QAccessibleWidget>
#include <QScrollBar>

#include <algorithm>
#include <optional>

namespace orlo::reporting
{

namespace
{

// The current page of a view as a text. The caret is where a reader has come to; it begins at the top of each page.
class PageReader : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit PageReader(PageView* view) : QAccessibleWidget(view, QAccessible::Document) {}

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }

    // As of every area with scroll bars: what is scrolled, and the bars that there are.
    [[nodiscard]] int childCount() const override { return int(parts().size()); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        return QAccessible::queryAccessibleInterface(parts().value(index));
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override
    {
        return child ? int(parts().indexOf(qobject_cast<QWidget*>(child->object()))) : -1;
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? text(0, characterCount()) : QAccessibleWidget::text(kind);
    }

    [[nodiscard]] QString text(int from, int to) const override
    {
        return pageText().text().mid(from, to - from).replace(PageText::LineBreak, u'\n');
    }
    [[nodiscard]] int characterCount() const override { return int(pageText().text().size()); }

    [[nodiscard]] int cursorPosition() const override
    {
        return m_caret.first == view().currentPage() ? onPage(int(m_caret.second)) : 0;
    }
    void setCursorPosition(int place) override
    {
        m_caret = {view().currentPage(), onPage(place)};
        scrollToSubstring(place, place + 1);
        QAccessibleTextCursorEvent moved(&view(), onPage(place));
        QAccessible::updateAccessibility(&moved);
    }

    [[nodiscard]] int selectionCount() const override
    {
        const TextSpan span = selected();
        return span.from < span.to ? 1 : 0;
    }
    void selection(int, int* from, int* to) const override
    {
        const TextSpan span = selected();
        *from = int(span.from);
        *to = int(span.to);
    }
    void addSelection(int from, int to) override { view().select({view().currentPage(), onPage(from), onPage(to)}); }
    void setSelection(int, int from, int to) override { addSelection(from, to); }
    void removeSelection(int) override { addSelection(0, 0); }

    [[nodiscard]] QRect characterRect(int place) const override
    {
        const std::vector<QRectF> boxes = pageText().boxes(place, place + 1);
        if (boxes.empty()) // a tab or the end of a line
            return {};
        const QRect box = view().inViewport(view().currentPage(), boxes.front()).toAlignedRect();
        return {view().viewport()->mapToGlobal(box.topLeft()), box.size()};
    }
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override
    {
        const QPointF there = view().onPage(view().currentPage(), view().viewport()->mapFromGlobal(point));
        return pageText().isTextAt(there) ? int(pageText().placeAt(there)) : -1;
    }
    void scrollToSubstring(int from, int to) override
    {
        if (view().pageCount() > 0)
            view().bringIntoView({view().currentPage(), from, to});
    }

    [[nodiscard]] QString attributes(int, int* from, int* to) const override
    {
        *from = 0;
        *to = characterCount();
        return {};
    }

private:
    [[nodiscard]] PageView& view() const { return static_cast<PageView&>(*widget()); }

    // The place of the page's text that is nearest to one that a reader knows from another page or state.
    [[nodiscard]] int onPage(int place) const { return std::clamp(place, 0, characterCount()); }

    [[nodiscard]] QWidgetList parts() const
    {
        QWidgetList parts{view().viewport()};
        for (QScrollBar* bar : {view().horizontalScrollBar(), view().verticalScrollBar()})
            if (bar->isVisible())
                parts += bar;
        return parts;
    }

    // A reader asks for it letter by letter.
    [[nodiscard]] const PageText& pageText() const
    {
        if (!m_text || m_page != view().currentPage() || m_document != view().document()) {
            m_document = view().document();
            m_page = view().currentPage();
            static const auto blank = [] {
                Document document;
                document.pages.resize(1);
                return document;
            }();
            if (m_page < view().pageCount())
                m_text.emplace(*m_document, m_page);
            else
                m_text.emplace(blank, 0);
        }
        return *m_text;
    }

    [[nodiscard]] TextSpan selected() const { return view().selection().on(view().currentPage(), pageText()); }

    mutable std::shared_ptr<const Document> m_document;
    mutable int m_page = 0;
    mutable std::optional<PageText> m_text;
    TextPlace m_caret;
};

QAccessibleInterface* pageReaderFor(const QString& type, QObject* object)
{
    return type == u"orlo::reporting::PageView" ? new PageReader(static_cast<PageView*>(object)) : nullptr;
}

} // namespace

void makePagesReadable()
{
    QAccessible::installFactory(&pageReaderFor);
}

void tellOfPage(PageView& view)
{
    QAccessibleTextCursorEvent moved(&view, 0);
    QAccessible::updateAccessibility(&moved);
}

} // namespace orlo::reporting
