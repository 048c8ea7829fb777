// A small site with three names, and ways to its controls.
#pragma once

#include "search/NameSearchTwins.h"
#include "support/EventLoop.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace kintar::testing {

inline const std::string nameQuery =
    "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, Trace, "
    "Company.Name AS COMPNAME FROM [Names] LEFT JOIN Company ON [Names].LocGrp = Company.LocGrp "
    "AND [Names].Company = Company.Company WHERE [Names].LocGrp = 2";
inline const std::string allNames = nameQuery + " ORDER BY LName, FName";

inline std::string imageQuery(int id, int type = 4) {
    return "SELECT FileName FROM Images WHERE NameID = " + std::to_string(id) +
           " AND ImgType = " + std::to_string(type);
}
inline std::string useQuery(int id) {
    return "SELECT Status, Loc, LastDate, LastDev, (Inout1 & '  ' & Inout2 & '  ' & Inout3 & '  ' "
           "& Inout4) as InOut FROM Cards Left Join LocCards On Cards.ID = LocCards.CardID WHERE "
           "NameID = " +
           std::to_string(id) + " And Status <> 0 Order By LastDate Desc";
}
inline const std::string typesQuery = "SELECT Num FROM ImageType WHERE LocGrp = 2";
inline const std::string deviceQuery = "Select Name From Dev Where Loc = 3 And Device = 7";

inline std::vector<Row> threeNames() {
    return {Row{30, "Moss, Kate", 0, -1, "Brick & Co"}, Row{10, "Abel, Tom", -1, 0, Cell()},
            Row{20, "Zorn, Ida", 0, 0, "acme"}};
}
inline const std::vector<std::string> nameColumns{"ID", "Name", "Visitor:b", "Trace:b", "COMPNAME"};

/// Group 2 with image type 4; operator 1 has all menus. Kate Moss is in, Tom Abel is a visitor
/// without cards, Ida Zorn has no photo.
class NameSearch : public ::testing::Test {
protected:
    NameSearch() {
        TableTwin& tables = twins.tables();
        tables.answer("SELECT LocGrp, Num FROM ImageType WHERE DefaultImage <> 0",
                      {"LocGrp", "Num"}, {Row{2, 4}, Row{3, 4}});
        tables.answer(
            "SELECT * FROM FormData WHERE FORM = 'ListNAMESEARCH' ORDER BY INDEX",
            {"Caption", "Width"},
            {Row{"Name", 2400}, Row{"Visitor", 900}, Row{"Trace", 900}, Row{"Company", 1800}});
        tables.answer("Select PwProfile From OPR Where ID = 1", {"PwProfile"}, {Row{1}});
        tables.answer("Select AllMenus From PwProfile Where ID = 1", {"AllMenus:b"}, {Row{-1}});
        tables.answer("Select PwProfile From OPR Where ID = 0", {"PwProfile"}, {});
        tables.answer(allNames, nameColumns, threeNames());
        tables.answer(nameQuery + " AND LName LIKE 'none%' ORDER BY LName, FName", nameColumns, {});
        tables.answer(typesQuery, {"Num"}, {Row{4}});
        tables.answer(imageQuery(30), {"FileName"}, {Row{"moss.jpg"}});
        tables.answer(imageQuery(10), {"FileName"}, {Row{"abel.jpg"}});
        tables.answer(imageQuery(20), {"FileName"}, {});
        tables.answer(useQuery(30), {"Status", "Loc", "LastDate:d", "LastDev", "InOut"},
                      {Row{1, 3, "2012-03-14 17:05:00", 7, "I  N  N  N"}});
        tables.answer(useQuery(10), {"Status"}, {});
        tables.answer(useQuery(20), {"Status"}, {});
        tables.answer(deviceQuery, {"Name"}, {Row{"Front Door"}});
        tables.answer("SELECT UdfNum, Name, Hidden FROM UdfName WHERE LocGrp = 2 Order By UdfNum",
                      {"UdfNum", "Name", "Hidden:b"},
                      {Row{1, "Car", 0}, Row{2, "Salary", -1}, Row{3, "Web", 0}});
        for (const int id : {10, 20, 30}) {
            tables.answer("SELECT UdfNum, UdfText FROM UDF WHERE NameID = " + std::to_string(id) +
                              " Order By UdfNum",
                          {"UdfNum", "UdfText"},
                          {Row{1, "car of " + std::to_string(id)}, Row{2, "secret"},
                           Row{3, "https://example.com/" + std::to_string(id)}});
        }
    }

    ~NameSearch() override {
        object.reset();
        runPending();
    }

    /// Creates the object and opens the dialog, up to the answer.
    void open(std::int16_t mode = 1, std::int32_t oprId = 1, std::int32_t locGrp = 2) {
        if (!object) {
            object = twins.create();
        }
        object->LocName("HQ");
        object->OprID(oprId);
        object->NameSelMode(mode);
        set(locGrp);
        twins.takeEvents();
        twins.tables().takeStatements();
    }

    /// Sets LocGrp and waits for the answer; what was raised, or 0.
    int set(std::int32_t locGrp) {
        int raised = -1;
        object->LocGrp(locGrp, [&](const std::optional<RunTimeError>& error) {
            raised = error ? error->number() : 0;
        });
        EXPECT_TRUE(runUntil([&] { return raised != -1; }));
        return raised;
    }

    search::frmNameSearch& form() { return twins.place.get(); }
    template <class Control>
    Control& control(const char* name) {
        return *form().findChild<Control*>(QLatin1String(name));
    }
    QTreeView& list() { return control<QTreeView>("lvList"); }
    QTreeWidget& udfs() { return control<QTreeWidget>("lvUdf"); }
    std::string label(const char* name) { return control<QLabel>(name).text().toStdString(); }
    std::string title() { return form().windowTitle().toStdString(); }
    void click(const char* button) { control<QPushButton>(button).click(); }
    void search(const char* lastName = "") {
        control<QLineEdit>("Text_0").setText(QLatin1String(lastName));
        click("cmdSearch");
    }
    std::vector<std::string> shown(int column = 0) {
        std::vector<std::string> texts;
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            texts.push_back(list().model()->index(row, column).data().toString().toStdString());
        }
        return texts;
    }
    void clickRow(int row) {
        const QRect place = list().visualRect(list().model()->index(row, 0));
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place.center());
    }

    NameSearchTwins twins;
    std::unique_ptr<search::objNameSearch> object;
};

} // namespace kintar::testing
