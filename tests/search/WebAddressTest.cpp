#include "search/WebAddress.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

std::string opened(std::string_view text) {
    const WebAddress decided = webAddress(text);
    switch (decided.kind) {
    case WebAddress::Kind::None:
        return "(none)";
    case WebAddress::Kind::Refused:
        return "(refused)";
    case WebAddress::Kind::Open:
        return decided.address;
    }
    return {};
}

TEST(WebAddress, OpensWebAddressesAsTheyStand) {
    for (const char* text : {"http://example.com", "https://example.com/a?b=c#d",
                             "HTTP://EXAMPLE.COM", "https://[::1]:8080/", "http://10.0.0.7/",
                             "http://intranet/people/7", "https://m\xC3\xBCller.example/%20x"}) {
        EXPECT_EQ(opened(text), text);
    }
}

TEST(WebAddress, TakesATextThatLooksLikeAHostAsHttp) {
    for (const char* text :
         {"example.com", "www.example.com/people?id=7", "localhost", "localhost:8080/x", "10.0.0.7",
          "10.0.0.7:8080", "example.com:443", "example.com#top", "m\xC3\xBCller.example"}) {
        EXPECT_EQ(opened(text), "http://" + std::string(text));
    }
}

TEST(WebAddress, OpensNothingForAnEmptyText) {
    EXPECT_EQ(opened(""), "(none)");
    EXPECT_EQ(opened("  \t\r\n"), "(none)");
}

TEST(WebAddress, IgnoresBlanksAround) {
    EXPECT_EQ(opened("  https://example.com \r\n"), "https://example.com");
}

TEST(WebAddress, RefusesOtherSchemes) {
    for (const char* text : {"javascript:alert(1)", "file:///etc/passwd", "mailto:a@example.com",
                             "ftp://example.com", "data:text/html,x", "vbscript:x", "about:blank",
                             "httpx://example.com", "http:example.com", "https:/example.com",
                             "http://", "https:///etc", "view-source:http://example.com"}) {
        EXPECT_EQ(opened(text), "(refused)") << text;
    }
}

TEST(WebAddress, RefusesWhatIsNoHost) {
    for (const char* text :
         {"Smith", "3.14", "1.2.2024", "256.1.1.1", "-x.example", "x-.example", "example..com",
          ".example.com", "example.com.", "a@example.com", "/etc/passwd", "//example.com",
          "C:\\Windows", "\\\\server\\share", "--new-window", "example.com:port",
          "example.com:", "example.com:123456", "a.b"}) {
        EXPECT_EQ(opened(text), "(refused)") << text;
    }
}

TEST(WebAddress, RefusesWhatNoAddressHolds) {
    EXPECT_EQ(opened("http://example.com/a b"), "(refused)");
    EXPECT_EQ(opened("http://example.com/\"x"), "(refused)");
    EXPECT_EQ(opened("http://example.com/\nx"), "(refused)");
    EXPECT_EQ(opened(std::string_view("http://example.com/\0x", 21)), "(refused)");
    EXPECT_EQ(opened("example.com; rm -rf"), "(refused)");
}

TEST(WebAddress, RefusesMoreThanABrowserTakes) {
    const std::string start = "http://example.com/";
    EXPECT_EQ(opened(start + std::string(2048 - start.size(), 'x')).size(), 2048U);
    EXPECT_EQ(opened(start + std::string(2049 - start.size(), 'x')), "(refused)");
}

} // namespace
} // namespace kintar::search
