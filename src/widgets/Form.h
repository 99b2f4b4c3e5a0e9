#pragma once

#include <QHash>
#include <QPointer>
#include <QPushButton>
#include <QWidget>

#include <functional>

namespace orlo::widgets
{

/// How a form is shown.
enum class FormKind {
    Child,  ///< a child window of the main window
    Window, ///< a top-level window with a fixed border, without minimise and maximise buttons
};

/// A screen of the program. Each form class has one global instance, from its first showing to its unload.
///
/// load() runs once, before the form is first shown. Enter presses the default button, except from another button or a
/// multi-line box; Escape presses the cancel button; each only while that button is enabled. Closing the window unloads
/// the form without a question or any field's check; only a grid's refused row keeps it open.
class Form : public QWidget
{
    Q_OBJECT

public:
    /// A form is either a child window of the main window or owned by it.
    explicit Form(FormKind kind);
    ~Form() override;

    /// How the form is shown.
    [[nodiscard]] FormKind kind() const { return m_kind; }
    /// Loads the form if it isn't loaded yet.
    void ensureLoaded();
    /// Shows the form and returns; an open form comes to the front unchanged.
    void showForm();
    /// Shows the form and blocks the whole program's input until it is unloaded or hidden.
    void showWaiting();
    /// Closes the form and ends the instance. The object is deleted when control returns to the event loop, or, if one
    /// of its handlers is waiting for a question or a dialog, when that handler has returned.
    void unload();

    /// True for a form that can't be resized or maximised.
    [[nodiscard]] bool hasFixedBorder() const { return m_fixedBorder; }

    /// Writes the open rows of all grids before the program ends; false if one is refused, after the message.
    [[nodiscard]] static bool writeAllOpenRows();
    /// Unloads all loaded forms.
    static void unloadAll();
    /// Whether the object is, or contains, a form whose handlers are still running; it is deleted once they have
    /// returned.
    [[nodiscard]] static bool putsOffDeletion(QObject& object);

Q_SIGNALS:
    /// Emitted when the form is unloaded; the object is deleted later, in the event loop.
    void unloaded();

protected:
    /// The form's load step.
    virtual void load() {}

    /// The form's own control of that name; one that it hasn't got, or not as that, is a fault of the program.
    template <class T>
    [[nodiscard]] T& control(const char* name) const
    {
        T* found = qobject_cast<T*>(controlNamed(name));
        if (!found)
            qFatal("%s: no control %s", metaObject()->className(), name);
        return *found;
    }

    /// Null for none.
    void setDefaultButton(QPushButton* button);
    void setCancelButton(QPushButton* button);
    [[nodiscard]] QPushButton* cancelButton() const { return m_cancelButton; }
    /// Fixes the window's size to what its contents need.
    void setFixedBorder();
    /// Runs the check before anything else in the form is used after the field; if it returns false, the focus goes
    /// back to the field.
    void setLeaveCheck(QWidget* field, std::function<bool()> check);

    /// Writes the open rows of the form's grids; false if one is refused, after the message.
    [[nodiscard]] bool writeOpenRows();

    void closeEvent(QCloseEvent* event) override;
    /// Whether unload() was called: the close that follows is the program's own.
    [[nodiscard]] bool isUnloading() const { return m_unloading; }
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

    [[nodiscard]] QWidget* controlNamed(const char* name) const;
    [[nodiscard]] QWidget* checkedFieldAt(const QWidget* target) const;
    [[nodiscard]] bool mayGoTo(const QWidget* target);

    FormKind m_kind;
    int m_depth;                    // nesting depth of the event loop that runs its handlers
    std::function<void()> m_forget; // ends the global instance
    bool m_loaded = false;
    bool m_unloading = false;
    bool m_fixedBorder = false;
    QPointer<QPushButton> m_defaultButton;
    QPointer<QPushButton> m_cancelButton;
    QList<LeaveCheck> m_leaveChecks;
    mutable QHash<QLatin1StringView, QWidget*> m_controls; // those that were asked for
    QPointer<QWidget> m_unchecked;                         // the last focused field whose check hasn't passed since
};

/// Sets the main window, which owns all others, and how it takes in a child form. Pass null when the window is
/// destroyed.
void setMainWindow(QWidget* frame, std::function<void(Form&)> showChild);
/// The main window; null before it is created.
[[nodiscard]] QWidget* mainWindow();

/// Whether the widget is in a closed form. Keys and presses already on their way may still reach it.
[[nodiscard]] bool isInClosedForm(const QWidget& widget);

/// Makes a double click press the button once, for actions that must not run twice.
void pressOncePerDoubleClick(QPushButton& button);

/// Runs the checks of the field last used in the target's form and of the focused field. False if a check refuses; the
/// focus is then back in the field. The application calls this before a press or key reaches the target, so nothing
/// gets past a check, even by way of another window.
[[nodiscard]] bool mayReach(const QWidget* target);

/// The global instance of a form class: created by the first call, gone after its unload.
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
    /// The loaded instance; null if there is none.
    [[nodiscard]] static F* loaded() { return s_form.data(); }
    /// Loads the form if necessary and shows it; see showForm().
    static void show() { get().showForm(); }
    /// Shows the form and waits; see Form::showWaiting().
    static void showWaiting() { get().showWaiting(); }
    /// Unloads the form; if it wasn't loaded, it is loaded first, including its load step.
    static void unload() { get().unload(); }

private:
    static inline QPointer<F> s_form;
};

} // namespace orlo::widgets
