#pragma once

#include "reporting/Document.h"

#include <QTabWidget>

#include <memory>

class QListView;
class QTreeWidget;
class QTreeWidgetItem;

namespace orlo::reporting
{

/// The preview's side bar: page thumbnails and, if the report has groups, an outline.
class PageList : public QTabWidget
{
    Q_OBJECT

public:
    explicit PageList(std::shared_ptr<const Document> document, QWidget* parent = nullptr);

    /// Marks the page being read, and the outline entry that a line at this distance from the page's top, in points,
    /// belongs to.
    void setPlace(int page, double top);

Q_SIGNALS:
    /// A page, and a distance from its top in points.
    void pagePicked(int page, double top);

private:
    void addPages();
    void addOutline();

    std::shared_ptr<const Document> m_document;
    QListView* m_pages = nullptr;
    QTreeWidget* m_outline = nullptr;
    std::vector<QTreeWidgetItem*> m_entries; // of the outline, in document order
    bool m_following = false;                // the lists are following the pages
    bool m_leading = false; // an entry was picked: it stays marked even if the pages can't scroll that far
};

} // namespace orlo::reporting
