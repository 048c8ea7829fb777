#include "companion/sqlite/SqliteFunctions.h"

#include "base/Number.h"
#include "base/Unicode.h"
#include "companion/dialect/Decimal.h"
#include "companion/dialect/LikePattern.h"
#include "companion/sqlite/SqliteHandle.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kintar::companion::sqlite {

namespace {

using dialect::LikePattern;

std::string_view textOf(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

bool isNull(sqlite3_value* value) {
    return sqlite3_value_type(value) == SQLITE_NULL;
}

void giveText(sqlite3_context* context, const std::string& text) {
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

/// Runs `body`; no exception may pass through the engine's own frames.
template <class Body>
void guarded(sqlite3_context* context, Body body) {
    try {
        body();
    } catch (const std::exception&) {
        sqlite3_result_error_nomem(context);
    }
}

std::optional<std::string> decimalOf(sqlite3_value* value) {
    switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
    case SQLITE_BLOB:
        return std::nullopt;
    case SQLITE_FLOAT:
        return decimalText(sqlite3_value_double(value));
    default:
        return numericText(textOf(value));
    }
}

void like(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
    if (isNull(arguments[0]) || isNull(arguments[1])) {
        return;
    }
    guarded(context, [&] {
        constexpr int patternArgument = 1;
        auto* pattern = static_cast<LikePattern*>(sqlite3_get_auxdata(context, patternArgument));
        std::unique_ptr<LikePattern> fresh;
        if (pattern == nullptr) {
            fresh = std::make_unique<LikePattern>(textOf(arguments[1]));
            pattern = fresh.get();
        }
        sqlite3_result_int(context, pattern->matches(textOf(arguments[0])) ? 1 : 0);
        if (fresh) {
            // Last, since the engine may dispose of it at once.
            sqlite3_set_auxdata(context, patternArgument, fresh.release(),
                                [](void* kept) { delete static_cast<LikePattern*>(kept); });
        }
    });
}

void fold(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
    if (!isNull(arguments[0])) {
        guarded(context, [&] { giveText(context, unicode::fold(textOf(arguments[0]))); });
    }
}

void sortKey(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
    if (!isNull(arguments[0])) {
        guarded(context, [&] {
            const std::string key = unicode::sortKey(textOf(arguments[0]));
            sqlite3_result_blob64(context, key.data(), key.size(), SQLITE_TRANSIENT);
        });
    }
}

void decimal(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
    guarded(context, [&] {
        if (const auto number = decimalOf(arguments[0])) {
            giveText(context, *number);
        }
    });
}

void compare(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
    guarded(context, [&] {
        const auto left = decimalOf(arguments[0]);
        const auto right = decimalOf(arguments[1]);
        if (left && right) {
            sqlite3_result_int(context, dialect::compareDecimals(*left, *right));
        }
    });
}

int collate(void* /*unused*/, int sizeA, const void* a, int sizeB, const void* b) {
    try {
        const auto key = [](const void* text, int size) {
            return unicode::sortKey(
                {static_cast<const char*>(text), static_cast<std::size_t>(size)});
        };
        return key(a, sizeA).compare(key(b, sizeB));
    } catch (const std::exception&) {
        return 0;
    }
}

} // namespace

void registerFunctions(sqlite3* database) {
    using Function = void (*)(sqlite3_context*, int, sqlite3_value**);
    const auto add = [&](const char* name, int arguments, Function function) {
        const int code = sqlite3_create_function_v2(
            database, name, arguments, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY,
            nullptr, function, nullptr, nullptr, nullptr);
        if (code != SQLITE_OK) {
            throw errorOf(database, code);
        }
    };
    add("kintar_like", 2, like);
    add("kintar_fold", 1, fold);
    add("kintar_sort", 1, sortKey);
    add("kintar_decimal", 1, decimal);
    add("kintar_compare", 2, compare);
    const int code =
        sqlite3_create_collation_v2(database, "KINTAR", SQLITE_UTF8, nullptr, collate, nullptr);
    if (code != SQLITE_OK) {
        throw errorOf(database, code);
    }
}

} // namespace kintar::companion::sqlite
