// The state that all objects and windows of the server share, its start-up and its shut-down.
#pragma once

#include "platform/Platform.h"
#include "server/Companion.h"
#include "server/Forms.h"
#include "server/NameSearchResult.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

namespace kintar {

/// One a process, touched on one thread only.
class modGlobals {
public:
    modGlobals(Companion& companion, platform::Application& application,
               platform::TemporaryFolders& temporaryFolders)
        : companion_(companion), application_(application), temporaryFolders_(temporaryFolders) {}
    modGlobals(const modGlobals&) = delete;
    modGlobals& operator=(const modGlobals&) = delete;

    /// Live public objects that take part in the shared lifetime; can go below 0.
    std::int16_t gInstanceCount = 0;
    std::shared_ptr<TarnSys> gSys;
    std::string gSysPath;
    std::string gTempPath;
    /// False while the photo window takes new data.
    bool gPhotoReady = false;
    /// `SelNameID`, `SelName` and `SelNameReady`.
    NameSearchResult nameSearch;
    Forms forms;

    /// The data connection; a closed one while unset.
    Connection& gCnn();
    /// The connection for form preparation; a closed one while unset.
    Connection& gCnn2();
    /// Throws where the companion cannot be reached.
    TarnRec& tarnRec() { return companion_.record(); }

    /// Adds one to the count and runs start-up. Run-time error 6, and no start-up, where the count
    /// overflows.
    void addInstance();
    /// Takes one from the count and runs shut-down.
    void removeInstance();

    /// Start-up, which runs only where the count is exactly 1. A failure shows its message or none
    /// and is no error of the caller.
    void InitShared();
    /// Shut-down: unloads all seven forms every time; closes and releases the connections where the
    /// count has fallen below 1.
    void TermShared();
    /// Makes and empties the server's temporary folder. Throws, after a report, where that folder
    /// is not the user's own; `gTempPath` is unchanged then and nothing has been emptied.
    void CleanTempFolder();

    /// Reports a caught error to the companion, if there is one, under `object/routine`.
    void reportError(const std::exception& error, std::string_view routine);

private:
    bool startUpOrMessage();

    Companion& companion_;
    platform::Application& application_;
    platform::TemporaryFolders& temporaryFolders_;
    std::shared_ptr<Connection> dataConnection_;
    std::shared_ptr<Connection> setupConnection_;
};

} // namespace kintar
