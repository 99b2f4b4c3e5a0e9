#pragma once

namespace orlo::reporting
{

class PageView;

/// Has assistive programs read the pages of every PageView: its text is that of the current page, as it is marked and
/// copied, a line a line. Once for the process is enough.
void makePagesReadable();

/// Tells assistive programs that another page is the one to read.
void tellOfPage(PageView& view);

} // namespace orlo::reporting
