#pragma once

class QPainter;
class QRect;
class QStyleOption;
class QStyleOptionComboBox;

namespace orlo::widgets
{

/// The room that the edge of a box with the focus takes, in pixels; others leave it free but for one.
inline constexpr int EdgeWidth = 2;

/// What the style paints of boxes: edges that stand out from both grounds by VisibleEdge, a broader one in the
/// highlight around the box that has the focus, paler ones around disabled boxes.

/// The edge of a text box or list.
void paintEdge(QPainter& painter, const QStyleOption& box);
/// A box with or without a tick.
void paintTick(QPainter& painter, const QStyleOption& box);
/// A round choice, set or not.
void paintRadio(QPainter& painter, const QStyleOption& choice);
/// A combo box without its text: ground, edge and the arrow in its place.
void paintComboBox(QPainter& painter, const QStyleOptionComboBox& box, const QRect& arrow);

} // namespace orlo::widgets
