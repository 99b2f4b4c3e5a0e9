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

/// A finished report on the screen. It is a window of its own without a parent: a waiting dialog of the program doesn't
/// block it, and it outlives the screen that ran the report, but not the program's frame. Closing it deletes it.
class PreviewWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit PreviewWindow(std::shared_ptr<const Document> document);

    /// Puts another document in the place of the one that stands here: the whole one after its first page, or what the
    /// report has become. The reader's place stays.
    void setDocument(std::shared_ptr<const Document> document);
    /// The document that is shown.
    [[nodiscard]] const Document& document() const { return *m_document; }
    /// The pages.
    [[nodiscard]] PageView& view() const { return *m_view; }
    /// Shows or hides the side with the small pages and the outline.
    void setPageListVisible(bool visible);
    /// Says what the command "Refresh" does; without it, it is dead.
    void onRefresh(std::function<void()> refresh);
    /// Offers the other report files of the program, which are run by their paths, beside the shown one.
    void offerReports(const QString& shown, std::function<void(const QString& file)> run);
    /// Tells something in a line under the pages; an empty text takes the line away.
    void tell(const QString& text);

    /// Writes the pages as PDF, the rows as CSV. False where it was cancelled, or after telling the user of the
    /// failure; a file that was there is then as it was.
    bool savePdf(const QString& path);
    bool saveCsv(const QString& path);

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
    bool save(const QString& path, const std::function<bool()>& write);

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
