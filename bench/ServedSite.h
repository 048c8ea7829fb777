// The real server on a demonstration site, a private bus and a virtual display, for measurements.
#pragma once

#include "host/BusClient.h"
#include "host/PrivateBus.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace kintar::bench {

/// Sets the environment of this process, of which everything it starts takes part.
class ServedSite {
public:
    ServedSite() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kintar-bench-XXXXXX").string();
        if (!mkdtemp(pattern.data())) {
            throw std::runtime_error("no temporary folder");
        }
        folder_ = pattern;
        startDisplay();
        for (const char* name : {"XDG_CONFIG_HOME", "TMPDIR", "XDG_RUNTIME_DIR"}) {
            const std::string own = folder_ + "/" + name;
            std::filesystem::create_directory(own);
            std::filesystem::permissions(own, std::filesystem::perms::owner_all);
            setenv(name, own.c_str(), 1);
        }
        setenv("KINTAR3_APP_DIR", (folder_ + "/site").c_str(), 1);
        host::ChildProcess site(
            {"sh", "-c",
             KINTAR_BIN "/kintar-site create '" + folder_ + "/site' >'" + folder_ + "/site.log'"},
            {});
        if (site.wait() != 0) {
            throw std::runtime_error("kintar-site create failed");
        }
        bus_ = std::make_unique<host::PrivateBus>();
        bus_->makeActivatable(host::busName, KINTAR_BIN "/kintar3");
    }
    ServedSite(const ServedSite&) = delete;
    ServedSite& operator=(const ServedSite&) = delete;
    ~ServedSite() {
        bus_.reset();
        display_.reset();
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    [[nodiscard]] const std::string& address() const { return bus_->address(); }

    /// Ends the server and returns when its process is gone.
    static void stopServer(host::BusClient& client) {
        sd_bus_creds* server = nullptr;
        pid_t pid = 0;
        if (sd_bus_get_name_creds(client.bus(), host::busName, SD_BUS_CREDS_PID, &server) < 0 ||
            sd_bus_creds_get_pid(server, &pid) < 0) {
            throw std::runtime_error("the server does not run");
        }
        sd_bus_creds_unref(server);
        kill(pid, SIGTERM);
        while (kill(pid, 0) == 0) {
            usleep(1000);
        }
    }

private:
    void startDisplay() {
        int ends[2];
        if (pipe(ends) != 0) {
            throw std::runtime_error("no pipe");
        }
        display_ = std::make_unique<host::ChildProcess>(
            std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24",
                                     "-nolisten", "tcp", "-noreset"},
            std::vector<std::pair<std::string, std::string>>{}, ends[1]);
        close(ends[1]);
        std::string number;
        char c = 0;
        while (read(ends[0], &c, 1) == 1 && c != '\n') {
            number += c;
        }
        close(ends[0]);
        if (number.empty()) {
            throw std::runtime_error("Xvfb did not start");
        }
        setenv("DISPLAY", (":" + number).c_str(), 1);
        unsetenv("WAYLAND_DISPLAY");
        setenv("QT_QPA_PLATFORM", "xcb", 1);
    }

    std::string folder_;
    std::unique_ptr<host::ChildProcess> display_;
    std::unique_ptr<host::PrivateBus> bus_;
};

} // namespace kintar::bench
