#pragma once

class QPainter;
class QRect;
class QStyleOption;
class QStyleOptionComboBox;

namespace orlo::widgets
{

/// Pixels reserved for the edge of a focused box; other edges use one of them.
inline constexpr int EdgeWidth = 2;

/// Painting of boxes for the style: edges that stand out from both grounds by VisibleEdge, a broader one in the
/// highlight colour around the focused box, paler ones around disabled boxes.

/// The edge of a text box or list.
void paintEdge(QPainter& painter, const QStyleOption& box);
/// A check box.
void paintTick(QPainter& painter, const QStyleOption& box);
/// A radio button.
void paintRadio(QPainter& painter, const QStyleOption& choice);
/// A combo box without its text: ground, edge and arrow.
void paintComboBox(QPainter& painter, const QStyleOptionComboBox& box, const QRect& arrow);

} // namespace orlo::widgets
