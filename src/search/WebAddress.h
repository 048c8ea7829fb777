// Which texts are web addresses that may be opened.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar::search {

struct WebAddress {
    enum class Kind : std::uint8_t {
        None,    ///< an empty text: nothing to open
        Open,    ///< `address` may be opened
        Refused, ///< anything else
    };
    Kind kind = Kind::None;
    std::string address; ///< with its scheme
};

/// Decides on a text from the database. Opened are `http` and `https` addresses, and a text without
/// a scheme that looks like a host (`example.com/page`, `localhost`, `10.0.0.7:8080`), as http.
/// Blanks around do not count; a blank, quote or control character inside, or more than 2,048
/// bytes, is refused.
WebAddress webAddress(std::string_view text);

} // namespace kintar::search
