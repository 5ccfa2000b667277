// Players who leave and move, and the dice between them.

#include "engine/players.h"

#include <gtest/gtest.h>

#include <tuple>

#include "stats/sessions_log_file.h"
#include "tests/engine/line_table.h"

namespace {

struct Leaving : LineTable {
  Leaving() {
    Seat(1, "Ann", 1000_usd);
    Seat(2, "Bob", 1000_usd);
    Bet(1, bet::PassLine, 10_usd);
    Bet(2, bet::PassLine, 10_usd);
    RollTotal(6);  // point on: the Pass Line is a contract
    Bet(1, bet::Come, 5_usd);
    RollTotal(4);                     // the Come bet travels to 4
    Bet(1, bet::Place4 + 3, 12_usd);  // Place 8 may come down any time
  }
};

TEST(PlayersRemove, AsksWithWhatWouldBeAbandoned) {
  Leaving t;
  t.ui.replies.push_back({kButtonNo, "", false});
  EXPECT_FALSE(RemovePlayer(t.g, 1));
  EXPECT_EQ(t.LastMessage().Text,
            "Would you like to remove Ann?\n\nAnn still has an active Pass Line bet and an active Come 4 bet that "
            "can't be removed and will be abandoned.\n\nTotal to be abandoned: $15");
  EXPECT_EQ(t.LastMessage().Title, "Remove player");
  EXPECT_EQ(t.g.PlayerName[1], "Ann") << "No leaves everything as it was";
  EXPECT_EQ(t.Amount(1, bet::PassLine), 10_usd);
}

TEST(PlayersRemove, AbandonedContractsLoseTheRestGoesBack) {
  Leaving t;
  const Money before = t.g.Bankroll[2];
  t.ui.replies.push_back({kButtonYes, "", false});
  ASSERT_TRUE(RemovePlayer(t.g, 1));
  EXPECT_EQ(t.g.Bankroll[1], Money{}) << "the seat's stores are cleared";
  EXPECT_EQ(t.g.PlayerName[1], "");
  EXPECT_EQ(t.g.Table.NumberOfPlayers, 1);
  EXPECT_EQ(t.g.Table.Shooter, 2) << "the shooter left: the dice pass";
  for (int b = 1; b <= kBets; ++b) EXPECT_EQ(t.Amount(1, b), Money{}) << BetName(b);
  EXPECT_EQ(t.g.OnTable[1], Money{});
  EXPECT_FALSE(AnySeatHolds(t.g, bet::Place4 + 3));
  EXPECT_EQ(t.g.Bankroll[2], before) << "the other player is untouched";
}

// Whoever sits down next starts at a bare seat: nothing of the leaver's calls, contracts,
// leave to go below zero or auto-pass stays behind for the newcomer.
TEST(PlayersRemove, TheSeatIsLeftBare) {
  Leaving t;
  t.RollTotal(5);  // Place 8 becomes part of the contract bases
  ASSERT_EQ(t.g.ContractBase[1][bet::Place4 + 3], 12_usd);
  t.g.AllowNegBankroll[1] = true;
  t.g.AutoPassDice[1] = true;
  t.g.BetWorking[1][bet::Place4 + 3] = -1;  // Place 8 called off
  t.ui.replies.push_back({kButtonYes, "", false});
  ASSERT_TRUE(RemovePlayer(t.g, 1));
  EXPECT_EQ(PlayerSeats(t.g), 1u << 2) << "Bob alone";
  for (int seat : {-1, 1, 9, 32, 1000}) EXPECT_FALSE(SeatOccupied(t.g, seat)) << seat;
  EXPECT_FALSE(t.g.AllowNegBankroll[1]);
  EXPECT_FALSE(t.g.AutoPassDice[1]);
  EXPECT_EQ(t.g.BetWorking[1][bet::Place4 + 3], t.g.BetWorking[5][bet::Place4 + 3]) << "as a seat nobody played";
  EXPECT_EQ(t.g.ContractBase[1][bet::Place4 + 3], Money{});
  ASSERT_TRUE(AddPlayer(t.g, 1, "Cy", 5_usd));
  t.g.SilentMode = true;
  EXPECT_EQ(t.Bet(1, bet::Field, 25_usd), 5_usd) << "the newcomer can't go below zero";
}

// The ending bankroll in the player's sessions log tells whether the contracts were lost.
Money EndingBankrollWhenLeaving(bool returnAbandoned) {
  Leaving t;
  TempDir dir;
  t.g.ProgramFolder = dir.path.string();
  t.g.Rules.ReturnAbandonedBets = returnAbandoned;
  const Money before = t.g.Bankroll[1];
  t.ui.replies.push_back({kButtonYes, "", false});
  EXPECT_TRUE(RemovePlayer(t.g, 1));
  SessionsLogFile log;
  std::string error;
  EXPECT_TRUE(ReadSessionsLog((dir.path / "Ann.slg").string(), log, error, "test")) << error;
  if (log.Records.size() != 1) return -1_usd;
  return log.Records[0][slg::Ending] - before;
}

TEST(PlayersRemove, ContractsAreLostUnlessTheOptionReturnsThem) {
  EXPECT_EQ(EndingBankrollWhenLeaving(false), -15_usd);
  EXPECT_EQ(EndingBankrollWhenLeaving(true), Money{});
}

TEST(PlayersRemove, TheLastPlayerLeavingEndsTheHand) {
  LineTable t;
  t.Seat(1, "Ann", 100_usd);
  t.PassLineThen(5);
  t.ui.replies.push_back({kButtonYes, "", false});
  ASSERT_TRUE(RemovePlayer(t.g, 1));
  EXPECT_EQ(t.g.Table.Point, 0);
  EXPECT_EQ(t.g.Table.Shooter, 0);
  EXPECT_EQ(t.g.Table.HandShooter, 0);
}

TEST(PlayersMove, EverythingFollowsThePlayerAndTheShooterKeepsTheDice) {
  Leaving t;
  ASSERT_EQ(t.g.Table.Shooter, 1);
  const Money bankroll = t.g.Bankroll[1];
  MovePlayer(t.g, 1, 6);
  EXPECT_EQ(t.g.PlayerName[6], "Ann");
  EXPECT_EQ(t.g.PlayerName[1], "");
  EXPECT_EQ(t.g.Bankroll[6], bankroll);
  EXPECT_EQ(t.g.Bankroll[6 + 18], bankroll);
  EXPECT_EQ(t.Amount(6, bet::Come4), 5_usd);
  EXPECT_EQ(t.g.ContractBase[6][bet::Come4], 5_usd);
  EXPECT_EQ(t.g.Table.Shooter, 6);
  EXPECT_TRUE(t.g.BetHolders[bet::Come4] & (1 << 6));
  EXPECT_FALSE(t.g.BetHolders[bet::Come4] & (1 << 1));
  // The moved bets still resolve: a 4 pays the Come 4 of the new seat.
  t.ui.replies.clear();
  t.RollTotal(4);
  EXPECT_EQ(t.g.Bankroll[6], bankroll + 5_usd);
}

TEST(PlayersMove, AMoveToAnOccupiedSeatIsAnExchange) {
  Leaving t;
  MovePlayer(t.g, 1, 2);
  EXPECT_EQ(t.g.PlayerName[1], "Bob");
  EXPECT_EQ(t.g.PlayerName[2], "Ann");
  EXPECT_EQ(t.Amount(2, bet::Place4 + 3), 12_usd);
  EXPECT_EQ(t.Amount(1, bet::Place4 + 3), Money{});
  EXPECT_EQ(t.g.Table.Shooter, 2);
}

// What, players seated, whether the others pass, whether the line rule blocks them, the text.
using PassCase = std::tuple<const char*, int, bool, bool, const char*>;

class PlayersPassDice : public testing::TestWithParam<PassCase> {};

TEST_P(PlayersPassDice, AFailedPassSaysWhy) {
  const auto& [what, players, otherPasses, blockLine, text] = GetParam();
  LineTable t;
  static const char* kNames[] = {"", "Ann", "Bob", "Cat"};
  for (int s = 1; s <= players; ++s) t.Seat(s, kNames[s], 1000_usd);
  for (int s = 2; s <= players; ++s) t.g.AutoPassDice[s] = otherPasses;
  if (blockLine) {
    t.g.Rules.AllowPutBets = false;
    t.PassLineThen(8);
  }
  PassDice(t.g, kPassAsked);
  EXPECT_EQ(t.g.Table.Shooter, 1) << what;
  EXPECT_EQ(t.LastMessage().Text, text) << what;
  EXPECT_EQ(t.LastMessage().Title, "Pass the Dice");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PlayersPassDice,
    testing::Values(
        PassCase{"alone", 1, false, false, "Unable to pass the dice.\n\nThere are no other players at the table."},
        PassCase{"the other passes", 2, true, false,
                 "Unable to pass the dice at this time.\n\nBob doesn't want to shoot."},
        PassCase{"all others pass", 3, true, false,
                 "Unable to pass the dice at this time.\n\nNone of the other players want to shoot."},
        PassCase{"two blocked by the line rule", 3, false, true,
                 "Unable to pass the dice at this time.\n\nThere are 2 other players who want to shoot but can't "
                 "because a line bet is required and Put bets are not allowed.\n\nPlease wait for a come-out roll or "
                 "check the 'Allow Put bets' option on the 'Bets tab' of the configuration screen."}));

TEST(PlayersAdd, AskedNameAndBuyInSeatThePlayer) {
  LineTable t;
  t.Seat(1, "Bob", 100_usd);
  // Yes to a player here; names taken, all numeric and no file name; " Ann "; buy-ins "ten"
  // (not an amount, and a box says so) and 250.
  t.ui.replies = {{kButtonYes, "", false},       {kButtonOk, "Bob", false},   {kButtonOk, "1234", false},
                  {kButtonOk, "Ann/Lee", false}, {kButtonOk, " Ann ", false}, {kButtonOk, "ten", false},
                  {kButtonOk, "", false},        {kButtonOk, "250", false}};
  ASSERT_TRUE(AskToAddPlayer(t.g, 5));
  EXPECT_EQ(t.g.PlayerName[5], "Ann");
  EXPECT_EQ(t.g.Bankroll[5], 250_usd);
  EXPECT_EQ(t.g.Table.NumberOfPlayers, 2);
  const auto& tr = t.ui.transcript;
  ASSERT_GE(tr.size(), 7u);
  EXPECT_EQ(tr[0].request.Text, "Would you like to add a player here?");
  EXPECT_EQ(tr[0].request.Title, "Add new player");
  EXPECT_EQ(tr[1].request.Text, "What's the new player's name?");
  EXPECT_EQ(tr[2].request.Text, "There's already a player named Bob\n\nWhat's the new player's name?");
  EXPECT_EQ(tr[3].request.Text.rfind("A player's name can't be all numeric", 0), 0u);
  EXPECT_EQ(tr[4].request.Text.rfind("Ann/Lee can't be used as a player's name because it won't work", 0), 0u);
  EXPECT_EQ(tr[5].request.Text, "How much would Ann like to buy-in for?");
}

// Names the game file keeps alike (both "Ann?" in its code page) are one name: a second
// player of that name would make a file that can't be opened.
TEST(PlayersAdd, ANameTheFileCantTellApartIsTaken) {
  LineTable t;
  t.Seat(1, "Ann\xF0\x9F\x98\x80", 100_usd);
  EXPECT_EQ(PlayerNameFault(t.g, "Ann\xF0\x9F\x98\x81"), "There's already a player named Ann\xF0\x9F\x98\x80");
  EXPECT_FALSE(AddPlayer(t.g, 2, "Ann\xF0\x9F\x98\x81", 100_usd));
  EXPECT_FALSE(AddPlayer(t.g, 3, "Ann\xF0\x9F\x98\x80", 100_usd));
  EXPECT_TRUE(AddPlayer(t.g, 2, "Ann", 100_usd));
  EXPECT_EQ(t.g.Table.NumberOfPlayers, 2);
  // Nobody bets for a seat left empty, even one whose player could go below zero.
  ASSERT_TRUE(AddPlayer(t.g, 4, "Dee", -1_usd));
  t.g.SilentMode = true;
  ASSERT_TRUE(RemovePlayer(t.g, 4));
  EXPECT_EQ(t.Bet(4, bet::Field, 5_usd), Money{});
  EXPECT_EQ(t.g.OnTable[4], Money{});
}

TEST(PlayersAdd, NoOrCancelSeatsNobody) {
  LineTable t;
  t.ui.replies = {{kButtonNo, "", false}};
  EXPECT_FALSE(AskToAddPlayer(t.g, 3));
  t.ui.replies = {{kButtonYes, "", false}, {kButtonCancel, "", false}};
  EXPECT_FALSE(AskToAddPlayer(t.g, 3));
  EXPECT_EQ(t.g.Table.NumberOfPlayers, 0);
  EXPECT_EQ(t.g.PlayerName[3], "");
}

}  // namespace
