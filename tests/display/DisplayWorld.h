// Everything that the display windows stand on, as twins that record what is asked of them.
#pragma once

#include "display/DisplayWindows.h"
#include "display/objKintar.h"
#include "platform/PosixFiles.h"
#include "support/EventLoop.h"
#include "support/FakeClock.h"
#include "support/FakeSettings.h"
#include "support/RecordingWindowRequests.h"
#include "support/ScratchFolder.h"

#include <QCoreApplication>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kintar::testing {

class OpenConnection final : public Connection {
public:
    [[nodiscard]] bool isOpen() const override { return true; }
    void Close() override {}
};

/// The database: location groups, default image types, photos; and every statement run on it.
class TwinRecord final : public TarnRec {
public:
    Recordset OpenRecordset(std::string_view sql, Connection& connection) override {
        statements.emplace_back(sql);
        if (failing || !connection.isOpen()) {
            throw RunTimeError(3709, "The connection cannot be used");
        }
        if (sql == "SELECT LocGrp FROM LocGrp Order By LocGrp") {
            Recordset rows({{"LocGrp", ColumnType::Integer}});
            for (const int group : groups) {
                rows.addInteger(group);
            }
            return rows;
        }
        if (sql == "SELECT LocGrp, Num FROM ImageType WHERE DefaultImage <> 0") {
            Recordset rows({{"LocGrp", ColumnType::Integer}, {"Num", ColumnType::Integer}});
            for (const auto& [group, number] : types) {
                rows.addInteger(group);
                rows.addInteger(number);
            }
            return rows;
        }
        Recordset rows({{"FileName", ColumnType::Text}});
        if (const auto photo = photos.find(std::string(sql)); photo != photos.end()) {
            rows.addText(photo->second);
        }
        return rows;
    }
    bool FindRecord(Recordset& rows, std::string_view criterion) override {
        criteria.emplace_back(criterion);
        for (rows.MoveFirst(); !rows.atEnd(); rows.MoveNext()) {
            if (criterion == "LocGrp = " + rows.field("LocGrp").text()) {
                return true;
            }
        }
        return false;
    }
    void PrepareForm(Connection& /*connection*/, PreparableForm& form) override {
        statements.push_back("PrepareForm " + form.formName());
        for (FormCaption& caption : form.captions()) {
            if (const auto text = texts.find(caption.number); text != texts.end()) {
                caption.set(text->second);
            }
        }
    }
    void ExecuteSQL(std::string_view /*sql*/, Connection& /*connection*/) override {}
    std::string SqlText(std::string_view text) override { return std::string(text); }
    std::string SqlDate(DateTime value) override { return value.iso(); }
    void FillListBox(ListBox& /*list*/, Recordset& /*rows*/, std::string_view /*textField*/,
                     std::string_view /*dataField*/) override {}

    /// Person `id` has the photo `fileName` of an image type.
    void addPhoto(int id, int type, std::string fileName) {
        photos["SELECT FileName FROM Images WHERE NameID = " + std::to_string(id) +
               " AND ImgType = " + std::to_string(type)] = std::move(fileName);
    }

    std::vector<int> groups{1, 3};
    std::vector<std::pair<int, int>> types{{3, 2}};
    std::map<std::string, std::string> photos;
    std::map<std::int16_t, std::string> texts;
    std::vector<std::string> statements;
    std::vector<std::string> criteria;
    bool failing = false;
};

class TwinSys final : public TarnSys {
public:
    struct Log {
        std::vector<std::string> calls;
        std::vector<std::string> reports;
        std::string dataPath;
        std::string right; ///< the one right that the operator holds
        bool operatorFails = false;
    };

    explicit TwinSys(Log& log) : log_(log) {}
    void SetVersion(const std::string& /*version*/) override {}
    std::string DataPath() override { return log_.dataPath; }
    std::shared_ptr<Connection> DataConnection() override {
        return std::make_shared<OpenConnection>();
    }
    std::shared_ptr<Connection> SetupConnection() override {
        return std::make_shared<OpenConnection>();
    }
    void SetOperator(std::int32_t oprId) override {
        log_.calls.push_back("SetOperator " + std::to_string(oprId));
        if (log_.operatorFails) {
            throw RunTimeError(5, "no such operator");
        }
    }
    bool Create(std::string& /*sysPath*/, bool& /*flag*/) override { return true; }
    std::string GetText(std::int16_t /*id*/) override { return {}; }
    void ReportError(int number, const std::string& text, std::int16_t kind) override {
        log_.reports.push_back(std::to_string(number) + "|" + text + "|" + std::to_string(kind));
    }
    std::string CompanyFilter(std::string_view /*column*/, std::int32_t /*locGrp*/,
                              bool /*flag*/) override {
        return {};
    }
    bool HasRight(std::string_view name) override {
        log_.calls.push_back("HasRight " + std::string(name));
        return name == log_.right;
    }

private:
    Log& log_;
};

class TwinCompanion final : public Companion {
public:
    explicit TwinCompanion(TwinSys::Log& log) : log_(log) {}
    TarnRec& record() override { return tarnRec; }
    std::shared_ptr<TarnSys> newSystem() override {
        if (broken) {
            throw std::runtime_error("no companion");
        }
        return std::make_shared<TwinSys>(log_);
    }

    TwinRecord tarnRec;
    bool broken = false;

private:
    TwinSys::Log& log_;
};

class TwinApplication final : public platform::Application {
public:
    [[nodiscard]] std::string folder() const override { return applicationFolder; }
    [[nodiscard]] Version version() const override { return {4, 4, 12}; }
    void setHelpFile(const std::string& /*path*/) override {}
    [[nodiscard]] std::string helpFile() const override { return {}; }
    void messageBox(const std::string& text) override { boxes.push_back(text); }
    void runPendingWindowMessages() override {
        ++pendingRuns;
        if (const auto once = std::exchange(meanwhile, nullptr)) {
            once();
        }
        QCoreApplication::processEvents();
    }

    std::string applicationFolder;
    std::vector<std::string> boxes;
    int pendingRuns = 0;
    /// What the operator does the next time that window messages run.
    std::function<void()> meanwhile;
};

class TwinTemporaryFolders final : public platform::TemporaryFolders {
public:
    [[nodiscard]] std::string systemFolder() const override { return "/none/"; }
    void makeOwn(const std::string& /*folder*/) override {}
    void deleteFiles(const std::string& /*folder*/) override {}
};

/// A loader that answers when the test says so.
class TwinLoader final : public platform::PhotoLoader {
public:
    struct Request {
        std::uint32_t number;
        platform::PhotoRequest photo;
        Done done;
        bool cancelled = false;
    };

    std::uint32_t load(const platform::PhotoRequest& request, Done done) override {
        requests.push_back(
            {static_cast<std::uint32_t>(requests.size() + 1), request, std::move(done)});
        return requests.back().number;
    }
    void cancel(std::uint32_t number) override {
        if (number > 0) {
            requests.at(number - 1).cancelled = true;
        }
    }

    /// Answers the request at `index`, also where it was cancelled meanwhile: a decoder may be as
    /// slow as that.
    void answer(std::size_t index, const QColor& colour) {
        QImage photo(10, 10, QImage::Format_ARGB32_Premultiplied);
        photo.fill(colour);
        requests.at(index).done(requests.at(index).number, photo);
    }
    void answerNone(std::size_t index) { requests.at(index).done(requests.at(index).number, {}); }

    std::vector<Request> requests;
};

struct DisplayWorld {
    ScratchFolder site;
    TwinSys::Log sys{{}, {}, site / "Data", "L3M2", false};
    TwinCompanion companion{sys};
    TwinApplication application;
    TwinTemporaryFolders temporaryFolders;
    modGlobals globals{companion, application, temporaryFolders};
    FakeSettings settings;
    platform::PosixFiles files;
    FakeClock clock{*DateTime::fromFields(2012, 3, 14, 17, 5, 0)};
    RecordingWindowRequests windows;
    TwinLoader photos;
    DisplayWindows display{{globals, application, settings, files, clock, windows, photos, {}}};

    DisplayWorld() {
        application.applicationFolder = site.path();
        site.makeFolder("Data/Images");
        site.makeFolder("Errors");
        companion.tarnRec.addPhoto(12, 2, "smith.jpg");
        companion.tarnRec.addPhoto(13, 2, "jones.jpg");
    }

    frmKintar& form() { return display.kintar().get(); }
    template <class Control>
    Control& control(const char* name) {
        auto* found = form().findChild<Control*>(QLatin1String(name));
        if (found == nullptr) {
            throw std::runtime_error(std::string("no control ") + name);
        }
        return *found;
    }
    bool visible(const char* name) { return control<QWidget>(name).isVisible(); }
    std::string text(const char* name) {
        return control<QWidget>(name).accessibleName().toStdString();
    }

    /// John Smith's event, as a client sets it.
    void smith(objKintar& object) {
        set(object, "John", "Smith", "4711");
        object.ID(12);
    }
    void jones(objKintar& object) {
        set(object, "Jane", "Jones", "4712");
        object.ID(13);
    }
    static void set(objKintar& object, const std::string& fName, const std::string& lName,
                    const std::string& code) {
        object.LocGrp(3);
        object.LocName("Head Office");
        object.FName(fName);
        object.LName(lName);
        object.Device("Main Door");
        object.EventDesc("Valid Access");
        object.DateTime("3/14/2012 5:05:00 PM");
        object.Code(code);
        object.OprID(7);
    }
    /// Lets the display timer tick.
    bool displayed() {
        const std::size_t before = windows.placed.size();
        return runUntil([&] { return windows.placed.size() > before; });
    }
};

} // namespace kintar::testing
