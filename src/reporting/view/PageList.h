#pragma once

#include "reporting/Document.h"

#include <QTabWidget>

#include <memory>

class QListView;
class QTreeWidget;
class QTreeWidgetItem;

namespace orlo::reporting
{

/// The side of the preview: small pictures of the pages and, where the report has groups, an outline of them.
class PageList : public QTabWidget
{
    Q_OBJECT

public:
    explicit PageList(std::shared_ptr<const Document> document, QWidget* parent = nullptr);

    /// Marks the page that the reader is on, and the entry of the outline in which the line at a distance from the top
    /// of that page, in points, stands.
    void setPlace(int page, double top);

Q_SIGNALS:
    /// A page, and how far down it, in points.
    void pagePicked(int page, double top);

private:
    void addPages();
    void addOutline();

    std::shared_ptr<const Document> m_document;
    QListView* m_pages = nullptr;
    QTreeWidget* m_outline = nullptr;
    std::vector<QTreeWidgetItem*> m_entries; // of the outline, in the document's order
    bool m_following = false;                // the lists are being led by the reader's place
    bool m_leading = false; // an entry was picked: it stays marked wherever the pages can be scrolled to
};

} // namespace orlo::reporting
