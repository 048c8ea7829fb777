// Twins of what the server's shared state stands on. Each records what was asked of it.
#pragma once

#include "server/ClassTable.h"
#include "server/modGlobals.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace kintar::testing {

using Events = std::vector<std::string>;

class FakeConnection final : public Connection {
public:
    FakeConnection(std::string name, Events& events) : name_(std::move(name)), events_(events) {}
    [[nodiscard]] bool isOpen() const override { return open_; }
    void Close() override {
        open_ = false;
        events_.push_back("close " + name_);
    }

private:
    std::string name_;
    Events& events_;
    bool open_ = true;
};

/// Where a fault is to be raised; empty: nowhere.
struct Faults {
    bool record = false;
    bool sqlText = false;
    bool system = false;
    bool setVersion = false;
    bool create = false;
    bool connections = false;
};

class FakeTarnRec final : public TarnRec {
public:
    FakeTarnRec(Events& events, Faults& faults) : events_(events), faults_(faults) {}
    Recordset OpenRecordset(std::string_view sql, Connection& /*connection*/) override {
        events_.push_back(std::string(sql));
        return open ? open(sql) : Recordset();
    }
    void ExecuteSQL(std::string_view sql, Connection& /*connection*/) override {
        events_.push_back(std::string(sql));
    }
    bool FindRecord(Recordset& /*rows*/, std::string_view /*criterion*/) override { return false; }
    std::string SqlText(std::string_view text) override {
        if (faults_.sqlText) {
            throw std::runtime_error("SqlText");
        }
        events_.push_back("SqlText '" + std::string(text) + "'");
        return "'" + std::string(text) + "'";
    }
    std::string SqlDate(DateTime value) override { return "#" + value.iso() + "#"; }
    void FillListBox(ListBox& /*list*/, Recordset& /*rows*/, std::string_view /*textField*/,
                     std::string_view /*dataField*/) override {}
    void PrepareForm(Connection& /*connection*/, PreparableForm& form) override {
        events_.push_back("PrepareForm " + form.formName());
    }

    std::function<Recordset(std::string_view)> open;

private:
    Events& events_;
    Faults& faults_;
};

class FakeTarnSys final : public TarnSys {
public:
    FakeTarnSys(Events& events, Faults& faults) : events_(events), faults_(faults) {}
    ~FakeTarnSys() override { events_.push_back("release TarnSys"); }
    FakeTarnSys(const FakeTarnSys&) = delete;
    FakeTarnSys& operator=(const FakeTarnSys&) = delete;

    void SetVersion(const std::string& version) override {
        if (faults_.setVersion) {
            throw std::runtime_error("SetVersion");
        }
        events_.push_back("SetVersion " + version);
    }
    std::string DataPath() override { return "/data"; }
    std::shared_ptr<Connection> DataConnection() override { return connection("data"); }
    std::shared_ptr<Connection> SetupConnection() override { return connection("setup"); }
    void SetOperator(std::int32_t oprId) override {
        events_.push_back("SetOperator " + std::to_string(oprId));
    }
    bool Create(std::string& sysPath, bool& flag) override {
        events_.push_back("Create " + sysPath + (flag ? " True" : " False"));
        if (faults_.create) {
            throw RunTimeError(76, "Path not found");
        }
        return false; // not examined
    }
    std::string GetText(std::int16_t /*id*/) override { return {}; }
    void ReportError(int number, const std::string& text, std::int16_t kind) override {
        events_.push_back("ReportError " + std::to_string(number) + " " + text + " " +
                          std::to_string(kind));
    }
    std::string CompanyFilter(std::string_view /*column*/, std::int32_t /*locGrp*/,
                              bool /*flag*/) override {
        return {};
    }
    bool HasRight(std::string_view name) override {
        events_.push_back("HasRight " + std::string(name));
        return false;
    }

private:
    std::shared_ptr<Connection> connection(const std::string& name) {
        if (faults_.connections) {
            throw std::runtime_error("connection");
        }
        events_.push_back("open " + name);
        return std::make_shared<FakeConnection>(name, events_);
    }

    Events& events_;
    Faults& faults_;
};

class FakeCompanion final : public Companion {
public:
    explicit FakeCompanion(Events& events) : events_(events), record_(events, faults) {}
    TarnRec& record() override {
        if (faults.record) {
            throw std::runtime_error("record");
        }
        return record_;
    }
    std::shared_ptr<TarnSys> newSystem() override {
        if (faults.system) {
            throw std::runtime_error("system");
        }
        events_.push_back("new TarnSys");
        return std::make_shared<FakeTarnSys>(events_, faults);
    }

    Faults faults;

private:
    Events& events_;
    FakeTarnRec record_;
};

class FakeApplication final : public platform::Application {
public:
    explicit FakeApplication(Events& events) : events_(events) {}
    [[nodiscard]] std::string folder() const override { return "/app"; }
    [[nodiscard]] Version version() const override { return {4, 4, 12}; }
    void setHelpFile(const std::string& path) override {
        helpFile_ = path;
        events_.push_back("help " + path);
    }
    [[nodiscard]] std::string helpFile() const override { return helpFile_; }
    void messageBox(const std::string& text) override { events_.push_back("box " + text); }
    void runPendingWindowMessages() override {
        events_.push_back("pending messages");
        if (onPendingMessages) {
            onPendingMessages();
        }
    }

    /// What the operator does while messages run.
    std::function<void()> onPendingMessages;

private:
    Events& events_;
    std::string helpFile_;
};

class FakeTemporaryFolders final : public platform::TemporaryFolders {
public:
    explicit FakeTemporaryFolders(Events& events) : events_(events) {}
    [[nodiscard]] std::string systemFolder() const override { return system; }
    void makeOwn(const std::string& folder) override {
        if (refuse) {
            throw std::runtime_error("not the user's own folder");
        }
        events_.push_back("make " + folder);
    }
    void deleteFiles(const std::string& folder) override { events_.push_back("empty " + folder); }

    std::string system = "/tmp/";
    bool refuse = false;

private:
    Events& events_;
};

/// A form that records its unloading.
class FakePlace final : public FormPlace {
public:
    FakePlace(std::string name, Events& events) : name_(std::move(name)), events_(events) {}
    void unload() override { events_.push_back("unload " + name_); }
    [[nodiscard]] bool exists() const override { return true; }

private:
    std::string name_;
    Events& events_;
};

/// Shared state on twins, with `events` as the one record of all of them in order.
struct FakeServer {
    Events events;
    FakeCompanion companion{events};
    FakeApplication application{events};
    FakeTemporaryFolders temporaryFolders{events};
    modGlobals globals{companion, application, temporaryFolders};

    Events takeEvents() { return std::exchange(events, {}); }
};

} // namespace kintar::testing
