#pragma once

#include <QGroupBox>

namespace orlo::widgets
{

/// A group of controls with a title but without a frame. The title is in bold above the controls, or a label before
/// them.
class Section : public QGroupBox
{
    Q_OBJECT
    Q_PROPERTY(bool beside READ beside WRITE setBeside)

public:
    explicit Section(QWidget* parent = nullptr);

    /// Whether the title is before the controls.
    [[nodiscard]] bool beside() const { return m_beside; }
    void setBeside(bool beside) { m_beside = beside; }
    /// The width of a title before the controls, in pixels.
    [[nodiscard]] int titleWidth() const;
    /// Gives the title at least this width.
    void setTitleWidth(int width);

    /// Sets the title; the contents start below it.
    void setTitle(const QString& title);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QFont titleFont() const;
    void makeRoom();

    bool m_beside = false;
    int m_titleWidth = 0; // minimum
};

} // namespace orlo::widgets
