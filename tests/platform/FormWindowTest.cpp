#include "platform/qt/FormWindow.h"

#include "support/EventLoop.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <string>

namespace kintar::platform {
namespace {

using testing::runPending;

class TestForm final : public FormWindow {
public:
    explicit TestForm(std::string& log) : FormWindow("frmTest"), log_(log) {}
    TestForm(const TestForm&) = delete;
    TestForm& operator=(const TestForm&) = delete;
    ~TestForm() override { log_ += "destroyed "; }

    /// A routine that lets something happen in its middle, within another routine of the form.
    void routine(const std::function<void()>& meanwhile) {
        const RoutineScope outer(*this);
        {
            const RoutineScope inner(*this);
            meanwhile();
        }
        log_ += isUnloaded() ? "goes on unloaded " : "goes on ";
    }
    using FormWindow::place;
    using FormWindow::placement;

protected:
    void Load() override { log_ += "load "; }
    void Unload() override { log_ += "unload "; }

private:
    std::string& log_;
};

class FormWindowTest : public ::testing::Test {
protected:
    ~FormWindowTest() override {
        form.reset();
        FormWindow::destroyUnloaded();
    }

    std::string log;
    std::unique_ptr<TestForm, std::function<void(TestForm*)>> form =
        FormWindow::make<TestForm>(log);

    /// What a form's place does.
    void unloadPlace() {
        auto unloading = std::exchange(form, nullptr);
        unloading->unload();
    }
};

TEST_F(FormWindowTest, LoadsOnceOnItsFirstUse) {
    EXPECT_EQ(log, "");
    form->ensureLoaded();
    form->Show();
    EXPECT_EQ(log, "load ");
    EXPECT_TRUE(form->isVisible());
}

TEST_F(FormWindowTest, IsOnlyDiscardedWhereItWasNeverLoaded) {
    unloadPlace();
    runPending();
    EXPECT_EQ(log, "destroyed ");
}

TEST_F(FormWindowTest, UnloadsOnceAndHides) {
    form->Show();
    const QPointer<TestForm> window = form.get();
    unloadPlace();
    EXPECT_FALSE(window->isVisible());
    window->unload();
    runPending();
    EXPECT_EQ(log, "load unload destroyed ");
}

TEST_F(FormWindowTest, ClosesByTheTitleBarThroughItsPlace) {
    form->Show();
    form->onClose([this] { unloadPlace(); });
    form->close();
    runPending();
    EXPECT_EQ(log, "load unload destroyed ");
}

TEST_F(FormWindowTest, OutlivesItsOutermostRoutine) {
    form->Show();
    TestForm& window = *form;
    window.routine([&] {
        unloadPlace();
        runPending();
        log += "| ";
    });
    runPending();
    EXPECT_EQ(log, "load unload | goes on unloaded destroyed ");
}

TEST_F(FormWindowTest, StandsWhereItWasPlaced) {
    const Placement placement{1500, 750, 3000, 3765};
    form->place(placement);
    EXPECT_EQ(form->placement(), placement);
    form->Show();
    runPending();
    EXPECT_EQ(form->placement(), placement);
}

TEST_F(FormWindowTest, DoesNotEndTheProgramWhenItCloses) {
    EXPECT_FALSE(form->testAttribute(Qt::WA_QuitOnClose));
}

TEST_F(FormWindowTest, SaysInEveryTitleThatItIsNotUpToDate) {
    form->setWindowTitle(QStringLiteral("Names"));
    FormWindow::showNotUpToDate(true);
    EXPECT_EQ(form->windowTitle(), QStringLiteral("(not up to date) Names"));
    FormWindow::showNotUpToDate(true);
    EXPECT_EQ(form->windowTitle(), QStringLiteral("(not up to date) Names")) << "once";
    form->setWindowTitle(QStringLiteral("Other"));
    EXPECT_EQ(form->windowTitle(), QStringLiteral("(not up to date) Other"));
    FormWindow::showNotUpToDate(false);
    EXPECT_EQ(form->windowTitle(), QStringLiteral("Other"));
}

TEST_F(FormWindowTest, MadeMeanwhileSaysSoToo) {
    FormWindow::showNotUpToDate(true);
    auto later = FormWindow::make<TestForm>(log);
    later->setWindowTitle(QStringLiteral("Later"));
    EXPECT_EQ(later->windowTitle(), QStringLiteral("(not up to date) Later"));
    FormWindow::showNotUpToDate(false);
    EXPECT_EQ(later->windowTitle(), QStringLiteral("Later"));
}

} // namespace
} // namespace kintar::platform
