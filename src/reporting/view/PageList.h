#pragma once

#include "reporting/Document.h"

#include <QTabWidget>

#include <memory>

class QListView;
class QTreeWidget;

namespace orlo::reports
{

/// The side of the preview: small pictures of the pages and, where the report has groups, an outline of them.
class PageList : public QTabWidget
{
    Q_OBJECT

public:
    explicit PageList(std::shared_ptr<const Document> document, QWidget* parent = nullptr);

    /// Marks the page that the reader is on.
    void setCurrentPage(int page);

Q_SIGNALS:
    void pagePicked(int page);

private:
    void addPages();
    void addOutline();

    std::shared_ptr<const Document> m_document;
    QListView* m_pages = nullptr;
    QTreeWidget* m_outline = nullptr;
    bool m_following = false; // the list is being led by the reader's page
};

} // namespace orlo::reports
