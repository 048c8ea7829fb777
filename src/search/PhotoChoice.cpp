#include "search/PhotoChoice.h"

#include <algorithm>
#include <vector>

namespace kintar::search {
namespace {

std::string fileNameOf(const Database& database, std::int32_t nameId, std::int32_t imageType) {
    const Recordset images =
        database.open("SELECT FileName FROM Images WHERE NameID = " + std::to_string(nameId) +
                      " AND ImgType = " + std::to_string(imageType));
    return images.atEnd() ? std::string() : images.field("FileName").text();
}

std::vector<std::int32_t> typesOf(const Database& database, std::int32_t locGrp) {
    Recordset rows =
        database.open("SELECT Num FROM ImageType WHERE LocGrp = " + std::to_string(locGrp));
    std::vector<std::int32_t> types;
    for (; !rows.atEnd(); rows.MoveNext()) {
        types.push_back(rows.field("Num").leadingLong());
    }
    std::sort(types.begin(), types.end());
    return types;
}

} // namespace

std::string choosePhoto(const Database& database, std::int32_t nameId, std::int32_t imageType,
                        std::int32_t locGrp) {
    std::string fileName = fileNameOf(database, nameId, imageType);
    const std::vector<std::int32_t> types = typesOf(database, locGrp);
    for (auto type = types.begin(); fileName.empty() && type != types.end(); ++type) {
        if (*type != imageType) {
            fileName = fileNameOf(database, nameId, *type);
        }
    }
    return fileName;
}

} // namespace kintar::search
