// Translated statements and what a connection has prepared of them, by their shape.
#pragma once

#include "companion/dialect/EngineWriter.h"
#include "companion/dialect/LiftedStatement.h"
#include "companion/dialect/Statements.h"

#include <cstdint>
#include <libpq-fe.h>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kintar::companion::postgres {

/// One text of a shape.
struct PreparedText {
    dialect::Translation translation;
    SharedColumns columns;
    std::vector<Oid> types;    ///< of its parameters
    std::string name;          ///< that the server knows it by
    std::uint64_t session = 0; ///< in which it was prepared; 0: not yet
    /// The text that gives the rows of many runs, and which of its parameters are arrays.
    std::unique_ptr<PreparedText> ofManyRuns;
    std::vector<bool> areArrays;
};

/// A shape: its tree, and a text for each variant of its searches.
struct Shape {
    std::string key;
    dialect::ShapeOutline outline;
    dialect::Statement tree;
    std::vector<dialect::TextSearch> searches;
    std::map<std::string, PreparedText, std::less<>> variants;
};

/// The shapes used last, at most `capacity`. A reference stays valid until the next insertion.
class ShapeCache {
public:
    static constexpr std::size_t capacity = 256;
    static constexpr std::size_t variantCapacity = 16;

    /// Null where the shape is not known; otherwise it counts as the one used last.
    Shape* find(std::string_view key);
    /// Takes in a shape that is not known yet, and drops the one not used for longest. What the
    /// server holds of that goes to `dropped`.
    Shape& insert(Shape shape);
    /// A place for another text of a shape; makes room where there are too many.
    PreparedText& addVariant(Shape& shape, const std::string& key, PreparedText text);
    void clear();
    /// Notes that the server is not to hold a text any longer.
    void drop(const PreparedText& text);
    [[nodiscard]] std::size_t size() const { return byKey_.size(); }

    /// Names of prepared texts that are not needed any more.
    std::vector<std::string> dropped;

private:
    void drop(const Shape& shape);

    std::list<Shape> shapes_; ///< the one used last in front
    std::unordered_map<std::string_view, std::list<Shape>::iterator> byKey_;
};

} // namespace kintar::companion::postgres
