#pragma once

#include "reporting/Document.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class QAction;
class QDockWidget;
class QMenu;
class QToolBar;

namespace orlo::widgets
{
enum class Glyph;
}

namespace orlo::reporting
{

class FindBar;
class NoticeBar;
class PageBox;
class PageList;
class PageView;
class ZoomBox;

/// A finished report on the screen. It is a top-level window without a parent: modal dialogs don't block it, and it
/// outlives the form that ran the report, but not the main window. Closing deletes it.
class PreviewWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit PreviewWindow(std::shared_ptr<const Document> document);

    /// Replaces the document: the first page by the whole report, or a report by its new run. Keeps the reader's place.
    void setDocument(std::shared_ptr<const Document> document);
    /// The document shown.
    [[nodiscard]] const Document& document() const { return *m_document; }
    /// The pages.
    [[nodiscard]] PageView& view() const { return *m_view; }
    /// Shows or hides the side bar with thumbnails and outline.
    void setPageListVisible(bool visible);
    /// Sets what "Refresh" does; without it, the command is disabled.
    void onRefresh(std::function<void()> refresh);
    /// Offers the program's other report files, which are run by their paths.
    void offerReports(const QString& shown, std::function<void(const QString& file)> run);
    /// Shows a message below the pages; an empty text hides it.
    void tell(const QString& text);

    /// Save the pages as PDF, the rows as CSV. An existing file stays unchanged if the save is cancelled or fails,
    /// which is shown.
    void savePdf(const QString& path);
    void saveCsv(const QString& path);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QAction* makeAction(const char* name, const QString& text, widgets::Glyph glyph, const QList<QKeySequence>& keys,
                        std::function<void()> handler);
    void makeActions();
    void makeMenus();
    void makeToolBar();
    void makePageBox();
    void makeSide();
    void fitToDocument();
    void showPage(int page);
    void showPlace();
    void askPage();
    void copyAddresses();
    void save(const QString& path, const std::function<bool()>& write);

    std::shared_ptr<const Document> m_document;
    PageView* m_view;
    FindBar* m_findBar = nullptr;
    NoticeBar* m_notice = nullptr;
    PageList* m_pageList = nullptr;
    QDockWidget* m_side = nullptr;
    QToolBar* m_toolBar = nullptr;
    PageBox* m_page = nullptr;
    ZoomBox* m_zoom = nullptr;
    QAction* m_first = nullptr;
    QAction* m_previous = nullptr;
    QAction* m_next = nullptr;
    QAction* m_last = nullptr;
    QAction* m_zoomIn = nullptr;
    QAction* m_zoomOut = nullptr;
    QAction* m_actualSize = nullptr;
    QAction* m_goToPage = nullptr;
    QAction* m_copy = nullptr;
    QAction* m_selectAll = nullptr;
    QAction* m_find = nullptr;
    QAction* m_findNext = nullptr;
    QAction* m_findPrevious = nullptr;
    QAction* m_print = nullptr;
    QAction* m_savePdf = nullptr;
    QAction* m_saveCsv = nullptr;
    QAction* m_refresh = nullptr;
    QAction* m_copyAddresses = nullptr;
    QAction* m_close = nullptr;
    QMenu* m_more = nullptr;
    std::function<void()> m_onRefresh;
};

} // namespace orlo::reporting
