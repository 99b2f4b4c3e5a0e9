#pragma once

#include <QComboBox>

namespace orlo::reporting
{

class PageView;

/// The zoom box: two ways to fit the pages, and percentages, which can also be typed.
class ZoomBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ZoomBox(PageView& view);

    /// Replaces what was typed by the current scale.
    void showZoom();
    /// Goes to the next larger (1) or smaller (-1) scale in the list, if there is one.
    void step(int direction);

private:
    void takeZoom(const QString& text);

    PageView& m_view;
};

} // namespace orlo::reporting
