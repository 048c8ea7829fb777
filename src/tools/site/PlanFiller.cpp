#include "tools/site/PlanFiller.h"

#include "tools/site/Plan.h"

#include <array>
#include <set>

namespace kintar::site {

namespace {

void fillGroups(SiteLoader& loader) {
    SiteRows locGrp(loader, "LocGrp");
    SiteRows imageType(loader, "ImageType");
    SiteRows udfName(loader, "UdfName");
    for (const Group& group : groups()) {
        locGrp.run(group.locGrp);
        for (int type = 1; type <= 2; ++type) {
            imageType.run(group.locGrp, type, yesNo(type == group.defaultImageType));
        }
        for (int i = 0; i < group.udfNames; ++i) {
            const UdfField& field = udfFields()[static_cast<std::size_t>(i)];
            udfName.run(group.locGrp, i + 1, field.name, yesNo(field.hidden));
        }
    }
}

void fillSkillNames(SiteLoader& loader) {
    SiteRows insert(loader, "SKillName");
    for (const Group& group : groups()) {
        for (int i = 0; i < group.skills; ++i) {
            insert.run(skillId(group.locGrp, i), skillNames()[static_cast<std::size_t>(i)],
                       group.locGrp);
        }
    }
}

void fillPlaces(SiteLoader& loader) {
    SiteRows loc(loader, "Loc");
    SiteRows dev(loader, "Dev");
    SiteRows point(loader, "IO");
    for (const Location& location : locations()) {
        loc.run(location.loc, location.locGrp, location.name, location.timeZone,
                yesNo(location.dst));
        for (int i = 0; i < location.devices; ++i) {
            dev.run(location.loc, i + 1, deviceNames()[static_cast<std::size_t>(i)]);
        }
        point.run(location.loc * 100 + 1, location.loc);
        point.run(location.loc * 100 + 2, location.loc);
    }
    SiteRows overrideGroup(loader, "OvrGrpName");
    for (const Group& group : groups()) {
        overrideGroup.run(group.locGrp * 10, group.locGrp);
    }
}

void fillCompanies(SiteLoader& loader) {
    SiteRows insert(loader, "Company");
    for (const Company& company : companies()) {
        insert.run(company.locGrp, company.company, company.name);
    }
}

void fillOperators(SiteLoader& loader) {
    SiteRows opr(loader, "OPR");
    SiteRows profile(loader, "PwProfile");
    SiteRows right(loader, "MenuProfile");
    std::set<int> profiles;
    for (const Operator& who : operators()) {
        opr.run(who.id, who.profile);
        if (!profiles.insert(who.profile).second) {
            continue;
        }
        profile.run(who.profile, yesNo(who.allMenus));
        for (const MenuRight& menu : who.rights) {
            right.run(who.profile, menu.menu, menu.loc, yesNo(menu.view));
        }
    }
    SiteRows restriction(loader, "OprCompany");
    restriction.run(restrictedOperator, 1, 1);
    restriction.run(restrictedOperator, 1, 3);
}

void fillTexts(SiteLoader& loader) {
    SiteRows text(loader, "Texts");
    for (const NumberedText& entry : texts()) {
        text.run(entry.number, entry.text);
    }
    SiteRows column(loader, "FormData");
    column.run("ListNAMESEARCH", 1, "Name", 3500);
    column.run("ListNAMESEARCH", 2, "Visitor", 900);
    column.run("ListNAMESEARCH", 3, "Trace", 900);
    column.run("ListNAMESEARCH", 4, "Company", 2600);
    column.run("ListEVENTS", 1, "Time", 1800);
    column.run("ListEVENTS", 2, "Event", 4200);
}

struct Schedule {
    int pointId;
    int pointType;
    int startCmd;
    int stopCmd;
    int startDays; ///< from the day of `now`
    int startMinutes;
    int lengthMinutes;
    std::string_view opr;
    int oprId;
    int status;
};

void fillSchedules(SiteLoader& loader, const SiteOptions& options) {
    // One begins off the quarters of an hour, one has a state that only its writer knows.
    constexpr std::array<Schedule, 7> schedules{{
        {101, 0, 1, 3, 1, 8 * 60, 120, "Duty officer", 1, 1},
        {101, 0, 2, 3, 3, 17 * 60 + 30, 45, "Duty officer", 1, 1},
        {101, 0, 5, 3, 9, 10 * 60 + 7, 53, "Gate O'Brien", 2, 0},
        {102, 1, 4, 3, 2, 22 * 60, 600, "Night shift", 2, 7},
        {201, 0, 1, 2, -3, 6 * 60, 90, "Harbour master", 3, 1},
        {10, 2, 1, 3, 5, 0, 24 * 60, "Duty officer", 1, 1},
        {20, 3, 4, 3, 6, 12 * 60 + 15, 15, "Harbour master", 3, 1},
    }};
    SiteRows insert(loader, "OvrSchedule");
    int id = 0;
    for (const Schedule& schedule : schedules) {
        const DateTime start =
            options.now.dateOnly().plusDays(schedule.startDays).plusMinutes(schedule.startMinutes);
        insert.run(++id, schedule.pointId, schedule.pointType, schedule.startCmd, schedule.stopCmd,
                   start, start.plusMinutes(schedule.lengthMinutes), schedule.opr, schedule.oprId,
                   schedule.status);
    }
}

} // namespace

void fillPlan(SiteLoader& loader, const SiteOptions& options) {
    fillGroups(loader);
    fillSkillNames(loader);
    fillPlaces(loader);
    fillCompanies(loader);
    fillOperators(loader);
    fillTexts(loader);
    fillSchedules(loader, options);
}

} // namespace kintar::site
