#include "reporting/view/PreviewWindow.h"

#include "platform/RuntimeError.h"
#include "reporting/Export.h"
#include "reporting/MailLinks.h"
#include "reporting/view/Dialogs.h"
#include "reporting/view/FindBar.h"
#include "reporting/view/NoticeBar.h"
#include "reporting/view/OtherReports.h"
#include "reporting/view/PageBox.h"
#include "reporting/view/PageList.h"
#include "reporting/view/PageView.h"
#include "reporting/view/RunProgress.h"
#include "reporting/view/ZoomBox.h"
#include "widgets/Glyphs.h"

#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QDockWidget>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <functional>

namespace orlo::reporting
{

using widgets::Glyph;
using widgets::glyphIcon;

namespace
{

constexpr int IconSize = 20;
constexpr int SideWidth = 170;
constexpr QSize PreferredSize(1020, 860);

} // namespace

PreviewWindow::PreviewWindow(std::shared_ptr<const Document> document)
    : m_document(std::move(document)), m_view(new PageView(m_document))
{
    setObjectName(QStringLiteral("previewWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(m_document->title.isEmpty() ? QStringLiteral("Report") : m_document->title);

    makeActions();
    makeMenus();
    makeToolBar();
    makeSide();
    m_findBar = new FindBar(m_document, *m_view, m_findPrevious, m_findNext);
    auto* centre = new QWidget;
    auto* column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_view, 1);
    column->addWidget(m_findBar);
    m_notice = new NoticeBar;
    column->addWidget(m_notice);
    setCentralWidget(centre);

    connect(m_view, &PageView::currentPageChanged, this, &PreviewWindow::showPage);
    connect(m_view, &PageView::scrolled, this, &PreviewWindow::showPlace);
    connect(m_view, &PageView::selectionChanged, this, [this] { m_copy->setEnabled(!m_view->selection().isEmpty()); });
    fitToDocument();
    m_zoom->showZoom();
    resize(PreferredSize.boundedTo(screen()->availableSize() * 0.9));
    m_view->setFocus();
}

void PreviewWindow::setDocument(std::shared_ptr<const Document> document)
{
    m_document = std::move(document);
    m_view->setDocument(m_document);
    m_findBar->setDocument(m_document);
    fitToDocument();
}

void PreviewWindow::fitToDocument()
{
    const int tab = m_pageList ? m_pageList->currentIndex() : 0;
    const bool inList = m_pageList && m_pageList->isAncestorOf(focusWidget());
    delete std::exchange(m_pageList, new PageList(m_document));
    m_side->setWidget(m_pageList);
    m_pageList->setCurrentIndex(tab);
    if (inList)
        m_pageList->currentWidget()->setFocus();
    connect(m_pageList, &PageList::pagePicked, m_view, &PageView::goToPage);
    {
        const QSignalBlocker quiet(m_page);
        m_page->setRange(1, m_view->pageCount()); // without pages, 1 as well
        m_page->setSuffix(m_document->complete ? QStringLiteral(" of %1").arg(m_view->pageCount())
                                               : QStringLiteral(" of …"));
    }
    const bool whole = m_document->complete;
    m_print->setEnabled(whole && m_view->pageCount() > 0);
    m_savePdf->setEnabled(whole && m_view->pageCount() > 0);
    m_saveCsv->setEnabled(whole);
    m_selectAll->setEnabled(m_view->pageCount() > 0);
    m_copyAddresses->setEnabled(whole && m_view->pageCount() > 0);
    if (whole)
        tell(m_document->warnings.join(u'\n'));
    showPage(m_view->currentPage());
}

void PreviewWindow::setPageListVisible(bool visible)
{
    m_side->setVisible(visible);
}

void PreviewWindow::tell(const QString& text)
{
    m_notice->tell(text);
}

void PreviewWindow::onRefresh(std::function<void()> refresh)
{
    m_onRefresh = std::move(refresh);
    m_refresh->setEnabled(true);
}

void PreviewWindow::offerReports(const QString& shown, std::function<void(const QString& file)> run)
{
    m_more->menuAction()->setVisible(true);
    connect(m_more, &QMenu::aboutToShow, this, [this, shown, run = std::move(run)] { // files come and go
        m_more->clear();
        bool examples = false;
        for (const OtherReport& report : otherReports(shown)) {
            if (report.isExample && !std::exchange(examples, true))
                m_more->addSeparator();
            QAction* action = m_more->addAction(QString(report.title).replace(u'&', QStringLiteral("&&")));
            // Through the event loop, because the window may close and take the menu with it.
            connect(
                action, &QAction::triggered, QCoreApplication::instance(), [run, file = report.path] { run(file); },
                Qt::QueuedConnection);
        }
    });
}

void PreviewWindow::copyAddresses()
{
    std::vector<MailLink> links;
    for (const Page& page : m_document->pages)
        addMailLinks(page, 0, m_document->fonts, links);
    QStringList addresses;
    QSet<QString> known;
    for (const MailLink& link : links)
        if (const QString folded = link.address.toCaseFolded(); !known.contains(folded)) {
            known.insert(folded);
            addresses << link.address;
        }
    if (addresses.isEmpty())
        return tell(QStringLiteral("There are no e-mail addresses on these pages."));
    QGuiApplication::clipboard()->setText(addresses.join(QStringLiteral("; ")));
    tell(addresses.size() == 1 ? QStringLiteral("One e-mail address is on the clipboard.")
                               : QStringLiteral("%1 e-mail addresses are on the clipboard.").arg(addresses.size()));
}

void PreviewWindow::savePdf(const QString& path)
{
    save(path, [document = m_document, &path] { // another document may arrive meanwhile
        RunProgress progress(QStringLiteral("Saving the report…"));
        return writePdf(*document, path, std::ref(progress));
    });
}

void PreviewWindow::saveCsv(const QString& path)
{
    save(path, [this, &path] {
        writeCsv(*m_document, path);
        return true;
    });
}

void PreviewWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape)
        QMainWindow::keyPressEvent(event);
    else if (m_findBar->isVisible())
        m_findBar->dismiss();
    else if (!m_view->hasFocus()) { // leaving the box it was typed in restores what stood there
        showPage(m_view->currentPage());
        m_zoom->showZoom();
        m_view->setFocus();
    } else
        close();
}

QAction* PreviewWindow::makeAction(const char* name, const QString& text, Glyph glyph, const QList<QKeySequence>& keys,
                                   std::function<void()> handler)
{
    auto* action = new QAction(glyphIcon(glyph), text, this);
    action->setObjectName(QLatin1String(name));
    action->setShortcuts(keys);
    const QString plain = QString(text).remove(u'&').remove(QStringLiteral("…"));
    action->setToolTip(
        keys.isEmpty() ? plain : QStringLiteral("%1 (%2)").arg(plain, keys.first().toString(QKeySequence::NativeText)));
    connect(action, &QAction::triggered, this, std::move(handler));
    addAction(action); // the desktop may show the menus elsewhere, and then their keys aren't this window's
    return action;
}

void PreviewWindow::makeActions()
{
    m_print = makeAction("actPrint", QStringLiteral("&Print…"), Glyph::Print, {QKeySequence::Print},
                         [this] { printByDialog(*this, m_document, m_view->currentPage()); });
    m_savePdf = makeAction("actSavePdf", QStringLiteral("&Save as PDF…"), Glyph::Pdf, {QKeySequence::Save}, [this] {
        if (const QString path = askSaveFile(*this, QStringLiteral("Save as PDF"),
                                             QStringLiteral("PDF files: the pages as they are (*.pdf)"),
                                             m_document->title, QStringLiteral("pdf"));
            !path.isEmpty())
            savePdf(path);
    });
    m_saveCsv = makeAction("actSaveCsv", QStringLiteral("Save as &CSV…"), Glyph::Csv, {}, [this] {
        if (const QString path =
                askSaveFile(*this, QStringLiteral("Save as CSV"),
                            QStringLiteral("CSV files: all rows and their subreports, for a spreadsheet (*.csv)"),
                            m_document->title, QStringLiteral("csv"));
            !path.isEmpty())
            saveCsv(path);
    });
    m_refresh =
        makeAction("actRefresh", QStringLiteral("&Refresh"), Glyph::Refresh, {QKeySequence(Qt::Key_F5)}, [this] {
            const auto refresh = m_onRefresh; // the window may be destroyed meanwhile
            refresh();
        });
    m_refresh->setEnabled(false);
    m_copyAddresses = makeAction("actCopyAddresses", QStringLiteral("Copy E-mail &Addresses"), Glyph::Pages, {},
                                 [this] { copyAddresses(); });
    m_close = makeAction("actClose", QStringLiteral("C&lose"), Glyph::Close, {QKeySequence(Qt::CTRL | Qt::Key_W)},
                         [this] { close(); });

    m_first = makeAction("actFirst", QStringLiteral("&First Page"), Glyph::First,
                         {QKeySequence(Qt::CTRL | Qt::Key_Home)}, [this] { m_view->goToPage(0); });
    m_previous =
        makeAction("actPrevious", QStringLiteral("&Previous Page"), Glyph::Previous,
                   {QKeySequence(Qt::CTRL | Qt::Key_PageUp)}, [this] { m_view->goToPage(m_view->currentPage() - 1); });
    m_next =
        makeAction("actNext", QStringLiteral("&Next Page"), Glyph::Next, {QKeySequence(Qt::CTRL | Qt::Key_PageDown)},
                   [this] { m_view->goToPage(m_view->currentPage() + 1); });
    m_last = makeAction("actLast", QStringLiteral("&Last Page"), Glyph::Last, {QKeySequence(Qt::CTRL | Qt::Key_End)},
                        [this] { m_view->goToPage(m_view->pageCount() - 1); });
    m_goToPage = makeAction("actGoToPage", QStringLiteral("&Go to Page…"), Glyph::Pages,
                            {QKeySequence(Qt::CTRL | Qt::Key_G)}, [this] { askPage(); });

    m_zoomIn = makeAction("actZoomIn", QStringLiteral("Zoom &In"), Glyph::ZoomIn,
                          {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)},
                          [this] { m_zoom->step(1); });
    m_zoomOut = makeAction("actZoomOut", QStringLiteral("Zoom &Out"), Glyph::ZoomOut,
                           {QKeySequence(Qt::CTRL | Qt::Key_Minus)}, [this] { m_zoom->step(-1); });
    m_actualSize = makeAction("actActualSize", QStringLiteral("&Actual Size"), Glyph::Find,
                              {QKeySequence(Qt::CTRL | Qt::Key_0)}, [this] { m_view->setZoom(1); });

    m_copy =
        makeAction("actCopy", QStringLiteral("&Copy"), Glyph::Pages, {QKeySequence::Copy}, [this] { m_view->copy(); });
    m_copy->setEnabled(false);
    m_selectAll = makeAction("actSelectAll", QStringLiteral("Select &All"), Glyph::Pages, {QKeySequence::SelectAll},
                             [this] { m_view->selectAll(); });
    for (QAction* action : {m_copy, m_selectAll, m_goToPage, m_copyAddresses})
        action->setIcon({});
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_view->addActions({m_copy, m_selectAll});
    m_find = makeAction("actFind", QStringLiteral("&Find…"), Glyph::Find, {QKeySequence::Find},
                        [this] { m_findBar->open(); });
    m_findNext = makeAction("actFindNext", QStringLiteral("Find &Next"), Glyph::Down, {QKeySequence(Qt::Key_F3)},
                            [this] { m_findBar->step(1); });
    m_findPrevious = makeAction("actFindPrevious", QStringLiteral("Find Pre&vious"), Glyph::Up,
                                {QKeySequence(Qt::SHIFT | Qt::Key_F3)}, [this] { m_findBar->step(-1); });
}

void PreviewWindow::makeMenus()
{
    m_side = new QDockWidget(QStringLiteral("Pages"), this);

    QMenu* report = menuBar()->addMenu(QStringLiteral("&Report"));
    report->addActions({m_print, m_savePdf, m_saveCsv, m_copyAddresses});
    report->addSeparator();
    m_more = report->addMenu(QStringLiteral("&More Reports"));
    m_more->setObjectName(QStringLiteral("mnuMoreReports"));
    m_more->menuAction()->setVisible(false);
    report->addAction(m_refresh);
    report->addSeparator();
    report->addAction(m_close);
    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    edit->addActions({m_copy, m_selectAll});
    QMenu* find = menuBar()->addMenu(QStringLiteral("&Find"));
    find->addActions({m_find, m_findNext, m_findPrevious});
    QMenu* go = menuBar()->addMenu(QStringLiteral("&Go"));
    go->addActions({m_first, m_previous, m_next, m_last});
    go->addSeparator();
    go->addAction(m_goToPage);
    QMenu* view = menuBar()->addMenu(QStringLiteral("&View"));
    view->addActions({m_zoomIn, m_zoomOut, m_actualSize});
    view->addAction(QStringLiteral("Fit &Width"), this, [this] { m_view->setFit(PageView::Fit::Width); });
    view->addAction(QStringLiteral("Fit &Page"), this, [this] { m_view->setFit(PageView::Fit::Page); });
    view->addSeparator();
    view->addAction(m_side->toggleViewAction());
}

void PreviewWindow::makeToolBar()
{
    QAction* side = m_side->toggleViewAction();
    side->setObjectName(QStringLiteral("actPageList"));
    side->setIcon(glyphIcon(Glyph::Pages));
    side->setText(QStringLiteral("Page &List"));
    side->setToolTip(QStringLiteral("Page list (F4)"));
    side->setShortcut(QKeySequence(Qt::Key_F4));

    m_toolBar = addToolBar(QStringLiteral("Tools"));
    m_toolBar->setObjectName(QStringLiteral("tlbPreview"));
    if (auto* more = m_toolBar->findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button")))
        more->setAccessibleName(QStringLiteral("More")); // shown if the window is too narrow for all
    m_toolBar->setMovable(false);
    m_toolBar->setIconSize(QSize(IconSize, IconSize));
    m_toolBar->toggleViewAction()->setEnabled(false);
    m_toolBar->addActions({m_print, m_savePdf, m_saveCsv, m_refresh});
    m_toolBar->addSeparator();
    m_toolBar->addAction(side);
    m_toolBar->addActions({m_first, m_previous});
    makePageBox();
    m_toolBar->addActions({m_next, m_last});
    m_toolBar->addSeparator();
    m_toolBar->addAction(m_zoomOut);
    m_zoom = new ZoomBox(*m_view);
    m_toolBar->addWidget(m_zoom);
    m_toolBar->addAction(m_zoomIn);
    m_toolBar->addSeparator();
    m_toolBar->addAction(m_find);

    const QList<QAction*> actions = m_toolBar->actions();
    for (QAction* action : actions) {
        if (QWidget* button = m_toolBar->widgetForAction(action); button && button->accessibleName().isEmpty())
            button->setAccessibleName(action->toolTip());
    }
}

void PreviewWindow::makePageBox()
{
    m_page = new PageBox;
    m_page->setObjectName(QStringLiteral("spnPage"));
    m_page->setAccessibleName(QStringLiteral("Page"));
    m_page->setToolTip(QStringLiteral("Page"));
    m_page->setButtonSymbols(QAbstractSpinBox::NoButtons);
    m_page->setAlignment(Qt::AlignCenter);
    m_page->setKeyboardTracking(false);
    m_page->setFocusPolicy(Qt::StrongFocus);
    connect(m_page, &QSpinBox::valueChanged, this, [this](int page) { m_view->goToPage(page - 1); });
    auto* typed = m_page->findChild<QLineEdit*>();
    typed->setAccessibleName(QStringLiteral("Page"));
    connect(typed, &QLineEdit::returnPressed, m_view, [this] { m_view->setFocus(); });
    m_toolBar->addWidget(m_page);
}

void PreviewWindow::makeSide()
{
    m_side->setObjectName(QStringLiteral("dckPageList"));
    m_side->setFeatures(QDockWidget::DockWidgetClosable);
    m_side->setTitleBarWidget(new QWidget); // the tabs are title enough
    addDockWidget(Qt::LeftDockWidgetArea, m_side);
    resizeDocks({m_side}, {SideWidth}, Qt::Horizontal);
    m_side->hide();
}

void PreviewWindow::showPage(int page)
{
    const QSignalBlocker quiet(m_page);
    m_page->setValue(page + 1);
    showPlace();
    m_first->setEnabled(page > 0);
    m_previous->setEnabled(page > 0);
    m_next->setEnabled(page + 1 < m_view->pageCount());
    m_last->setEnabled(page + 1 < m_view->pageCount());
}

void PreviewWindow::showPlace()
{
    m_pageList->setPlace(m_view->currentPage(), m_view->currentTop());
}

void PreviewWindow::askPage()
{
    m_page->setFocus(Qt::ShortcutFocusReason);
    m_page->selectAll();
}

void PreviewWindow::save(const QString& path, const std::function<bool()>& write)
{
    const QPointer<PreviewWindow> self(this);
    try {
        if (write() && self)
            m_notice->tell(QStringLiteral("Saved as %1").arg(QDir::toNativeSeparators(path)), path);
    } catch (const platform::RuntimeError& error) {
        if (self)
            warnOf(*this, QStringLiteral("The file %1 can't be saved.\n\n%2")
                              .arg(QDir::toNativeSeparators(path), error.description()));
    }
}

} // namespace orlo::reporting
