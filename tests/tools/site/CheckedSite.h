// Expectations about what is found in a broken site.
#pragma once

#include "TestSite.h"
#include "tools/site/SiteCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::testing {

/// What is found after a statement has been run on a fresh site.
inline std::vector<std::string> foundAfter(const std::string& sql) {
    const TestSite site;
    site.execute(sql);
    return site::checkSite(site.folder);
}

/// One line and nothing else, exactly.
inline auto only(const std::string& line) {
    return ::testing::ElementsAre(line);
}

/// One line that begins so and nothing else.
inline auto onlyFrom(const std::string& start) {
    return ::testing::ElementsAre(::testing::StartsWith(start));
}

} // namespace kintar::testing
