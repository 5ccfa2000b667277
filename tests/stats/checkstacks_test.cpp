// CheckStacks as the window lists, writes and edits them.

#include "stats/checkstacks.h"

#include <gtest/gtest.h>

#include "engine/placement.h"
#include "tests/test_support.h"

namespace {

struct Stacks : TestTable {
  Stacks() {
    Seat(1, "Ann", 100_usd);
    SetCheckStack(g, 1, 3, 25_usd);
    SetCheckStack(g, 1, 7, -Money::FromDouble(2.5));
    g.CheckStackName[1][7] = "losses, so far";
    g.CheckStackName[1][9] = "unused";
  }
};

TEST(CheckStacks, ListShowsZeroValuesOnlyWhenAskedAndOutputsKeepTheirColumns) {
  Stacks t;
  auto shown = ListCheckStacks(t.g, 1, false);
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_EQ(shown[0].number, 3);
  EXPECT_EQ(shown[1].value, -Money::FromDouble(2.5)) << "a negative stack is valid";
  EXPECT_EQ(ListCheckStacks(t.g, 1, true).size(), 100u);
  EXPECT_EQ(t.g.OnTable[1], Money{}) << "stacks are no wagers";
  // The outputs keep their columns.
  EXPECT_EQ(CheckStacksText(shown),
            " #    Value                  Name\n"
            " 3    25                     \n"
            " 7    -2.50                  losses, so far\n");
  EXPECT_EQ(CheckStacksTsv(shown), "#\tValue\tName\n3\t25\t\n7\t-2.50\tlosses, so far\n");
  EXPECT_EQ(CheckStacksCsv(shown), "#,Value,Name\n3,25,\n7,-2.50,\"losses, so far\"\n");
}

TEST(CheckStacks, DeletingAllNamesLeavesTheValues) {
  Stacks t;
  t.ui.replies.push_back({kButtonYes, "", false});
  ASSERT_TRUE(DeleteAllCheckStackNames(t.g, 1));
  EXPECT_EQ(t.ui.LastText(), "Are you sure you want to delete ALL the CheckStack names for Ann");
  EXPECT_EQ(FindCheckStack(t.g, 1, "unused"), -1);
  EXPECT_EQ(t.g.BetAmount[1][kCheckStackRow + 3], 25_usd);
  t.ui.replies.push_back({kButtonNo, "", false});
  EXPECT_FALSE(DeleteAllCheckStackValues(t.g, 1));
  EXPECT_EQ(t.g.BetAmount[1][kCheckStackRow + 3], 25_usd) << "No leaves them";
}

TEST(CheckStacks, UndoAndRedoAnEdit) {
  Stacks t;
  CheckStackUndo list;
  SaveUndo(t.g, 1, list);
  SetCheckStack(t.g, 1, 3, 40_usd);
  t.g.CheckStackName[1][3] = "target";
  ASSERT_TRUE(Undo(t.g, list));
  EXPECT_EQ(t.g.BetAmount[1][kCheckStackRow + 3], 25_usd);
  EXPECT_EQ(t.g.CheckStackName[1][3], "");
  ASSERT_TRUE(Redo(t.g, list));
  EXPECT_EQ(t.g.BetAmount[1][kCheckStackRow + 3], 40_usd);
  EXPECT_EQ(FindCheckStack(t.g, 1, "target"), 3);
  EXPECT_FALSE(Redo(t.g, list));
}

// Each roll's start-of-roll and after-roll copies hold the stacks as they stand then, the
// one written before the roll and the one left alone.
TEST(CheckStacks, TheCopiesOfEveryRollFollowTheStacks) {
  Stacks t;
  ChangeBet(t.g, 1, bet::PassLine, 5_usd);
  t.Roll(2, 3);  // the point, which sixes leave standing
  for (const Money value : {40_usd, 40_usd, -3_usd, Money{}}) {
    SetCheckStack(t.g, 1, 3, value);
    t.Roll(2, 4);
    ASSERT_EQ(t.g.Table.Point, 5);
    for (const ByBetRow<Money>* copy : {&t.g.BetAmountStartOfRoll, &t.g.BetAmountAfterRoll}) {
      EXPECT_EQ((*copy)[1][kCheckStackRow + 3], value);
      EXPECT_EQ((*copy)[1][kCheckStackRow + 7], -Money::FromDouble(2.5));
    }
  }
}

TEST(CheckStacks, TheLimitCutsAndTells) {
  Stacks t;
  const Money limit = Money::FromRaw(999999999999999999LL);
  EXPECT_EQ(SetCheckStack(t.g, 1, 5, limit + 5_usd), limit);
  EXPECT_EQ(t.ui.LastText(), "The maximum CheckStack #5 value is:\n$99999999999999.9999\nwhich is being stacked.");
}

TEST(CheckStacks, AFileThatCantBeWrittenIsReported) {
  TempDir dir;
  std::string error;
  EXPECT_TRUE(WriteCheckStacksFile((dir.path / "stacks.txt").string(), "x", error));
  EXPECT_FALSE(WriteCheckStacksFile((dir.path / "no" / "such" / "stacks.txt").string(), "x", error));
  EXPECT_EQ(error, "Path/File access error, Error #75\n occurred at: sub Copy CheckStacks To Text File");
}

}  // namespace
