// A folder of a test's own, gone with everything in it when the test ends.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kintar::testing {

class ScratchFolder {
public:
    ScratchFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "kintar-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("cannot make a folder for a test");
        }
        path_ = name;
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] std::string path() const { return path_.string(); }
    [[nodiscard]] std::string operator/(std::string_view name) const {
        return (path_ / name).string();
    }

    void write(std::string_view name, std::string_view content) const {
        std::ofstream file(path_ / name, std::ios::binary);
        file.write(content.data(), static_cast<std::streamsize>(content.size()));
    }
    [[nodiscard]] std::string read(std::string_view name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void makeFolder(std::string_view name) const {
        std::filesystem::create_directories(path_ / name);
    }
    [[nodiscard]] bool has(std::string_view name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(path_ / name));
    }
    /// How many entries the folder has, hidden ones included.
    [[nodiscard]] std::ptrdiff_t count() const {
        return std::distance(std::filesystem::directory_iterator(path_), {});
    }

private:
    std::filesystem::path path_;
};

} // namespace kintar::testing
