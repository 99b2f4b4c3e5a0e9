#pragma once

#include <QGroupBox>

namespace orlo::widgets
{

/// A group of controls told apart by its title and space, without a box around it. The title stands in bold above the
/// controls, or as a label before them.
class Section : public QGroupBox
{
    Q_OBJECT
    Q_PROPERTY(bool beside READ beside WRITE setBeside)

public:
    explicit Section(QWidget* parent = nullptr);

    /// Whether the title stands before the controls.
    [[nodiscard]] bool beside() const { return m_beside; }
    void setBeside(bool beside);
    /// The width that the title needs before the controls, in pixels.
    [[nodiscard]] int titleWidth() const;
    /// Gives the title more width than it needs.
    void setTitleWidth(int width);

    /// Sets the title; the contents begin below it.
    void setTitle(const QString& title);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QFont titleFont() const;
    void makeRoom();

    bool m_beside = false;
    int m_titleWidth = 0; // the least that was asked for
};

} // namespace orlo::widgets
