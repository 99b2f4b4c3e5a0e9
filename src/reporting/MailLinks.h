#pragma once

#include "reporting/Document.h"

namespace orlo::reporting
{

/// An e-mail address on a page.
struct MailLink {
    int page = 0; ///< index in Document::pages
    QRectF box;   ///< of its text, in points from the top left corner of the paper
    QString address;
};

/// Appends the e-mail addresses on a page whose texts use these fonts. An address broken over several lines is found
/// only if its text contains nothing else.
void addMailLinks(const Page& page, int number, const std::vector<QFont>& fonts, std::vector<MailLink>& links);

} // namespace orlo::reporting
