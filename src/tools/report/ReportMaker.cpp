#include "tools/report/ReportMaker.h"

#include "platform/SystemLocale.h"
#include "reports/InRptBuild.h"

#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace kintar::report {
namespace {

constexpr std::size_t reportFileLimit = std::size_t{4} << 20U;

} // namespace

RunFolder::RunFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kintar-report-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "No temporary folder can be made");
    }
    path_ = name;
}

RunFolder::~RunFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

ReportMaker::ReportMaker(const std::string& site)
    : site_(std::filesystem::absolute(site).lexically_normal().string()),
      system_(companion_.newSystem()) {
    system_->SetVersion(KINTAR_VERSION);
    std::string path = site_;
    bool flag = true;
    system_->Create(path, flag);
}

std::shared_ptr<const reports::Report> ReportMaker::make(const Options& options) {
    const std::string file =
        options.whoIsIn ? makeWhoIsIn(options.loc) : site_ + "/Reports/Except.rpt";
    const auto text = files_.read(file, reportFileLimit);
    if (!text) {
        throw std::runtime_error("There is no report file " + file);
    }
    const auto connection = system_->SetupConnection();
    return reports::OpenReport(*text, file)
        .run({companion_.record(), *connection, databases_}, clock_.now(),
             platform::systemLocaleFormats());
}

std::string ReportMaker::makeWhoIsIn(std::int32_t loc) {
    const auto data = system_->SetupConnection();
    std::string failure;
    reports::InRptBuild build({companion_.record(), *data, databases_, files_, clock_,
                               folder_.path(), [this] { return system_->DataPath(); },
                               [&failure](const std::exception& error, std::string_view routine) {
                                   failure = std::string(routine) + ": " + error.what();
                               },
                               [] { return true; }},
                              loc, state_);
    while (build.step()) {
    }
    if (!build.succeeded()) {
        throw std::runtime_error(failure);
    }
    std::string copy = folder_.path() + "/InRptc.rpt";
    std::filesystem::copy_file(site_ + "/Reports/InRptc.rpt", copy);
    return copy;
}

} // namespace kintar::report
