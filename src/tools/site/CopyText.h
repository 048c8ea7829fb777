// Rows in the text form in which a PostgreSQL server takes many at once.
#pragma once

#include "tools/site/SiteValue.h"

#include <span>
#include <string>

namespace kintar::site {

class CopyText {
public:
    void add(std::span<const SiteValue> row);
    [[nodiscard]] const std::string& text() const { return text_; }
    void clear() { text_.clear(); }

private:
    void add(const SiteValue& value);

    std::string text_;
};

} // namespace kintar::site
