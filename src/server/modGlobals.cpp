#include "server/modGlobals.h"

#include "base/Number.h"
#include "base/RunTimeError.h"
#include "server/IgnoringErrors.h"

#include <functional>

namespace kintar {
namespace {

constexpr std::string_view temporaryFolderName = "TarnTmp";
/// The length of the answer to the question for the system's temporary folder.
constexpr std::size_t temporaryPathLimit = 512;

Connection& connectionOrClosed(std::shared_ptr<Connection>& connection) {
    if (!connection) {
        connection = std::make_shared<ClosedConnection>();
    }
    return *connection;
}

std::string versionText(platform::Application::Version version) {
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
           std::to_string(version.revision);
}

} // namespace

Connection& modGlobals::gCnn() {
    return connectionOrClosed(dataConnection_);
}

Connection& modGlobals::gCnn2() {
    return connectionOrClosed(setupConnection_);
}

void modGlobals::addInstance() {
    gInstanceCount = add16(gInstanceCount, 1);
    InitShared();
}

void modGlobals::removeInstance() {
    // Below the smallest count nothing is left to be counted down; shut-down is due all the same.
    ignoringErrors([this] { gInstanceCount = add16(gInstanceCount, -1); });
    TermShared();
}

bool modGlobals::startUpOrMessage() {
    const auto step = [this](const char* message, const std::function<void()>& work) {
        if (succeeds(work)) {
            return true;
        }
        application_.messageBox(message);
        return false;
    };
    return step("Problem Instancing TarnRec Object", [this] { companion_.record().SqlText(""); }) &&
           step("Problem Instancing TarnSys Object",
                [this] {
                    gSys = companion_.newSystem();
                    gSys->SetVersion(versionText(application_.version()));
                }) &&
           step("TarnSys Create Routine Failed", [this] {
               if (gSysPath.empty()) {
                   gSysPath = application_.folder();
               }
               bool flag = true;
               gSys->Create(gSysPath, flag);
           });
}

void modGlobals::InitShared() {
    if (gInstanceCount == 1) {
        if (!startUpOrMessage()) {
            return;
        }
        const bool connected = succeeds([this] {
            setupConnection_ = gSys->SetupConnection();
            dataConnection_ = gSys->DataConnection();
            CleanTempFolder();
        });
        if (!connected) {
            return;
        }
    }
    ignoringErrors([this] {
        application_.setHelpFile(platform::rulePath(application_.folder(), R"(\AcsHelp.chm)"));
    });
}

void modGlobals::CleanTempFolder() {
    std::string folder = gTempPath;
    const std::string system = temporaryFolders_.systemFolder();
    if (!system.empty() && system.size() < temporaryPathLimit) {
        folder = system.substr(0, system.find('\0'));
    }
    if (folder.empty()) {
        folder = application_.folder();
    }
    const std::string own = platform::rulePath(folder, "\\" + std::string(temporaryFolderName));
    try {
        temporaryFolders_.makeOwn(own);
    } catch (const std::exception& error) {
        reportError(error, "modGlobals/CleanTempFolder");
        throw;
    }
    // No separator is put in between: the system's folder brings one, the application's does not,
    // which names a sibling of it then. That is meant.
    gTempPath = folder + std::string(temporaryFolderName);
    ignoringErrors([this] { temporaryFolders_.deleteFiles(gTempPath); });
}

void modGlobals::TermShared() {
    for (const FormId form :
         {FormId::frmAlarmPopUp, FormId::frmKintar, FormId::frmInOut, FormId::frmNameSearch,
          FormId::frmOvrSchedule, FormId::frmPrnRpt, FormId::frmSelName}) {
        ignoringErrors([&] { forms.unload(form); });
    }
    if (gInstanceCount >= 1) {
        return;
    }
    ignoringErrors([this] { gCnn().Close(); });
    ignoringErrors([this] { gCnn2().Close(); });
    gSys.reset();
    dataConnection_.reset();
    setupConnection_.reset();
}

void modGlobals::reportError(const std::exception& error, std::string_view routine) {
    if (!gSys) {
        return;
    }
    constexpr std::int16_t reportKind = 2;
    constexpr int applicationDefinedError = 440; // "Automation error": not one of the known numbers
    const auto* known = dynamic_cast<const RunTimeError*>(&error);
    gSys->ReportError(known != nullptr ? known->number() : applicationDefinedError,
                      error.what() + std::string("\r\n") + std::string(routine), reportKind);
}

} // namespace kintar
