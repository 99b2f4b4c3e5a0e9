#pragma once

#include "reporting/Document.h"

namespace orlo::reporting
{

/// An e-mail address that stands on a page.
struct MailLink {
    int page = 0; ///< place in Document::pages
    QRectF box;   ///< of its text, points from the top left corner of the paper
    QString address;
};

/// Appends the e-mail addresses of a page; its texts have these fonts. An address that is broken over lines is found
/// where nothing else stands in its text.
void addMailLinks(const Page& page, int number, const std::vector<QFont>& fonts, std::vector<MailLink>& links);

} // namespace orlo::reporting
