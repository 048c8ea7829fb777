#include "tools/site/PhotoFolder.h"

#include <algorithm>
#include <system_error>

namespace kintar::site {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> partsOf(const std::string& path) {
    std::vector<std::string> parts(1);
    for (const char c : path) {
        if (c == '/') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

/// Drive letters, absolute paths, parent folders, bytes that end a name early.
bool mayLeadOutside(const std::vector<std::string>& parts) {
    return std::ranges::any_of(parts, [](const std::string& part) {
        return part.empty() || part == "." || part == ".." ||
               part.find_first_of(std::string_view(":\0", 2)) != std::string::npos;
    });
}

} // namespace

std::string comparablePath(std::string_view fileName) {
    std::string path(fileName);
    std::ranges::transform(path, path.begin(), [](char c) {
        return c == '\\' ? '/' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return path;
}

const std::multimap<std::string, std::string>& PhotoFolder::names(const fs::path& folder) {
    const auto [place, fresh] = listed_.try_emplace(folder);
    if (fresh) {
        std::error_code error;
        for (auto entry = fs::directory_iterator(folder, error);
             !error && entry != fs::directory_iterator(); entry.increment(error)) {
            const std::string name = entry->path().filename().string();
            place->second.emplace(comparablePath(name), name);
        }
    }
    return place->second;
}

PhotoPlace PhotoFolder::find(std::string_view fileName) {
    const std::vector<std::string> parts = partsOf(comparablePath(fileName));
    if (mayLeadOutside(parts)) {
        return PhotoPlace::Outside;
    }
    fs::path path = root_;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::multimap<std::string, std::string>& present = names(path);
        const auto found = present.find(parts[i]);
        if (found == present.end()) {
            return PhotoPlace::Missing;
        }
        path /= found->second;
        std::error_code error;
        const fs::file_type type = fs::symlink_status(path, error).type();
        const bool last = i + 1 == parts.size();
        if (type != (last ? fs::file_type::regular : fs::file_type::directory)) {
            return PhotoPlace::NoPlainFile;
        }
    }
    return PhotoPlace::Found;
}

} // namespace kintar::site
