#pragma once

#include <QPointer>
#include <QPushButton>
#include <QWidget>

#include <functional>

namespace orlo::widgets
{

/// How a form shows itself.
enum class FormKind {
    Child,  ///< a window inside the main frame
    Window, ///< a window of its own, fixed border, no minimise or maximise button
};

/// A screen of the program. There is one global instance of each form class, from its first showing to its unload.
///
/// The load step runs once, before the form is first seen. Enter presses the default button from anywhere but another
/// button or a multi-line box, Escape the cancel button, both only while that button is enabled. Closing the window
/// unloads the form, without a question and without the check of any field; a grid's row that is refused keeps it open.
class Form : public QWidget
{
    Q_OBJECT

public:
    /// The form is a child of the main frame's work area, or owned by the frame as a window.
    explicit Form(FormKind kind);
    ~Form() override;

    /// How the form shows.
    [[nodiscard]] FormKind kind() const { return m_kind; }
    /// Loads the form if it isn't loaded yet.
    void ensureLoaded();
    /// Shows the form and returns; a form that is open already comes to the front as the user left it.
    void showForm();
    /// Shows the form and returns when it is unloaded or hidden; meanwhile it holds the input of the whole program.
    void showWaiting();
    /// Closes the form and ends the instance. The object itself is deleted on the return to the event loop, and where a
    /// handler of its waits for a question or a dialog, once that has returned.
    void unload();

    /// True for a form whose border is fixed: it can't be sized or maximised.
    [[nodiscard]] bool hasFixedBorder() const { return m_fixedBorder; }

    /// Names the window that owns all others and says how it takes a child form into its work area. Null when it goes.
    static void setMainWindow(QWidget* frame, std::function<void(Form&)> showChild);
    /// The frame; null before it is made.
    [[nodiscard]] static QWidget* mainWindow();
    /// Writes the open rows of all grids before the program ends; false, after the message, for one that is refused.
    [[nodiscard]] static bool writeAllOpenRows();
    /// Unloads every form that is loaded.
    static void unloadAll();
    /// Whether the object is a form, or holds one, whose handlers may still run; it is deleted once they have returned.
    [[nodiscard]] static bool putsOffDeletion(QObject& object);

Q_SIGNALS:
    /// The form is unloaded; its object goes when control is back in the event loop.
    void unloaded();

protected:
    /// The form's load step.
    virtual void load() {}

    /// Null for none.
    void setDefaultButton(QPushButton* button);
    void setCancelButton(QPushButton* button);
    [[nodiscard]] QPushButton* cancelButton() const { return m_cancelButton; }
    /// Keeps the window at the size that its contents ask for.
    void setFixedBorder();
    /// Runs the check before anything else of the form is reached after the field; a false result brings the focus back
    /// to it.
    void setLeaveCheck(QWidget* field, std::function<bool()> check);

    /// Writes the open rows of the form's grids; false, after the message, for one that is refused.
    [[nodiscard]] bool writeOpenRows();

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    template <class F>
    friend class Instance;
    friend bool mayReach(const QWidget* target);
    friend bool isInClosedForm(const QWidget& widget);

    struct LeaveCheck {
        QWidget* field;
        std::function<bool()> passes;
    };

    [[nodiscard]] QWidget* checkedFieldAt(const QWidget* target) const;
    [[nodiscard]] bool mayGoTo(const QWidget* target);

    FormKind m_kind;
    int m_depth;                    // of the event loop that its handlers run in
    std::function<void()> m_forget; // ends the global instance
    bool m_loaded = false;
    bool m_unloading = false;
    bool m_fixedBorder = false;
    QPointer<QPushButton> m_defaultButton;
    QPointer<QPushButton> m_cancelButton;
    QList<LeaveCheck> m_leaveChecks;
    QPointer<QWidget> m_unchecked; // the field with a check that was reached last, until the check lets go of it
};

/// Whether the widget stands in a form that is closed. Keys and presses that were on their way may still reach it.
[[nodiscard]] bool isInClosedForm(const QWidget& widget);

/// Lets a double click press the button once. For buttons whose second press would do again what can't be undone.
void pressOncePerDoubleClick(QPushButton& button);

/// Asks the check of the field that the target's form was in last, and of the field that has the focus. False when the
/// focus must stay or go back there, which it then has done. The application calls it before a press or a key reaches
/// the target; whichever way the focus went meanwhile, to another window and back included, nothing gets past the
/// check.
[[nodiscard]] bool mayReach(const QWidget* target);

/// The global instance of a form class: made by the first call, gone with its unload.
template <class F>
class Instance
{
public:
    [[nodiscard]] static F& get()
    {
        if (!s_form) {
            s_form = new F;
            static_cast<Form*>(s_form.data())->m_forget = [] { s_form.clear(); };
        }
        F& form = *s_form;
        static_cast<Form&>(form).ensureLoaded();
        return form;
    }
    /// The instance without loading it; null when there is none.
    [[nodiscard]] static F* loaded() { return s_form.data(); }
    /// Shows the form, loaded first where it isn't; see showForm().
    static void show() { get().showForm(); }
    /// Shows the form and returns when it is closed; see Form::showWaiting().
    static void showWaiting() { get().showWaiting(); }
    /// Unloads the form; one that isn't loaded is loaded first, its load step included.
    static void unload() { get().unload(); }

private:
    static inline QPointer<F> s_form;
};

} // namespace orlo::widgets
