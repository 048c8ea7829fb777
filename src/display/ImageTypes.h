// The default image type of every location group.
#pragma once

#include "display/objImageType.h"
#include "server/Companion.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace kintar {

/// Entries keyed by the location group's number followed by "L".
class ImageTypes {
public:
    /// Adds an entry for each location group: its default image type, or 0 where it has none. What
    /// cannot be read is left out, as is a second entry of the same key; nothing is thrown.
    void build(TarnRec& record, Connection& connection);

    /// The image type of a group. Raises run-time error 5 where there is no entry.
    [[nodiscard]] std::int16_t of(std::int32_t locGrp) const;

    [[nodiscard]] std::size_t count() const { return entries_.size(); }

private:
    void add(TarnRec& record, const std::string& group, Recordset& types);

    std::map<std::string, std::unique_ptr<objImageType>> entries_;
};

} // namespace kintar
