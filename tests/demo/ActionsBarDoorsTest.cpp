#include "demo/ActionsBar.h"

#include "Workstation.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <gtest/gtest.h>

namespace kintar::demo {
namespace {

using testing::FakeServer;
using testing::PrivateBus;
using testing::waitFor;
using testing::Workstation;

const PointChoice door{101, 0, QStringLiteral("Door 101"), QStringLiteral("R & D")};
const PointChoice input{102, 1, QStringLiteral("Input 102"), QStringLiteral("Office")};
const PointChoice groupOfDoors{10, 2, QStringLiteral("Group 10"), QStringLiteral("Office")};
const PointChoice groupOfInputs{20, 3, QStringLiteral("Group 20"), QStringLiteral("Office")};

QPushButton* doorsOf(const QWidget& bar) {
    for (QPushButton* found : bar.findChildren<QPushButton*>()) {
        if (found->accessibleName() == QStringLiteral("Doors")) {
            return found;
        }
    }
    return nullptr;
}

class ActionsBarDoorsTest : public ::testing::Test {
protected:
    ActionsBarDoorsTest() {
        server.appear();
        QObject::connect(&bar, &ActionsBar::said, [this](const QString& text) { said = text; });
    }
    bool opened(int point) {
        return waitFor(
            [this, point] { return server.log.contains(QStringLiteral("PointID=%1").arg(point)); });
    }
    /// What was set from one opening of the window to the next.
    QStringList setFor(const PointChoice& point) {
        server.log.clear();
        bar.scheduleOverride(point);
        return opened(point.id) ? server.log : QStringList();
    }

    PrivateBus bus;
    FakeServer server{bus.connect()};
    ActionPlace place{1, QStringLiteral("Office"), 4};
    ActionsBar bar{bus.connect(), [this] { return place; }};
    QString said;
};

TEST_F(ActionsBarDoorsTest, SetsEveryPropertyOfAnOverrideAndThePointLast) {
    EXPECT_EQ(setFor(door),
              (QStringList{QStringLiteral("create objOverride"), QStringLiteral("PointType=0"),
                           QStringLiteral("PointName=Door 101"), QStringLiteral("LocName=R & D"),
                           QStringLiteral("OprName=Operator 4"), QStringLiteral("OprID=4"),
                           QStringLiteral("SecureOpt=true"), QStringLiteral("OpenOpt=true"),
                           QStringLiteral("TZOpt=true"), QStringLiteral("ArmOpt=false"),
                           QStringLiteral("ByPassOpt=false"), QStringLiteral("PointID=101")}));
}

TEST_F(ActionsBarDoorsTest, SetsEveryPropertyAgainForTheNextPointOnTheSameObject) {
    ASSERT_FALSE(setFor(door).isEmpty());
    place.operatorId = 5;
    EXPECT_EQ(setFor(input),
              (QStringList{QStringLiteral("PointType=1"), QStringLiteral("PointName=Input 102"),
                           QStringLiteral("LocName=Office"), QStringLiteral("OprName=Operator 5"),
                           QStringLiteral("OprID=5"), QStringLiteral("SecureOpt=true"),
                           QStringLiteral("OpenOpt=true"), QStringLiteral("TZOpt=true"),
                           QStringLiteral("ArmOpt=true"), QStringLiteral("ByPassOpt=true"),
                           QStringLiteral("PointID=102")}));
}

TEST_F(ActionsBarDoorsTest, OffersArmingForInputsAlone) {
    EXPECT_TRUE(setFor(groupOfDoors).contains(QStringLiteral("ArmOpt=false")));
    EXPECT_TRUE(setFor(groupOfInputs).contains(QStringLiteral("ArmOpt=true")));
}

TEST_F(ActionsBarDoorsTest, OffersNoDoorBeforeItKnowsOne) {
    EXPECT_FALSE(doorsOf(bar)->isEnabled());
    bar.offerPoints({door, input});
    EXPECT_TRUE(doorsOf(bar)->isEnabled());
    bar.offerPoints({});
    EXPECT_FALSE(doorsOf(bar)->isEnabled());
}

TEST_F(ActionsBarDoorsTest, OpensThePointThatIsChosenInTheMenu) {
    bar.offerPoints({door, input});
    const QList<QAction*> points = doorsOf(bar)->menu()->actions();
    ASSERT_EQ(points.size(), 2);
    EXPECT_EQ(points[0]->text(), QStringLiteral("R && D:  Door 101"));
    points[1]->trigger();
    EXPECT_TRUE(opened(102));
}

TEST_F(ActionsBarDoorsTest, ARefusalIsTold) {
    server.refused = QStringLiteral("PointID");
    bar.scheduleOverride(door);
    EXPECT_TRUE(
        waitFor([this] { return said == QStringLiteral("Run-time error '13': Type mismatch"); }));
}

TEST(ActionsBarDoors, SchedulesForTheOperatorOfTheWorkstation) {
    Workstation workstation;
    auto* bar = new ActionsBar(workstation.bus.connect(),
                               [&workstation] { return workstation.window.place(); });
    workstation.window.addActions(*bar);
    workstation.feed.load();
    ASSERT_TRUE(waitFor([bar] { return doorsOf(*bar)->isEnabled(); }));
    ASSERT_TRUE(workstation.window.chooseOperator(5));
    doorsOf(*bar)->menu()->actions().constFirst()->trigger();
    ASSERT_TRUE(workstation.waitForProperty(QStringLiteral("PointID=101")));
    EXPECT_TRUE(workstation.server.log.contains(QStringLiteral("OprName=Operator 5")));
}

} // namespace
} // namespace kintar::demo
