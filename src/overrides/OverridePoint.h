// What a client tells the override editor: the point, the operator, the commands that the point
// accepts.
#pragma once

#include <cstdint>
#include <string>

namespace kintar {

struct OverridePoint {
    std::int32_t PointID = 0;
    std::int16_t PointType = 0;
    std::string PointName;
    std::string LocName;
    std::string OprName;
    std::int32_t OprID = 0;
    bool SecureOpt = false;
    bool OpenOpt = false;
    bool TZOpt = false;
    bool ArmOpt = false;
    bool ByPassOpt = false;
};

} // namespace kintar
