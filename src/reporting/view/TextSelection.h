#pragma once

#include "reporting/view/PageText.h"

#include <utility>

namespace orlo::reporting
{

/// A page, counted from 0, and a position in its text.
using TextPlace = std::pair<int, qsizetype>;

/// A selection in a document, possibly across pages: from where it began, forwards or backwards.
class TextSelection
{
public:
    /// Selects nothing.
    void clear() { m_from = m_to = {}; }
    /// Begins at a position, or extends the last selection to it.
    void begin(TextPlace place, bool goOn);
    /// Moves the end of the selection.
    void extendTo(TextPlace place) { m_to = place; }
    /// Select the word around a position, or the text of all pages.
    void takeWord(const Document& document, TextPlace place);
    void takeAll(const Document& document);

    /// True where nothing is selected.
    [[nodiscard]] bool isEmpty() const { return m_from == m_to; }
    /// The part of the selection on a page.
    [[nodiscard]] TextSpan on(int page, const PageText& text) const;
    /// Copies it to the clipboard, unless it is empty.
    void copy(const Document& document) const;

private:
    [[nodiscard]] QString text(const Document& document) const;

    TextPlace m_from;
    TextPlace m_to;
};

} // namespace orlo::reporting
