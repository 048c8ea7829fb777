// The public class through which a client asks an operator to pick a name.
#pragma once

#include "search/DefaultImageTypes.h"
#include "search/NameSearchSurroundings.h"
#include "search/frmNameSearch.h"
#include "server/ClassTable.h"
#include "server/Forms.h"

#include <cstdint>
#include <string>

namespace kintar::search {

class objNameSearch final : public PublicObject {
public:
    using Place = DefaultInstance<frmNameSearch>;

    /// Initialises: where reading the default image types fails, terminates and throws that error.
    objNameSearch(NameSearchSurroundings& surroundings, Place& place, ObjectSignals& signals);
    objNameSearch(const objNameSearch&) = delete;
    objNameSearch& operator=(const objNameSearch&) = delete;
    ~objNameSearch() override;

    /// Opens the dialog. Completes when the window has become an ordinary one again.
    void LocGrp(std::int32_t value, Completion completion);
    void LocName(const std::string& value) { locName_ = value; }
    void OprID(std::int32_t value) { oprId_ = value; }
    void NameSelMode(std::int16_t value) { mode_ = value; }
    [[nodiscard]] std::int32_t SelNameID() const;
    [[nodiscard]] std::string SelName() const;
    [[nodiscard]] bool SelNameReady() const;
    void PrintStatus();
    void PrintWhoIsIn(std::int32_t loc);

    /// `surroundings` and `place` outlive every instance.
    static PublicClass describe(NameSearchSurroundings& surroundings, Place& place);

private:
    void terminate();
    void open(std::int32_t locGrp);

    NameSearchSurroundings& surroundings_;
    modGlobals& globals_;
    Place& place_;
    DefaultImageTypes imageTypes_;
    std::string locName_;
    std::int32_t oprId_ = 0;
    std::int16_t mode_ = 0;
    Observation changes_;
    Observation prints_;
};

} // namespace kintar::search
