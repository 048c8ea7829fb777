#include "tools/docs/WindowsReference.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace kintar::docs {

using testing::HasSubstr;

namespace {

struct SampleForm {
    QWidget form;
    QPushButton button{QStringLiteral("&Yes | No"), &form};
    QTimer timer{&form};

    SampleForm() {
        form.setObjectName(QStringLiteral("frmInOut"));
        form.setWindowTitle(QStringLiteral("In / Out Status"));
        platform::nameControl(button, "cmdYes", "button", QStringLiteral("Yes"));
        platform::nameControl(timer, "Timer1", "timer");
    }
};

} // namespace

TEST(WindowsReference, AFormIsToldWithItsTitleAndEveryControl) {
    SampleForm sample;
    sample.button.hide();
    sample.button.setEnabled(false);
    const std::string text = formReference(sample.form);
    EXPECT_THAT(text, HasSubstr("## frmInOut\n\nTitle at the start: In / Out Status\n\n"));
    EXPECT_THAT(text, HasSubstr("| `cmdYes` | button | push button | Yes | Yes \\| No | hidden, "
                                "disabled |\n| `Timer1` | timer | | | | |\n"));
}

TEST(WindowsReference, AFormThatNobodyDescribedIsAnError) {
    QWidget form;
    form.setObjectName(QStringLiteral("frmUnknown"));
    EXPECT_THROW(formReference(form), std::logic_error);
}

TEST(WindowsReference, TheWholeHoldsWhatIsCommonAndEveryForm) {
    SampleForm sample;
    const std::string text = windowsReference({&sample.form});
    EXPECT_TRUE(text.starts_with("# The windows\n"));
    EXPECT_THAT(text, HasSubstr("accessible description"));
    EXPECT_THAT(text, HasSubstr("## frmInOut"));
    EXPECT_TRUE(text.ends_with("|\n"));
}

} // namespace kintar::docs
