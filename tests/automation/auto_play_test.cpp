// Auto-Play's stores: the bias of a family steers the adjustment to a proper payoff, the
// settings move with a player and survive a save, and a setting by name is checked.

#include "automation/auto_play.h"

#include <gtest/gtest.h>

#include <tuple>

#include "engine/placement.h"
#include "engine/players.h"
#include "storage/game_file.h"
#include "tests/test_support.h"

namespace {

// The bet, the adjust mode, the bias (-1: the family has none), the amount asked and placed.
using Adjusted = std::tuple<int, int, int, int64_t, int64_t>;

class AdjustBias : public testing::TestWithParam<Adjusted> {};

// Place 6 pays 7 for 6 and Lay 4 1 for 2: the multiples are 6 and 2 checks of $1. Buy
// bets have no bias; "minor correction" (1) always goes down.
TEST_P(AdjustBias, MovesTheAmountTheWayTheFamilyLeans) {
  const auto& [betId, mode, bias, request, placed] = GetParam();
  TestTable t;
  t.Seat(1, "Ann", 1000_usd);
  SetAdjustMode(t.g, 1, mode);
  if (bias >= 0) t.g.AdjustBias[1].fill(bias);
  EXPECT_EQ(ChangeBet(t.g, 1, betId, Money::Dollars(request)), Money::Dollars(placed));
}

const int kPlace6 = PointRow(BetFamily::Place, 6), kBuy5 = PointRow(BetFamily::Buy, 5);
INSTANTIATE_TEST_SUITE_P(AutoPlay, AdjustBias,
                         testing::Values(Adjusted{kPlace6, 2, 0, 8, 6}, Adjusted{kPlace6, 2, 1, 8, 12},
                                         Adjusted{kPlace6, 2, 2, 11, 6}, Adjusted{kPlace6, 2, 0, 11, 12},
                                         Adjusted{bet::Lay4, 2, 1, 5, 6}, Adjusted{bet::Lay4, 2, 2, 5, 4},
                                         Adjusted{kBuy5, 2, 1, 7, 6}, Adjusted{kBuy5, 2, 1, 9, 8},
                                         Adjusted{kPlace6, 1, 1, 11, 6}));

TEST(AutoPlay, SettingsMoveWithThePlayerAndSurviveASave) {
  FolderTable t;
  t.Seat(2, "Bob", 500_usd);
  std::string error;
  for (const char* setting :
       {"adjust=minor", "lay-bias=decrease", "odds-bias=increase", "take-odds=on", "pass-dice=on", "work Place 8=yes"})
    ASSERT_TRUE(ApplyAutoPlay(t.g, 2, std::string(setting).substr(0, std::string(setting).find('=')),
                              std::string(setting).substr(std::string(setting).find('=') + 1), error))
        << setting << ": " << error;
  t.g.AutoHandleWin[2] = 7;
  t.g.SettleRules[2][1] = {0, 25_usd, 2};
  MovePlayer(t.g, 2, 7);
  auto check = [](const Game& g, int s) {
    EXPECT_EQ(AdjustMode(g, s), 1);
    EXPECT_EQ(g.AdjustBias[s][kBiasLay], 2);
    EXPECT_EQ(g.AdjustBias[s][kBiasDoOdds], 1);
    EXPECT_TRUE(g.AutoTakeOdds[s] && g.AutoPassDice[s] && !g.AutoLayOdds[s]);
    EXPECT_TRUE(g.Rules.WorkOnComeOut[PointRow(BetFamily::Place, 8)][s]);
    EXPECT_EQ(g.AutoHandleWin[s], 7);
    EXPECT_EQ(g.SettleRules[s][1].Operand, 25_usd);
    EXPECT_EQ(g.SettleRules[s][1].Units, 2);
  };
  check(t.g, 7);
  EXPECT_EQ(t.g.AdjustBias[2][kBiasLay], 0);
  EXPECT_FALSE(t.g.AutoTakeOdds[2]);
  const std::string file = t.Path("play.crp");
  ASSERT_TRUE(SaveGame(t.g, file));
  FolderTable other;
  ASSERT_TRUE(OpenGame(other.g, file)) << other.ui.LastText();
  check(other.g, 7);
}

}  // namespace
