#include "reporting/view/PageList.h"

#include "reporting/view/Sheet.h"

#include <QAbstractListModel>
#include <QListView>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QTreeWidget>

#include <algorithm>

namespace orlo::reporting
{

namespace
{

constexpr int ThumbnailWidth = 96;
constexpr int ThumbnailMargin = 8;
constexpr int EntryRole = Qt::UserRole;

class PageModel : public QAbstractListModel
{
public:
    PageModel(int count, QObject* parent) : QAbstractListModel(parent), m_count(count) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : m_count; }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == Qt::DisplayRole)
            return index.row() + 1;
        if (role == Qt::AccessibleTextRole)
            return QStringLiteral("Page %1").arg(index.row() + 1);
        return {};
    }

private:
    int m_count;
};

class ThumbnailDelegate : public QStyledItemDelegate
{
public:
    ThumbnailDelegate(std::shared_ptr<const Document> document, QObject* parent)
        : QStyledItemDelegate(parent), m_document(std::move(document))
    {
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {ThumbnailWidth + 2 * ThumbnailMargin,
                sheetSize().height() + option.fontMetrics.height() + 3 * ThumbnailMargin};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const QPalette& palette = option.palette;
        const bool selected = option.state & QStyle::State_Selected;
        if (selected)
            painter->fillRect(option.rect, palette.highlight());
        const QSize size = sheetSize();
        const QRect sheet(option.rect.center().x() - size.width() / 2, option.rect.top() + ThumbnailMargin,
                          size.width(), size.height());
        paintSheet(*painter, sheet, *m_document, index.row());
        painter->setPen(palette.color(QPalette::Mid));
        painter->drawRect(sheet.adjusted(0, 0, -1, -1));
        painter->setPen(palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
        const QRect line(option.rect.left(), sheet.bottom() + ThumbnailMargin / 2, option.rect.width(),
                         option.fontMetrics.height());
        painter->drawText(line, Qt::AlignCenter, index.data().toString());
    }

private:
    [[nodiscard]] QSize sheetSize() const
    {
        const QSizeF paper = m_document->paper;
        return {ThumbnailWidth, qRound(ThumbnailWidth * paper.height() / paper.width())};
    }

    std::shared_ptr<const Document> m_document;
};

} // namespace

PageList::PageList(std::shared_ptr<const Document> document, QWidget* parent)
    : QTabWidget(parent), m_document(std::move(document))
{
    setObjectName(QStringLiteral("tabPageList"));
    setAccessibleName(QStringLiteral("Page list"));
    setDocumentMode(true);
    addPages();
    if (m_document->outline.empty())
        setFocusPolicy(Qt::NoFocus); // its tab bar is hidden, and Tab would get stuck there
    else
        addOutline();
    setTabBarAutoHide(true);
    setUsesScrollButtons(false);
}

void PageList::setPlace(int page, double top)
{
    const QScopedValueRollback<bool> follow(m_following, true);
    m_pages->setCurrentIndex(m_pages->model()->index(page, 0));
    if (!m_outline || m_leading)
        return;
    const std::vector<OutlineEntry>& outline = m_document->outline;
    const auto next = std::upper_bound(outline.begin(), outline.end(), std::pair(page, top),
                                       [](const std::pair<int, double>& place, const OutlineEntry& entry) {
                                           return place < std::pair(entry.page, entry.top);
                                       });
    m_outline->setCurrentItem(m_entries[std::size_t(std::max<std::ptrdiff_t>(next - outline.begin() - 1, 0))]);
}

void PageList::addPages()
{
    m_pages = new QListView;
    m_pages->setObjectName(QStringLiteral("lstPages"));
    m_pages->setAccessibleName(QStringLiteral("Pages"));
    m_pages->setFrameShape(QFrame::NoFrame);
    m_pages->setUniformItemSizes(true);
    m_pages->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_pages->setModel(new PageModel(static_cast<int>(m_document->pages.size()), m_pages));
    m_pages->setItemDelegate(new ThumbnailDelegate(m_document, m_pages));
    m_pages->setCurrentIndex(m_pages->model()->index(0, 0));
    const auto pick = [this](const QModelIndex& index) {
        if (!m_following)
            Q_EMIT pagePicked(index.row(), 0);
    };
    connect(m_pages, &QListView::clicked, this, pick);
    connect(m_pages->selectionModel(), &QItemSelectionModel::currentChanged, this, pick);
    addTab(m_pages, QStringLiteral("Pages"));
}

void PageList::addOutline()
{
    m_outline = new QTreeWidget;
    m_outline->setObjectName(QStringLiteral("treOutline"));
    m_outline->setAccessibleName(QStringLiteral("Outline of the groups"));
    m_outline->setFrameShape(QFrame::NoFrame);
    m_outline->setHeaderHidden(true);
    m_outline->setUniformRowHeights(true);
    std::vector<QTreeWidgetItem*> ancestors{m_outline->invisibleRootItem()};
    for (const OutlineEntry& entry : m_document->outline) {
        const std::size_t depth = std::min(static_cast<std::size_t>(std::max(entry.level, 0)) + 1, ancestors.size());
        ancestors.resize(depth);
        auto* item = new QTreeWidgetItem(ancestors.back(), {entry.text});
        item->setData(0, EntryRole, static_cast<int>(m_entries.size()));
        m_entries.push_back(item);
        ancestors.push_back(item);
    }
    m_outline->expandAll();
    // Set a current entry now: on focus the tree would choose one itself, and the pages would jump to it.
    m_outline->setCurrentItem(m_outline->topLevelItem(0));
    const auto pick = [this](const QTreeWidgetItem* item) {
        if (!item || m_following)
            return;
        const QScopedValueRollback<bool> lead(m_leading, true);
        const OutlineEntry& entry = m_document->outline[static_cast<std::size_t>(item->data(0, EntryRole).toInt())];
        Q_EMIT pagePicked(entry.page, entry.top);
    };
    connect(m_outline, &QTreeWidget::itemClicked, this, pick);
    connect(m_outline, &QTreeWidget::currentItemChanged, this, pick);
    addTab(m_outline, QStringLiteral("Outline"));
}

} // namespace orlo::reporting
