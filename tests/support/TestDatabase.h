// A database with the tables of a site, on either engine, as tests make and change it.
#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>

namespace kintar::testing {

class PrivateCluster;

/// The engines that the same tests run on.
enum class TestEngine : std::uint8_t { Sqlite, Postgres };
std::string nameOf(TestEngine engine);
inline void PrintTo(TestEngine engine, std::ostream* out) {
    *out << nameOf(engine);
}

/// What tests run on that are about neither engine: KINTAR3_TEST_ENGINE, `sqlite` (also where it is
/// not set) or `postgresql`.
TestEngine chosenEngine();

class TestDatabase {
public:
    /// With the tables of a site, and what `rows` puts into them: statements that both engines
    /// take. It is a file at `path`, or lies on the server that the tests of a program share.
    TestDatabase(TestEngine engine, const std::string& path, const std::string& rows = {});
    /// On a server of a test's own, which outlives this.
    explicit TestDatabase(PrivateCluster& server, const std::string& rows = {});
    TestDatabase(const TestDatabase&) = delete;
    TestDatabase& operator=(const TestDatabase&) = delete;
    /// Leaves a file where it is.
    ~TestDatabase();

    [[nodiscard]] TestEngine engine() const {
        return server_ == nullptr ? TestEngine::Sqlite : TestEngine::Postgres;
    }
    /// What a site's settings call it: the path of a file, or a connection text.
    [[nodiscard]] const std::string& name() const { return name_; }

    /// Runs statements of the engine's own language as another program does, all of them on one
    /// connection that knows nothing of ours.
    void run(const std::string& sql);
    /// The same on a connection for this once.
    void runAlone(const std::string& sql) const;
    /// What a server does by itself minutes after many rows have come: it counts them, and plans
    /// by that.
    void settle();
    void drop();

    class Foreign;

private:
    [[nodiscard]] std::unique_ptr<Foreign> connect() const;

    PrivateCluster* server_ = nullptr;
    std::string name_;
    std::unique_ptr<Foreign> foreign_;
};

} // namespace kintar::testing
