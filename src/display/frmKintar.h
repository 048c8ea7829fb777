// The window with the photo of the person whose card was just used.
#pragma once

#include "display/CardCommandWriter.h"
#include "display/DisplayServices.h"
#include "display/ImageTypes.h"
#include "display/PhotoLayout.h"
#include "platform/qt/FormWindow.h"

#include <QTimer>

#include <cstdint>
#include <string>
#include <vector>

namespace kintar::platform {
class ElidedLabel;
class PhotoBox;
} // namespace kintar::platform

namespace kintar {

class CommandLabel;

/// Shows the photo, the name and the event, over other windows and without taking the keyboard.
///
/// The photo, the name and the card that a command would switch always belong together: while newer
/// values wait for their display, no command is offered, and the tick that changes the texts takes
/// the photo away until its own has been decoded.
class frmKintar final : public platform::FormWindow, public PreparableForm {
public:
    explicit frmKintar(const DisplayServices& services);

    /// Takes the values of an event and has them displayed on the next tick of `Timer2`; loads the
    /// form where that has not happened. A display under way is not started a second time.
    void Kintar(std::int32_t id, std::int32_t locGrp, const std::string& fName,
                const std::string& lName, const std::string& dateTime, const std::string& eventDesc,
                const std::string& device, const std::string& locName, const std::string& code,
                std::int32_t oprID);

    /// Looks the photo up and shows it, or "No Image".
    void LoadImage(std::int32_t id, std::int16_t imgType);

    [[nodiscard]] std::string formName() const override { return "frmKintar"; }
    std::vector<FormCaption> captions() override;

protected:
    void Load() override;
    void Unload() override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void makeControls();
    void connectControls();
    void Timer2_Timer();
    void Timer1_Timer();
    void Label_DblClick();
    void lblEnable_Click();
    void lblDisAble_Click();
    void SetCardState(bool enable);

    void showTexts();
    void hideCommands();
    void setStatus(const char* text, bool bad);
    void requestOrder(platform::InsertAfter insertAfter);
    [[nodiscard]] QFont nameFont() const;
    [[nodiscard]] PhotoLayoutInput layoutInput() const;
    void layOut();
    TarnSys& sys();

    DisplayServices services_;
    CardCommandWriter cardCommand_;

    // The values of the event.
    std::int32_t ID = 0;
    std::int32_t LocGrp = 0;
    std::string LocName;
    std::string FName;
    std::string LName;
    std::string Device;
    std::string DateTime;
    std::string EventDesc;
    std::int32_t OprID = 0;
    std::string Code;

    ImageTypes mImageTypes;
    std::int32_t mLHeight = 0; ///< height of the image area, twips
    std::int32_t mWidth = 0;   ///< width of the window, twips
    std::int32_t mHeight = 0;  ///< height of the client area that `mLHeight` belongs to, twips
    bool mTimer1Free = false;
    bool mShowReady = false;
    bool mNewerWait = false; ///< whether values wait that the window does not show yet

    platform::PhotoBox* Lead1 = nullptr;
    platform::ElidedLabel* lblName = nullptr;
    platform::ElidedLabel* Label1 = nullptr;
    platform::ElidedLabel* Label2 = nullptr;
    platform::ElidedLabel* lblStatus = nullptr;
    CommandLabel* lblEnable = nullptr;
    CommandLabel* lblDisAble = nullptr;
    QTimer Timer1;
    QTimer Timer2;
};

} // namespace kintar
