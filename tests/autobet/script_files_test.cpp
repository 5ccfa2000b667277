// Script files: text and the earlier record form, the conversion of the record form,
// loading into a seat, pasting, and hot keys that run a file of their own.

#include "autobet/script_files.h"

#include <gtest/gtest.h>

#include "autobet/compiler.h"
#include "storage/fixed_record.h"
#include "storage/hot_keys.h"
#include "storage/record_io.h"
#include "tests/test_support.h"

namespace {

using Lines = std::vector<std::string>;

struct LegacyRecord {
  int kind;
  std::string text;
};

// A file of the record form under the first mark, an empty record where the text is "".
Bytes Legacy(const std::vector<LegacyRecord>& records) {
  Bytes b((records.size() + 1) * 256, 0);
  PutFixedText(b.data(), 128, "Ivoryhouse AutoBets, Data Format 5.0");
  for (size_t i = 0; i < records.size(); ++i) {
    unsigned char* r = b.data() + (i + 1) * 256;
    if (!records[i].text.empty()) PutFixedText(r, 128, records[i].text);
    PutInt32(r + 128, records[i].kind);
  }
  return b;
}

struct Conversion {
  const char* name;
  std::vector<LegacyRecord> records;
  Lines lines;
};

class RecordForm : public testing::TestWithParam<Conversion> {};

TEST_P(RecordForm, ConvertsToCurrentSource) {
  EXPECT_EQ(AutoBetLinesFromBytes(Legacy(GetParam().records)), GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(
    ScriptFiles, RecordForm,
    testing::Values(
        Conversion{"only a header", {}, {""}},
        Conversion{"a block with no later record", {{1, "while x > 5"}}, {" If x > 5", " EndIf"}},
        Conversion{"when kept only in the comment", {{5, "when the total is 7"}}, {" If 'When the total is 7"}},
        Conversion{"a block closed before the next",
                   {{2, "when a"}, {20, "b"}, {30, "take c"}, {13, "x"}, {5, "set d to 1"}},
                   {" If 'When a", " and b", " : take c", " EndIf", " d to 1"}},
        Conversion{"a label, an empty record, a line kept",
                   {{90, "  top~+ "}, {5, ""}, {99, "cs1 = 2 : x"}},
                   {":\"top\" :", "cs1 = 2 : x"}},
        Conversion{"a bracket closed before on", {{5, "highest of rolls on 7"}}, {" Highest(rolls)  on 7"}},
        Conversion{"starred words put back", {{5, "1 roll and when 4 rolls"}}, {" 1 roll and 'and when 4 rolls"}},
        Conversion{"a bracket the text held is its own",
                   {{5, "Bet bankroll (10 roll average) on Field"}},
                   {" Bet avg bankroll(10 ) on Field"}}));

struct LegacyLine {
  const char* text;       // a plain statement of the record form
  bool condition;         // compiled between If and Then rather than as a statement
  const char* converted;  // the exact current line, where it matters; nullptr otherwise
};

LegacyLine Statement(const char* text, const char* converted = nullptr) { return {text, false, converted}; }
LegacyLine Condition(const char* text, const char* converted = nullptr) { return {text, true, converted}; }

class LegacyLines : public testing::TestWithParam<LegacyLine> {};

TEST_P(LegacyLines, ConvertToSourceThatCompiles) {
  const LegacyLine& c = GetParam();
  const Lines lines = AutoBetLinesFromBytes(Legacy({{5, c.text}}));
  ASSERT_EQ(lines.size(), 1u);
  if (c.converted) {
    EXPECT_EQ(lines[0], c.converted);
  }
  AutoBetProgram program;
  program.ScriptSource[1] = c.condition ? Lines{"If" + lines[0] + " Then", "EndIf"} : lines;
  EXPECT_EQ(CompileAutobets(program, 1, {}).message, "") << lines[0];
}

INSTANTIATE_TEST_SUITE_P(
    ScriptFiles, LegacyLines,
    testing::Values(
        // Bet names and dice pairs.
        Statement("Bet $ 10 on Pass Line Odds", " Bet $10 on PassLineOdds"),
        Statement("Bet value of checkstack #1 on Don't Pass", " Bet  checkStack1 on DontPass"),
        Statement("Bet $10 on Don't Come 10 Odds", " Bet $10 on DontComeOdds10"), Statement("Bet $10 on Come 4 Odds"),
        Statement("Bet $6 on Place 6"), Statement("Bet $25 on Buy 10"), Statement("Bet $20 on Lay 4"),
        Statement("Bet $1 on C and E"), Statement("Bet $1 on Hard 8"),
        Statement("Bet $1 on Hop 1-3", " Bet $1 on Hop (1.3)"),
        Statement("Bet value of ref #2 on Field", " Bet (CheckStack2)  on Field"),
        Statement("Set chip-stack #3 = chip stack #4 + 1", " CheckStack3 = CheckStack4 + 1"),
        // Won, lost and rolled.
        Condition("Pass Line has won"), Condition("Pass Line has not lost", " PassLine losses = 0"),
        Condition("any place bet has won", " any(place bets win)"),
        Condition("any come bet has lost", " any(come bets lose)"),
        LegacyLine{"Field has won more than 3 times and checkstack #1 over 5", true,
                   " Field total # wins > 3 and checkStack1 more than 5"},
        Condition("a hard 8 has not rolled", " (dice combo = 4.4) = false"),
        Condition("the number 6 or 8 has rolled", " the (dice total = any(6,8)) "),
        Condition("the number 5 (1.4) has rolled", " the (dice permutation = 1.4) "),
        Condition("a 2,3,or 12 has rolled"), Condition("die 2, face 3 has rolled", " Die2 = 3 "),
        Condition("the next roll is a come-out roll"),
        // Totals and counts.
        Condition("total inside place bets number less than 2", " Count(inside place bets) is less than 2"),
        Statement("Set checkstack #1 = total #of current wagers"),
        LegacyLine{"Set checkstack #1 = total $of decided wagers - total come bets", false,
                   " checkStack1 = Sum(total $ resolved bets) - Sum(come bets)"},
        LegacyLine{"Set checkstack #1 = the #of passes for this shooter + game rolls", false,
                   " checkStack1 = # passes current hand + # rolls"},
        LegacyLine{"Set checkstack #5 = bankroll (all roll average) - lowest bankroll", false,
                   " checkStack5 = avg bankroll(525) - low bankroll"},
        // The ATM, the aids, messages and files.
        Statement("Withdraw $50", " ATM withdraw $50"),
        Statement("Set auto-remove place bets to true", " AutoDown place bets = true"),
        Statement("Set Auto-Handle winnings = \"Same Bet - Take Winnings\""),
        Statement("Get input and bet it on Field", " Bet Input() on Field"),
        Statement("Output to file. \"x\" & new line."), Statement("Stop auto-rolling/hyper-drive"),
        // No meaning today: a comment of the line.
        Statement("Reset rolls", " 'Reset rolls"), Statement("Close file", " 'Close file"),
        Statement("Set flag 2 to true", " 'flag 2 to true"),
        Statement("any flag is true", " 'any of the flags is true")));

TEST(ScriptFiles, TextAndRecordFormsRoundTrip) {
  TempDir dir;
  const Lines lines = {"' a system", "If initializing script Then", "   cs1 = 5", "", "EndIf", "Pass Line = cs1"};
  const std::string path = (dir.path / "s.bet").string();
  ASSERT_TRUE(WriteAutoBetFile(path, lines));
  Lines read;
  ASSERT_TRUE(ReadAutoBetFile(path, read));
  EXPECT_EQ(read, lines);
  Bytes record;
  ASSERT_TRUE(LegacyAutoBetBytes(lines, record));
  EXPECT_EQ(record.size(), 7u * 256);
  EXPECT_EQ(AutoBetLinesFromBytes(record), lines);
  EXPECT_FALSE(LegacyAutoBetBytes({std::string(129, 'x')}, record));
  EXPECT_EQ(AutoBetLinesFromBytes({}), Lines{""});
  // A text that begins with other words is text, whatever it holds.
  const std::string text = "DiceHall AutoBets\r\ncs1 = 1";
  EXPECT_EQ(AutoBetLinesFromBytes(Bytes(text.begin(), text.end())), (Lines{"DiceHall AutoBets", "cs1 = 1"}));
}

TEST(ScriptFiles, LoadingPastingAndHotKeys) {
  FolderTable t;
  t.Seat(1, "Ann", 1000_usd);
  ASSERT_TRUE(WriteAutoBetFile(t.g.ProgramFolder + "/a.bet", {"cs1 = 7", "cs2 = 8"}));
  EXPECT_FALSE(OpenAutoBets(t.g, 1, "missing.bet"));
  EXPECT_TRUE(t.g.ScriptFile[1].empty());
  ASSERT_TRUE(OpenAutoBets(t.g, 1, "a.bet"));
  EXPECT_EQ(t.g.ScriptFile[1], "a.bet");
  ASSERT_TRUE(OpenAutoBets(t.g, 1, "a.bet", AutoBetLoad::Paste, 1));
  EXPECT_EQ(t.g.AutoBet.ScriptSource[1], (Lines{"cs1 = 7", "cs1 = 7", "cs2 = 8", "cs2 = 8"}));

  t.g.HotKeys = {{'K', "a.bet", "Seven", true, false, 0, 0, 0}, {'M', "gone.bet", "", true, false, 0, 0, 0}};
  t.g.AutoBet.SelectedSeat = 1;
  const auto records = t.g.AutoBet.ProgramRecords;
  EXPECT_TRUE(RunHotKey(t.g, 'K'));
  EXPECT_EQ(t.g.BetAmount[1][kCheckStackRow + 2], 8_usd);
  EXPECT_EQ(t.g.AutoBet.ProgramRecords.size(), records.size());
  EXPECT_EQ(t.g.ScriptFile[1], "a.bet");
  EXPECT_FALSE(RunHotKey(t.g, 'M'));
  EXPECT_NE(t.ui.LastText().find("Please check the path and file name on the Hot-key screen."), std::string::npos);
  EXPECT_FALSE(RunHotKey(t.g, 'Z'));
}

TEST(HotKeys, FileRoundTripsAndBadFilesAreRefused) {
  FolderTable t;  // reads the hot keys: a missing file is made, empty
  Bytes bytes;
  ASSERT_TRUE(ReadWholeFile(t.g.ProgramFolder + "/Hot-keys.hky", bytes, 1 << 20));
  EXPECT_EQ(bytes.size(), 377u);
  const HotKeyTable table = {{HotKeyChar('q', false, true), "x.bet", "Take all down", true, true, 12.5f, 300, 255},
                             {HotKeyChar('a', true, false), "dir/y.bet", "", false, false, 0, 0, 0}};
  EXPECT_EQ(HotKeyLabel(table[0].Key), "Ctrl+Q");
  EXPECT_EQ(HotKeyLabel(table[1].Key), "Shift+A");
  t.g.HotKeys = table;
  ASSERT_TRUE(SaveHotkeys(t.g));
  t.g.HotKeys.clear();
  ASSERT_TRUE(LoadHotKeys(t.g));
  EXPECT_EQ(t.g.HotKeys, table);
  const Bytes good = HotKeyFileBytes(table);
  for (auto [at, value] : {std::pair<size_t, int32_t>{1, 0x41414141}, {357, -1}, {357, 3}, {377 + 365, 0x7fc00000}}) {
    Bytes b = good;
    PutInt32(b.data() + at, value);
    HotKeyTable out = table;
    EXPECT_FALSE(ParseHotKeyFile(b, out)) << at;
    EXPECT_EQ(out, table);
    ASSERT_TRUE(WriteFileAtomically(t.g.ProgramFolder + "/Hot-keys.hky", b));
    EXPECT_FALSE(LoadHotKeys(t.g));
    EXPECT_EQ(t.ui.LastText(), kNotAHotKeysFile);
    EXPECT_EQ(t.g.HotKeys, table);
  }
}

struct ButtonMove {
  HotButtonMove how;
  std::vector<std::pair<float, float>> places;  // left, top of the three buttons after
};

TEST(HotKeys, ButtonsLineUpAndPushTogether) {
  // Buttons 40 by 20 at (100, 50), (300, 10) and (170, 200); the first is selected first.
  const std::vector<ButtonMove> moves = {{HotButtonMove::AlignColumn, {{100, 50}, {100, 10}, {100, 200}}},
                                         {HotButtonMove::AlignRow, {{100, 50}, {300, 50}, {170, 50}}},
                                         {HotButtonMove::SnugLeft, {{100, 50}, {180, 10}, {140, 200}}},
                                         {HotButtonMove::SnugAllRightUp, {{220, 30}, {300, 10}, {260, 50}}}};
  for (const ButtonMove& m : moves) {
    FolderTable t;
    t.g.HotKeys = {{'A', "", "", true, true, 100, 50, 0},
                   {'B', "", "", true, true, 300, 10, 0},
                   {'C', "", "", true, true, 170, 200, 0}};
    ASSERT_TRUE(MoveHotButtons(t.g, {0, 1, 2}, m.how, 40, 20));
    t.g.HotKeys.clear();
    ASSERT_TRUE(LoadHotKeys(t.g));  // the new places were saved
    for (size_t k = 0; k < 3; ++k)
      EXPECT_EQ(std::make_pair(t.g.HotKeys[k].Left, t.g.HotKeys[k].Top), m.places[k]) << static_cast<int>(m.how);
  }
}

}  // namespace
