#pragma once

#include <QPalette>
#include <QPixmap>
#include <QStringList>
#include <QWidget>

#include <functional>

class QTableView;
class QTabWidget;

namespace orlo
{
struct ListedScreen;

namespace widgets
{
class ComboBox;
}
} // namespace orlo

/// The tour's hands and its camera: real key and mouse events on the controls that it finds by name, and pictures,
/// numbered in their order, in a folder. What can't be found ends the tour.
class Driver
{
public:
    /// A picture that the manual has goes into its folder, too, if there is one.
    explicit Driver(QString folder, QString manual = {}) : m_folder(std::move(folder)), m_manual(std::move(manual)) {}

protected:
    /// Starts something that waits, and does the rest inside its loop.
    void during(const std::function<void()>& trigger, const std::function<void()>& inside);
    void picture(QWidget& widget, const QString& name);
    /// Puts a picture in the place of the manual's, where that has it.
    void keepForManual(const QImage& image, const QString& name) const;
    void choose(const char* command);
    /// Opens a screen of the program's list, as its command does, and takes its picture.
    [[nodiscard]] QWidget& open(const QString& form);
    /// The same for one that waits: the work is done inside its loop, and ends it.
    void inside(const QString& form, const std::function<void(QWidget&)>& work);
    /// Whether the screen's picture has been taken.
    [[nodiscard]] bool isPictured(const orlo::ListedScreen& screen) const;

    /// The visible window or child window of a name, as soon as it is up.
    [[nodiscard]] static QWidget& window(const QString& name);
    template <class W>
    [[nodiscard]] static W& control(QWidget& form, const char* name)
    {
        W* found = form.findChild<W*>(QString::fromLatin1(name));
        if (!found)
            qFatal("no control %s", name);
        return *found;
    }
    static void click(QWidget& form, const char* button);
    /// Turns to a page by a click on its tab.
    static void turnTo(QTabWidget& tabs, int page);
    /// Takes a picture of the dialog that a button opens, and gives it up.
    void dialogOf(QWidget& form, const char* button, const char* dialog, const char* name);
    static void type(QWidget& form, const char* box, const QString& text);
    static void typeCell(QTableView& grid, int row, int column, const QString& text);
    static void doubleClickRow(QTableView& grid, int row);
    static void pick(orlo::widgets::ComboBox& box, const QString& entry);
    static void pick(orlo::widgets::ComboBox& box, int row);
    /// Lets the windows come to rest.
    static void settle();

    [[nodiscard]] const QString& folder() const { return m_folder; }
    /// The folder of the manual's pictures, "" where they stay as they are.
    [[nodiscard]] const QString& manual() const { return m_manual; }

private:
    [[nodiscard]] static QPixmap grab(QWidget& widget);

    QString m_folder;
    QString m_manual;
    int m_number = 0;
    QStringList m_names; // of the pictures
};

/// Light letters on dark ground, as a dark desktop has them.
[[nodiscard]] QPalette darkPalette();
