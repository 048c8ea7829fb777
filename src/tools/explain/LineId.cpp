#include "tools/explain/LineId.h"

#include <string>
#include <utility>

namespace kintar::explain {
namespace {

/// Reads until the id is there. Each event's result says whether to go on.
class IdReader final : public nlohmann::json_sax<Json> {
public:
    bool null() override { return take(nullptr); }
    bool boolean(bool value) override { return take(value); }
    bool number_integer(number_integer_t value) override { return take(value); }
    bool number_unsigned(number_unsigned_t value) override { return take(value); }
    bool number_float(number_float_t value, const string_t& /*text*/) override {
        return take(value);
    }
    bool string(string_t& value) override { return take(value); }
    bool binary(binary_t& /*value*/) override { return true; }
    bool start_object(std::size_t /*elements*/) override { return goDeeper(); }
    bool key(string_t& name) override {
        isId_ = depth_ == 1 && name == "id";
        return true;
    }
    bool end_object() override { return goUp(); }
    bool start_array(std::size_t /*elements*/) override { return goDeeper(); }
    bool end_array() override { return goUp(); }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const Json::exception& /*error*/) override {
        return false;
    }

    Json id;

private:
    bool take(Json value) {
        if (isId_) {
            id = std::move(value);
        }
        return !isId_;
    }
    bool goDeeper() {
        ++depth_;
        return !isId_;
    }
    bool goUp() {
        --depth_;
        return true;
    }

    int depth_ = 0;
    bool isId_ = false;
};

} // namespace

Json idOf(std::string_view line) {
    IdReader reader;
    Json::sax_parse(line, &reader);
    return reader.id;
}

} // namespace kintar::explain
