// The public class behind the photo window.
#pragma once

#include "server/ClassTable.h"

#include <cstdint>
#include <string>

namespace kintar {

class DisplayWindows;

/// Every member is a value to be shown; setting `ID` shows them all.
class objKintar final : public PublicObject {
public:
    /// The class, its objects served by `display`, which must outlive them.
    static PublicClass describe(DisplayWindows& display);

    /// Joins the shared lifetime and shows the photo window. Raises run-time error 6 where the
    /// count of instances overflows.
    explicit objKintar(DisplayWindows& display);
    objKintar(const objKintar&) = delete;
    objKintar& operator=(const objKintar&) = delete;
    ~objKintar() override;

    /// Dropped while the photo window takes other values.
    void ID(std::int32_t value);
    void LocGrp(std::int32_t value) { locGrp_ = value; }
    void LocName(const std::string& value) { locName_ = value; }
    void FName(const std::string& value) { fName_ = value; }
    void LName(const std::string& value) { lName_ = value; }
    void Device(const std::string& value) { device_ = value; }
    void EventDesc(const std::string& value) { eventDesc_ = value; }
    /// Keeps the time of day alone, as the locale writes it. Raises run-time error 13, and keeps
    /// what it had, where the text is no date or time.
    void DateTime(const std::string& value);
    void Code(const std::string& value) { code_ = value; }
    void OprID(std::int32_t value) { oprId_ = value; }

private:
    DisplayWindows& display_;
    std::int32_t locGrp_ = 0;
    std::string locName_;
    std::string fName_;
    std::string lName_;
    std::string device_;
    std::string eventDesc_;
    std::string dateTime_;
    std::string code_;
    std::int32_t oprId_ = 0;
};

} // namespace kintar
