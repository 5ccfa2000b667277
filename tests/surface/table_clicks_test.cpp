// Clicks on the drawn table: every bet region takes the selected player's $5 check on
// exactly that bet, and the buttons and modifiers do what the table's rules say.

#include <gtest/gtest.h>

#include <QTest>
#include <tuple>

#include "engine/placement.h"
#include "engine/players.h"
#include "surface/table_painter.h"
#include "tests/surface/desktop_table.h"

namespace {

// What the table needs before a bet can be made.
enum class Setup { ComeOut, PointOn, FlatAndPoint };

// The region clicked, the set-up, and the bet that takes the check (0 when the rules refuse it).
using ClickCase = std::tuple<int, Setup, int>;

// The flat bet under an odds bet.
int FlatUnder(int odds) {
  return odds == bet::PassLineOdds ? bet::PassLine : odds == bet::DontPassOdds ? bet::DontPass : odds - 6;
}

std::vector<ClickCase> AllRegions() {
  std::vector<ClickCase> cases;
  for (const TableRegion& r : DefaultTableGeometry().regions) {
    const int id = r.id;
    if (!hot::IsBet(id)) continue;
    if (id >= bet::DontCome4 && id <= bet::DontCome10) cases.push_back({id, Setup::PointOn, 0});  // they only move
    else if ((id >= bet::DontCome4Odds && id <= bet::DontCome10Odds) ||
             (id >= bet::Come4Odds && id <= bet::Come10Odds) || id == bet::PassLineOdds || id == bet::DontPassOdds)
      cases.push_back({id, Setup::FlatAndPoint, id});
    else if ((id >= bet::Come4 && id <= bet::Come10) || id == bet::Come || id == bet::DontCome)
      cases.push_back({id, Setup::PointOn, id});
    else cases.push_back({id, Setup::ComeOut, id});
  }
  // The odds boxes with nothing under them act on the bet underneath.
  cases.push_back({bet::DontPassOdds, Setup::ComeOut, bet::DontPass});
  return cases;
}

class TableClickTest : public ::testing::TestWithParam<ClickCase> {};

TEST_P(TableClickTest, TheCentreOfARegionTakesTheCheckOnItsBet) {
  const auto& [region, setup, expected] = GetParam();
  Seated t;
  ASSERT_EQ(t.Input().SelectedPlayer, kAnnSeat);
  ASSERT_EQ(t.Input().SelectedCheck, 2);
  const int flat = FlatUnder(region);
  const bool lineFlat = flat == bet::PassLine || flat == bet::DontPass;
  if (setup == Setup::FlatAndPoint && lineFlat) ChangeBet(t.g, kAnnSeat, flat, 10_usd);
  if (setup != Setup::ComeOut) {
    t.NextDice(4, 2);
    t.Click(0, Qt::RightButton);  // a right click anywhere rolls
    ASSERT_EQ(t.g.Table.Point, 6);
  }
  // A Come or Don't Come bet moved to its number.
  if (setup == Setup::FlatAndPoint && !lineFlat) CommitAmount(t.g, kAnnSeat, flat, 10_usd);
  const auto before = t.g.BetAmount;
  t.Click(region);
  for (int b = 1; b < kBetRows; ++b)
    EXPECT_EQ(t.g.BetAmount[kAnnSeat][b] - before[kAnnSeat][b], b == expected ? 5_usd : Money{})
        << BetName(b) << " after a click on " << BetName(region);
  for (int s = 0; s < kSeats; ++s)
    if (s != kAnnSeat) {
      EXPECT_EQ(t.g.BetAmount[s], before[s]) << "seat " << s;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryBetRegion, TableClickTest, ::testing::ValuesIn(AllRegions()));

TEST(HotspotMap, EveryRegionReadsItsOwnIdAtItsCentreAtTwoSizes) {
  for (QSize size : {QSize(1280, 740), QSize(1920, 1040)}) {
    const TableGeometry& geo = DefaultTableGeometry();
    const QImage map = PaintHotspots(geo, size);
    const QTransform to = TableTransform(geo, size);
    for (const TableRegion& r : geo.regions) {
      // Points of the region that no later region covers (a seat's panel lies under its
      // checks): the map reads the region there.
      int seen = 0;
      for (const TableRect& rect : r.rects)
        for (float fx = 0.15f; fx < 0.9f; fx += 0.175f)
          for (float fy = 0.15f; fy < 0.9f; fy += 0.175f) {
            const float x = rect.x + rect.w * fx, y = rect.y + rect.h * fy;
            auto mine = [&](float dx, float dy) { return geo.RegionAt(x + dx, y + dy) == r.id; };
            // Well inside: the map is drawn without smoothing, so an edge may go either way.
            if (!(mine(0, 0) && mine(-3, 0) && mine(3, 0) && mine(0, -3) && mine(0, 3))) continue;
            ++seen;
            const QPoint at = to.map(QPointF(x, y)).toPoint();
            EXPECT_EQ(HotspotAt(map, at.x(), at.y()), r.id) << "at " << size.width() << "x" << size.height();
          }
      EXPECT_GT(seen, 0) << "region " << r.id << " is covered whole";
    }
    const QPoint rail = to.map(QPointF(20, 20)).toPoint();
    EXPECT_EQ(HotspotAt(map, rail.x(), rail.y()), 0);
    EXPECT_EQ(HotspotAt(map, -1, 5), 0);
  }
}

TEST(TableClicks, ARightClickRollsTheDice) {
  Seated t;
  t.NextDice(3, 3);
  t.ClickAt(t.Table().CentreOf(bet::Field), Qt::RightButton);
  EXPECT_EQ(t.g.Stats.RollCount[kSessionScope][0], 1);
  EXPECT_EQ(t.g.Table.Point, 6);
  EXPECT_EQ(t.g.BetAmount[kAnnSeat][bet::Field], Money{});  // the right button places nothing
}

TEST(TableClicks, ShiftClickRemovesTheWholeBetAndCtrlClickTakesOffOneCheck) {
  Seated t;
  ChangeBet(t.g, kAnnSeat, bet::Place4 + 2, 30_usd);
  t.Click(bet::Place4 + 2, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_EQ(t.g.BetAmount[kAnnSeat][bet::Place4 + 2], 25_usd);
  t.Click(bet::Place4 + 2, Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_EQ(t.g.BetAmount[kAnnSeat][bet::Place4 + 2], Money{});
  // A Ctrl-click with $5 selected on $3 takes what there is.
  ChangeBet(t.g, kAnnSeat, bet::Field, 3_usd);
  t.Click(bet::Field, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_EQ(t.g.BetAmount[kAnnSeat][bet::Field], Money{});
}

TEST(TableClicks, AClickOnWhiteSpaceChangesNothing) {
  Seated t;
  ChangeBet(t.g, kAnnSeat, bet::PassLine, 10_usd);
  const auto amounts = t.g.BetAmount;
  const int check = t.Input().SelectedCheck, player = t.Input().SelectedPlayer;
  const QPoint felt = t.Table().Transform().map(QPointF(300, 720)).toPoint();  // cloth below the layout
  ASSERT_EQ(HotspotAt(t.Table().HotspotMap(), felt.x(), felt.y()), 0);
  t.ClickAt(felt);
  EXPECT_EQ(t.g.BetAmount, amounts);
  EXPECT_EQ(t.Input().SelectedCheck, check);
  EXPECT_EQ(t.Input().SelectedPlayer, player);
  EXPECT_TRUE(t.ui.shown.empty());
}

TEST(TableClicks, WithNobodySelectedTheClickTellsWhatToDo) {
  DesktopTable t;
  t.Click(bet::Field);
  ASSERT_EQ(t.ui.shown.size(), 1u);
  EXPECT_EQ(t.ui.shown[0].Title, "No Players Present");
  AddPlayer(t.g, 2, "Bob", 100_usd);
  t.Input().SelectedPlayer = 0;
  t.Click(bet::Field);
  EXPECT_EQ(t.ui.shown.back().Title, "Bettor Not Selected");
  EXPECT_EQ(t.g.BetAmount[2][bet::Field], Money{});
}

TEST(TableClicks, AFreeRailPositionSeatsAPlayerWithHerBuyIn) {
  DesktopTable t;
  t.SeatByClicks(6, "Carmen", "2500");
  EXPECT_EQ(t.g.PlayerName[6], "Carmen");
  EXPECT_EQ(t.g.Bankroll[6], 2500_usd);
  EXPECT_EQ(t.Input().SelectedPlayer, 6);
  EXPECT_EQ(t.g.Table.Shooter, 6);
  // The seat's own checks and stacks select what a click puts down.
  t.Click(6 * 1000 + 4);
  EXPECT_EQ(t.Input().SelectedCheck, 4);
  t.Click(6 * 1000 + 8);
  EXPECT_EQ(t.Input().SelectedCheck, 8);
}

TEST(TableClicks, TheCallToolsAndTheBuyToolActOnTheClickedBet) {
  Seated t;
  ChangeBet(t.g, kAnnSeat, bet::Place4 + 3, 12_usd);  // Place 8
  t.Click(hot::kCallOnTool);
  t.Click(bet::Place4 + 3);
  EXPECT_EQ(t.g.BetWorking[kAnnSeat][bet::Place4 + 3], 2);
  t.Click(hot::kCallOffTool);
  t.Click(bet::Place4 + 3);
  EXPECT_EQ(t.g.BetWorking[kAnnSeat][bet::Place4 + 3], 0);  // back to rest on the come-out
  t.Click(bet::Place4 + 3);
  EXPECT_EQ(t.g.BetWorking[kAnnSeat][bet::Place4 + 3], -1);
  t.Click(hot::kBuyTool);
  t.Click(bet::Place4 + 3);
  EXPECT_EQ(t.g.BetAmount[kAnnSeat][bet::Place4 + 3], Money{});
  EXPECT_EQ(t.g.BetAmount[kAnnSeat][bet::Buy4 + 3], 12_usd);
  EXPECT_EQ(t.g.BetWorking[kAnnSeat][bet::Buy4 + 3], -1);  // called off stays called off
}

TEST(TableKeys, TheArrowsWalkTheLayoutAndEnterPlacesTheSelectedCheck) {
  Seated t;
  t.Key(Qt::Key_Right);  // from nowhere the walk starts on the Pass Line
  ASSERT_EQ(t.Input().HoverId, bet::PassLine);
  t.Key(Qt::Key_Down);
  EXPECT_EQ(t.Input().HoverId, bet::PassLineOdds);
  t.Key(Qt::Key_Up);
  t.Key(Qt::Key_Up);
  EXPECT_EQ(t.Input().HoverId, bet::DontPass);
  t.Key(Qt::Key_3);  // the $25 check
  t.Key(Qt::Key_Return);
  EXPECT_EQ(t.g.BetAmount[kAnnSeat][bet::DontPass], 25_usd);
  t.Key(Qt::Key_Delete);
  EXPECT_EQ(t.g.BetAmount[kAnnSeat][bet::DontPass], Money{});
}

}  // namespace
