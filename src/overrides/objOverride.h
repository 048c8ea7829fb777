// The public class that opens the override editor.
#pragma once

#include "overrides/OverrideDone.h"
#include "overrides/OverrideForm.h"
#include "server/ClassTable.h"
#include "server/modGlobals.h"

#include <cstdint>
#include <functional>
#include <string>

namespace kintar {

/// Keeps nothing: every property goes straight to the one editor window. The setters never fail.
class objOverride final : public PublicObject {
public:
    using FormOf = std::function<OverrideForm&()>;

    /// Raises run-time error 6 where the shared count overflows, and counts nothing then.
    objOverride(modGlobals& globals, FormOf form, OverrideDone& done, ObjectSignals& signals);
    objOverride(const objOverride&) = delete;
    objOverride& operator=(const objOverride&) = delete;
    ~objOverride() override;

    /// Opens the editor on the point; every other property is set before. An editor that is open
    /// goes on with what it shows. Answered when the window stands in the ordinary order again.
    void PointID(std::int32_t value, Completion completion);
    void PointType(std::int16_t value);
    void PointName(const std::string& value);
    void LocName(const std::string& value);
    void OprName(const std::string& value);
    void OprID(std::int32_t value);
    void SecureOpt(bool value);
    void OpenOpt(bool value);
    void TZOpt(bool value);
    void ArmOpt(bool value);
    void ByPassOpt(bool value);
    [[nodiscard]] bool Done() const { return done_.get(); }

    static PublicClass describe(modGlobals& globals, const FormOf& form, OverrideDone& done);

private:
    modGlobals& globals_;
    FormOf form_;
    OverrideDone& done_;
    ObjectSignals& signals_;
};

} // namespace kintar
