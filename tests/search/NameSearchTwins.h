// Everything that the name search stands on, as twins.
#pragma once

#include "search/TableTwin.h"
#include "search/objNameSearch.h"
#include "support/FakeServer.h"
#include "support/FakeSettings.h"
#include "support/RecordingWindowRequests.h"

#include <QImage>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kintar::testing {

/// A read that ends when the test says so.
class HeldRead final : public PendingRecordset {
public:
    struct Held {
        std::function<void()> ended;
        std::optional<Recordset> rows;
        std::optional<RunTimeError> error;
        bool dropped = false;
    };
    explicit HeldRead(std::shared_ptr<Held> held) : held_(std::move(held)) {}
    ~HeldRead() override { held_->dropped = true; }
    bool waitFor(std::chrono::milliseconds /*limit*/) override { return false; }
    void stop() override { held_->dropped = true; }
    Recordset take() override {
        if (held_->error) {
            throw *held_->error;
        }
        return std::move(*held_->rows);
    }

private:
    std::shared_ptr<Held> held_;
};

class TwinSys final : public TarnSys {
public:
    explicit TwinSys(Events& events, std::map<std::int16_t, std::string>& texts)
        : events_(events), texts_(texts) {}
    void SetVersion(const std::string& /*version*/) override {}
    std::string DataPath() override { return "/site/Data"; }
    std::shared_ptr<Connection> DataConnection() override {
        return std::make_shared<FakeConnection>("data", events_);
    }
    std::shared_ptr<Connection> SetupConnection() override {
        return std::make_shared<FakeConnection>("setup", events_);
    }
    void SetOperator(std::int32_t oprId) override {
        events_.push_back("SetOperator " + std::to_string(oprId));
    }
    bool Create(std::string& /*sysPath*/, bool& /*flag*/) override { return true; }
    std::string GetText(std::int16_t id) override { return texts_[id]; }
    void ReportError(int number, const std::string& text, std::int16_t kind) override {
        events_.push_back("ReportError " + std::to_string(number) + " " + text + " " +
                          std::to_string(kind));
    }
    std::string CompanyFilter(std::string_view column, std::int32_t locGrp, bool flag) override {
        events_.push_back("CompanyFilter " + std::string(column) + " " + std::to_string(locGrp) +
                          (flag ? " True" : " False"));
        return companyFilter;
    }
    bool HasRight(std::string_view /*name*/) override { return false; }

    std::string companyFilter;

private:
    Events& events_;
    std::map<std::int16_t, std::string>& texts_;
};

class TwinCompanion final : public Companion {
public:
    explicit TwinCompanion(Events& events) : events_(events) {}
    TarnRec& record() override { return tables; }
    std::shared_ptr<TarnSys> newSystem() override {
        return std::make_shared<TwinSys>(events_, texts);
    }

    TableTwin tables;
    std::map<std::int16_t, std::string> texts;

private:
    Events& events_;
};

/// Photos that arrive when the test says so.
class HeldPhotos final : public platform::PhotoLoader {
public:
    std::uint32_t load(const platform::PhotoRequest& request, Done done) override {
        requests.push_back(request);
        waiting_[++last_] = std::move(done);
        return last_;
    }
    void cancel(std::uint32_t number) override { waiting_.erase(number); }

    /// Answers the request `number`, counted from 1; false where it has been cancelled.
    bool answer(std::uint32_t number, const QImage& photo) {
        const auto found = waiting_.find(number);
        if (found == waiting_.end()) {
            return false;
        }
        const Done done = std::exchange(found->second, nullptr);
        waiting_.erase(number);
        done(number, photo);
        return true;
    }
    [[nodiscard]] std::size_t waiting() const { return waiting_.size(); }

    std::vector<platform::PhotoRequest> requests;

private:
    std::map<std::uint32_t, Done> waiting_;
    std::uint32_t last_ = 0;
};

class RecordingBrowser final : public platform::WebBrowser {
public:
    bool open(const std::string& address) override {
        opened.push_back(address);
        return works;
    }

    std::vector<std::string> opened;
    bool works = true;
};

class RecordingSignals final : public ObjectSignals {
public:
    explicit RecordingSignals(Events& events, std::string name = {})
        : events_(events), name_(std::move(name)) {}
    void changed(std::string_view member) override {
        events_.push_back(name_ + "changed " + std::string(member));
    }
    void signal(std::string_view name, const std::vector<Value>& arguments) override {
        events_.push_back(name_ + std::string(name) + " " +
                          std::to_string(std::get<std::int16_t>(arguments.at(0))) + " '" +
                          std::get<std::string>(arguments.at(1)) + "'");
    }

private:
    Events& events_;
    std::string name_;
};

struct NameSearchTwins {
    Events events;
    TwinCompanion companion{events};
    FakeApplication application{events};
    FakeTemporaryFolders temporaryFolders{events};
    modGlobals globals{companion, application, temporaryFolders};
    FakeSettings settings;
    RecordingWindowRequests windows;
    HeldPhotos photos;
    RecordingBrowser browser;
    LocaleFormats formats;
    search::NameSearchSurroundings surroundings{globals, application, settings, windows,
                                                photos,  browser,     formats,  {}};
    search::objNameSearch::Place place{
        [this] { return platform::FormWindow::make<search::frmNameSearch>(surroundings); }};
    RecordingSignals signals{events};

    NameSearchTwins() { globals.forms.place(FormId::frmNameSearch, place); }

    TableTwin& tables() { return companion.tables; }
    Events takeEvents() { return std::exchange(events, {}); }
    std::unique_ptr<search::objNameSearch> create() {
        return std::make_unique<search::objNameSearch>(surroundings, place, signals);
    }
};

} // namespace kintar::testing
