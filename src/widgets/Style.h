#pragma once

#include <QProxyStyle>

namespace orlo::widgets
{

/// The program's look: Fusion with readable texts and visible edges on any desktop's colours, a broad edge around the
/// focused control, a paler highlight in lists without focus, margins beside the texts of buttons, headings and cells,
/// and its own icons.
class Style : public QProxyStyle
{
    Q_OBJECT

public:
    Style();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    void polish(QPalette& palette) override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

} // namespace orlo::widgets
