// What all forms of the server have in common.
#pragma once

#include "platform/Placement.h"
#include "platform/WindowRequests.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <utility>

namespace kintar::platform {

/// A form: it loads once, on its first use, and unloads once; then its place makes a fresh one.
///
/// A form owns its end: it is destroyed only when none of its routines is running any more, also
/// where it is closed within one of them.
class FormWindow : public QWidget {
public:
    explicit FormWindow(const char* name);
    FormWindow(const FormWindow&) = delete;
    FormWindow& operator=(const FormWindow&) = delete;
    ~FormWindow() override;

    /// Makes an owner for a `DefaultInstance`: it disposes of the form once no routine of it runs.
    template <class Form, class... Arguments>
    static std::unique_ptr<Form, std::function<void(Form*)>> make(Arguments&&... arguments) {
        return {new Form(std::forward<Arguments>(arguments)...),
                [](Form* form) { static_cast<FormWindow*>(form)->dispose(); }};
    }

    /// Destroys what was unloaded now, not from the event loop: called by those who take away what
    /// forms stand on, when no routine of a form is running.
    static void destroyUnloaded();

    /// Puts a mark in front of every form's title, or takes it away: what the forms show is not up
    /// to date, since its source is away. Forms that are made meanwhile have it, too.
    static void showNotUpToDate(bool notUpToDate);

    /// Runs the form's load if it has not run yet.
    void ensureLoaded();
    /// Shows the form modeless, which loads it.
    void Show();
    /// Runs the form's unload if it was loaded, and hides it. Called by its place.
    void unload();
    /// Whether `unload` was called: a routine that let window messages run asks this before it goes
    /// on.
    [[nodiscard]] bool isUnloaded() const { return unloaded_; }
    /// What closing by the title bar does: the form's place unloads it.
    void onClose(std::function<void()> unloadPlace) { unloadPlace_ = std::move(unloadPlace); }

protected:
    /// Stands in a routine of the form for as long as it runs.
    class RoutineScope {
    public:
        explicit RoutineScope(FormWindow& form) : form_(form) { ++form_.routines_; }
        RoutineScope(const RoutineScope&) = delete;
        RoutineScope& operator=(const RoutineScope&) = delete;
        ~RoutineScope() { form_.leaveRoutine(); }

    private:
        FormWindow& form_;
    };

    virtual void Load() = 0;
    virtual void Unload() = 0;

    /// Where the window stands: its frame's position and its client area's size, in twips.
    [[nodiscard]] Placement placement() const;
    /// Places the window, moved back onto a screen where it lies outside of all.
    void place(const Placement& placement);
    /// The window as the platform numbers it.
    [[nodiscard]] WindowId windowId() const { return static_cast<WindowId>(winId()); }

    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void dispose();
    void leaveRoutine();
    void markTitle();

    std::function<void()> unloadPlace_;
    int routines_ = 0;
    bool loaded_ = false;
    bool unloaded_ = false;
    bool disposed_ = false;
};

} // namespace kintar::platform
