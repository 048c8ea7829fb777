// Settings in memory.
#pragma once

#include "platform/Platform.h"

#include <map>
#include <string>
#include <utility>

namespace kintar::testing {

class FakeSettings final : public platform::SettingsStore {
public:
    std::string get(std::string_view section, std::string_view key,
                    std::string_view otherwise) override {
        const auto found = values.find({std::string(section), std::string(key)});
        return found == values.end() ? std::string(otherwise) : found->second;
    }
    void save(std::string_view section, std::string_view key, std::string_view value) override {
        values[{std::string(section), std::string(key)}] = value;
    }

    std::map<std::pair<std::string, std::string>, std::string> values;
};

} // namespace kintar::testing
