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

/// The find bar below the pages: all matches are marked, one of them is the current one.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    /// Searches the document shown in the view and marks the matches there; the actions become its buttons.
    FindBar(std::shared_ptr<const Document> document, PageView& view, QAction* previous, QAction* next);

    /// Switches to another document. The view keeps its place.
    void setDocument(std::shared_ptr<const Document> document);
    /// Shows the bar with its text selected.
    void open();
    /// Hides the bar and the marks.
    void dismiss();
    /// Goes to the next (1) or previous (-1) match, wrapping around.
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
