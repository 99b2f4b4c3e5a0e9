#pragma once

#include "reporting/view/PageText.h"

#include <utility>

namespace orlo::reporting
{

/// A page, counted from 0, and a place between two characters of its text.
using TextPlace = std::pair<int, qsizetype>;

/// A stretch of a document's text, over pages, as it is marked: from where the marking began, on or back.
class TextSelection
{
public:
    /// Marks nothing.
    void clear() { m_from = m_to = {}; }
    /// Begins at a place, or goes on there from where the last marking began.
    void begin(TextPlace place, bool goOn);
    /// The marking ends at another place.
    void extendTo(TextPlace place) { m_to = place; }
    /// Marks the word around a place, the text of all pages.
    void takeWord(const Document& document, TextPlace place);
    void takeAll(const Document& document);

    /// True where nothing is selected.
    [[nodiscard]] bool isEmpty() const { return m_from == m_to; }
    /// What of it stands on a page.
    [[nodiscard]] TextSpan on(int page, const PageText& text) const;
    /// Puts it on the clipboard, if anything is selected.
    void copy(const Document& document) const;

private:
    [[nodiscard]] QString text(const Document& document) const;

    TextPlace m_from;
    TextPlace m_to;
};

} // namespace orlo::reporting
