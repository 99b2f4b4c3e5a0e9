#pragma once

#include "reporting/view/PageText.h"

#include <QWidget>

#include <memory>

class QAction;
class QLabel;
class QLineEdit;

namespace orlo::reporting
{

class PageView;

/// The line under the pages that finds a text in them: every place is marked, one of them is the current one.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    /// Marks what it finds of the document in the view that shows it; the actions become its buttons.
    FindBar(std::shared_ptr<const Document> document, PageView& view, QAction* previous, QAction* next);

    /// Finds in another document from now on. What the view shows stays there.
    void setDocument(std::shared_ptr<const Document> document);
    /// Shows the bar, with its text selected for being typed over.
    void open();
    /// Hides the bar and the marks.
    void dismiss();
    /// Goes to the next (1) or previous (-1) place, around the end of the document.
    void step(int direction);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void search();
    void find(const TextSpan& from);
    void mark();

    std::shared_ptr<const Document> m_document;
    PageView& m_view;
    QLineEdit* m_text;
    QLabel* m_state;
    std::vector<TextSpan> m_hits;
    int m_current = -1;
};

} // namespace orlo::reporting
