#pragma once

#include "reporting/view/PageView.h"
#include "reporting/view/PreviewWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QDesktopServices>
#include <QPointer>
#include <QTest>
#include <QUrl>

namespace orlo::test
{

/// "5" is a document of five pages. Each has its number as a word, the word "row" twice and one line of the list. What
/// follows after commas is left out ("first" of all pages, "outline") or added: a text, as "2 at 72 200 300 24: words"
/// on page 2, or a line, box or picture with its colours, an entry of the outline, as "entry 0 2 500: words".
std::shared_ptr<const reporting::Document> documentOf(const QString& text = "5");

/// A window that shows a document until the end of the block.
class OpenPreview
{
public:
    explicit OpenPreview(std::shared_ptr<const reporting::Document> document = documentOf())
        : window(new reporting::PreviewWindow(std::move(document))), opened(window->size())
    {
        window->resize(700, 600);
        window->show();
        static_cast<void>(QTest::qWaitForWindowActive(window));
    }
    ~OpenPreview() { delete window; }
    template <class T>
    T* child(const QString& name) const
    {
        return window->findChild<T*>(name);
    }

    QPointer<reporting::PreviewWindow> window;
    const QSize opened; ///< as it was made
};

/// A window of pages that a case works step by step, and all that it shows.
class PreviewSteps : public QObject
{
    Q_OBJECT

public:
    explicit PreviewSteps(const QString& document);
    ~PreviewSteps() override { QDesktopServices::unsetUrlHandler("file"); }
    /// The lines of the window's picture.
    QStringList picture() const;
    /// Does a step; what it tells, other than by the picture.
    QStringList run(const QString& step);
    Q_INVOKABLE void opened(const QUrl& url) { note("opened " + url.toLocalFile()); }

private:
    [[nodiscard]] reporting::PageView& view() const { return m_preview.window->view(); }
    void note(const QString& what)
    {
        m_told += m_told.value(m_told.size() - 1) == what ? QStringList() : QStringList(what);
    }
    // The menus and the tool bar: texts, keys, tips, and whether there is a sign.
    QStringList commands() const;
    QAccessibleTextInterface& reader() const;
    QString readerParts() const;
    QAction& action(const QString& name) const;
    void click(const QString& name, int row) const;
    // press, right, move, drag, release, double, and twice by the right button, at a point of a page
    void mouse(const QString& word, int page, QPointF point, bool shift) const;
    OpenPreview m_preview;
    QStringList m_told;
};

} // namespace orlo::test
