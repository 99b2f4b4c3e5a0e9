#pragma once

#include <QComboBox>

namespace orlo::reporting
{

class PageView;

/// The box with the scale of the pages: two ways to fit them, and percents, which can be typed too.
class ZoomBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ZoomBox(PageView& view);

    /// Shows the scale of the pages in the place of what was typed.
    void showZoom();
    /// To the next larger (1) or smaller (-1) of the listed scales; beyond the list's ends the scale stays.
    void step(int direction);

private:
    void takeZoom(const QString& text);

    PageView& m_view;
};

} // namespace orlo::reporting
