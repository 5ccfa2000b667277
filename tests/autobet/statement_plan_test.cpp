// A statement's plan leaves what reducing its records leaves: the same buffer, the same
// fault, the same strings, on every statement of the language's operator table and of
// every example system, at every roll of a played session.

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "autobet/interpreter.h"
#include "autobet/reduction.h"
#include "dice/seeding.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"
#include "storage/game_file.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

// What a reduction leaves.
struct Reduced {
  int error = 0;
  std::vector<TokenRecord> records;
  std::vector<std::string> strings;  // made while reducing
  std::uint32_t rnd = 0;
};

bool operator==(const Reduced& a, const Reduced& b) {
  if (a.error != b.error || a.rnd != b.rnd || a.strings != b.strings) return false;
  if (a.error != 0) return true;  // a faulted statement's buffer is never looked at
  if (a.records.size() != b.records.size()) return false;
  for (std::size_t i = 0; i < a.records.size(); ++i)
    if (a.records[i].code != b.records[i].code ||
        std::memcmp(&a.records[i].value, &b.records[i].value, sizeof(double)) != 0)
      return false;
  return true;
}

std::string Show(const Reduced& r) {
  std::string s = "fault " + std::to_string(r.error) + ":";
  for (const TokenRecord& t : r.records) s += " " + std::to_string(t.code) + "/" + std::to_string(t.value);
  for (const std::string& text : r.strings) s += " \"" + text + "\"";
  return s;
}

// Runs `reduce` on the game and takes what it left, then puts back the strings and the
// generator it may have used.
template <class F>
Reduced Take(Game& g, F&& reduce) {
  AutoBetProgram& p = g.AutoBet;
  const std::size_t mark = p.ProgramStrings.size();
  const std::uint32_t seed = p.RndSeed;
  p.RunError = 0;
  reduce();
  Reduced r;
  r.error = p.RunError;
  r.records.assign(p.StatementBuffer.begin() + 1, p.StatementBuffer.begin() + 1 + p.StatementLength);
  for (std::size_t i = mark; i < p.ProgramStrings.size(); ++i) r.strings.push_back(p.ProgramStrings[i].text);
  r.rnd = p.RndSeed;
  p.ProgramStrings.resize(mark);
  p.RndSeed = seed;
  p.RunError = 0;
  return r;
}

// Compares both ways of reducing every statement of the program as the game stands, and
// every tail of one too (whatever records a reduction starts from, the two agree); counts
// the statements that are no keyword, and those that have a plan.
struct Counts {
  int statements = 0, planned = 0;
};
Counts CompareEveryStatement(Game& g, const char* when) {
  AutoBetProgram& p = g.AutoBet;
  Counts n;
  const int last = static_cast<int>(p.ProgramRecords.size()) - 1;
  for (int start = 0; start <= last; ++start) {
    if (p.ProgramRecords[static_cast<std::size_t>(start)].code == kCodeScriptHeader)
      p.Bettor = static_cast<int>(p.ProgramRecords[static_cast<std::size_t>(start)].value);
    if (p.ProgramRecords[static_cast<std::size_t>(start)].code >= kCodeStatement) continue;
    const FoundStatement found = WorkOutStatement(p, start);
    const std::vector<TokenRecord> statement(p.ProgramRecords.begin() + start, p.ProgramRecords.begin() + found.end);
    const int code = statement.front().code;
    const bool whole = start == 0 || p.ProgramRecords[static_cast<std::size_t>(start - 1)].code >= kCodeStatement;
    const bool keyword = (code >= kCodeIf && code <= kCodeExitDo) || code == kCodeLabel || code == kCodeScriptHeader;
    n.statements += whole && !keyword;
    if (found.plan == nullptr || keyword) continue;  // an If may keep its condition's plan
    n.planned += whole;
    const Reduced live = Take(g, [&] {
      if (p.StatementBuffer.size() < statement.size() + 2) p.StatementBuffer.resize(statement.size() + 64);
      std::copy(statement.begin(), statement.end(), p.StatementBuffer.begin() + 1);
      p.StatementLength = static_cast<int>(statement.size());
      ReduceStatement(g);
    });
    const Reduced plan = Take(g, [&] {
      if (RunPlanSteps(g, *found.plan)) WritePlannedOutcome(g, *found.plan);
    });
    EXPECT_TRUE(live == plan) << when << ", statement at record " << start
                              << "\n records: " << Show({0, statement, {}, 0}) << "\n reduced: " << Show(live)
                              << "\n planned: " << Show(plan);
  }
  return n;
}

// The operators, lists, functions and ranges of the language, as values and as conditions,
// with faults among them.
const std::vector<std::vector<const char*>> kExpressions = {
    // Arithmetic and its precedence.
    {"1 + 2 * 3", "(1 + 2) * 3", "2 ^ 3 ^ 2", "-2 ^ 2", "2 ^ -1", "10 - 4 - 3", "12 / 4 / 3", "7 \\ 2", "-7 mod 3",
     "2 + 7 mod 4 * 2", "- - cs1", "3 - -cs2", "50%", "cs1 + cs2 = cs3"},
    // Comparisons and logic.
    {"5 = \"5\"", "\"B\" > \"a\"", "10 < \"9\"", "not cs1", "not 1 = 2 and 3 = 3", "cs1 = 1 or cs2 = 1 and cs3 = 2",
     "-1 xor cs4"},
    // Lists as conditions.
    {"any(4, cs5, 6)", "all(4, 0, cs2)", "cs5 = any[4, 5, 6]", "5 < all(cs3, 7, 8)", "any(> 5, 1, cs2, 6)",
     "9 > all(> cs1, 1, 2, 6, 7)", "any(4, 5, 6) = cs3"},
    // Brackets, text, and faults of division.
    {"((((cs2))))", "[2 + {3 * (cs1 + 1)}]", "\"a\" & cs1 + 2 & \"b\"", "2.5 & \"\"", "1 / cs9", "5 mod cs9",
     "(3 + 1 / cs9) * 2", "sqr(2 / cs9)"},
    // Ranges and numbered forms.
    {"sum(cs1 thru cs5)", "sum(cs5 thru cs2)", "count(> 25, cs1 thru cs5)", "highest(cs4 thru cs1)",
     "sum(place(4) thru place(10))", "sum(cs1 thru cs3 player2)", "sum(wins place4 thru place6)",
     "cs(cs1) + cs(cs2 - 1)", "place(cs5 + 1) + come(cs9)"},
    // The list functions over numbers, from their slots; with a text among them, from the records.
    {"count(cs1, cs2, 0, -4)", "average(> cs1, cs2, 20, cs3, cs4)", "stddev(cs1, cs2, cs3)",
     "lowest(< 30, cs5, cs1, 45, >= cs9, -2)", "highest(cs2, \"35\", 3)", "sum(>= 20, cs1, \"25\", cs3)",
     "count(> 0, cs1, \"x\", cs9)"},
    // Functions and references together.
    {"str$(cs1) & left$(\"abcdef\", cs2) & len(\"hello\")", "round(cs3 / 7, .1) + int(cs4 / 3) + abs(-cs1)",
     "# rolls since last(3.3) + % of rolls(7) + # rolls(11)", "sum(place(cs1) thru place(cs2))",
     "passline + place6 + cs(cs5)", "wins passline + losses field", "point = 0 and next roll is a comeout roll"}};

TEST(StatementPlans, LeaveWhatReducingTheRecordsLeaves) {
  TestTable t;
  t.Seat(1, "Ann", Money::Dollars(1000));
  t.Seat(2, "Bob", Money::Dollars(1000));
  std::vector<std::string> lines;
  for (const auto& group : kExpressions)
    for (const std::string e : group) {
      // A list is a condition; it can't be assigned.
      const bool list = e.find("any") != std::string::npos || e.find("all") != std::string::npos;
      if (!list) lines.push_back("cs9 = " + e);
      else lines.insert(lines.end(), {"If " + e + " Then", "EndIf"});
      lines.insert(lines.end(), {"If (" + e + ") <> cs8 Then", "EndIf"});
    }
  t.g.AutoBet.ScriptSource[1] = lines;
  t.g.ScriptActive[1] = true;
  ASSERT_TRUE(CompileActiveScripts(t.g)) << t.ui.LastText();
  for (int n = 1; n <= 5; ++n) t.g.BetAmount[1][kCheckStackRow + n] = Money::Dollars(n * 10);
  const Counts n = CompareEveryStatement(t.g, "with cs1..cs5 at 10..50");
  // Every statement but those of the two ranges whose ends a function names.
  EXPECT_EQ(n.planned, n.statements - 4);
  t.g.BetAmount[1][kCheckStackRow + 2] = Money::Dollars(-3);
  t.g.BetAmount[1][kCheckStackRow + 5] = Money::Dollars(6);
  CompareEveryStatement(t.g, "with cs2 at -3 and cs5 at 6");
}

// The example systems, all seated, through a played session: the values differ at every
// roll, the course of each statement doesn't.
TEST(StatementPlans, LeaveWhatReducingTheRecordsLeavesInEveryExampleAtEveryRoll) {
  FolderTable t;
  const auto scripts = ExampleScripts();
  ASSERT_EQ(scripts.size(), 8u);
  for (int s = 1; s <= 8; ++s) {
    t.Seat(s, "P" + std::to_string(s), Money::Dollars(-1));  // a negative bankroll allowed
    t.g.AutoBet.ScriptSource[s] = scripts[static_cast<std::size_t>(s - 1)];
    t.g.ScriptActive[s] = true;
  }
  RuleSet rules = t.g.Rules;
  rules.BetNeededToShoot = 0;  // the systems without a line bet shoot too
  ReplaceRules(t.g, rules);
  t.g.SilentMode = true;
  t.g.Dice.pendingSeed = Money::Dollars(77);
  SeedRng(t.g, true);
  ASSERT_TRUE(CompileActiveScripts(t.g)) << t.ui.LastText();
  for (int roll = 1; roll <= 300; ++roll) {
    RollDice(t.g);
    ASSERT_EQ(t.g.StopReason, "");
    const Counts n = CompareEveryStatement(t.g, ("after roll " + std::to_string(roll)).c_str());
    ASSERT_EQ(n.planned, n.statements);
  }
}

// Two tables alike but that one runs its statements by their plans and the other reduces
// each from its records, played over the same dice: whatever a plan carries out on its
// own (an assignment straight to its target, a condition read where it stands, an action
// with its target list worked out) leaves the table as the records do.
struct TwinTables {
  FolderTable planned, reduced;
  explicit TwinTables(const std::vector<std::vector<std::string>>& scripts) {
    reduced.g.AutoBet.UsePlans = false;
    for (FolderTable* t : {&planned, &reduced}) {
      for (std::size_t i = 0; i < scripts.size(); ++i) {
        const int s = static_cast<int>(i) + 1;
        t->Seat(s, "P" + std::to_string(s), Money::Dollars(-1));  // a negative bankroll allowed
        t->g.AutoBet.ScriptSource[s] = scripts[i];
        t->g.ScriptActive[s] = true;
      }
      t->Seat(8, "Bystander", Money::Dollars(500));  // another seat a script may name
      RuleSet rules = t->g.Rules;
      rules.BetNeededToShoot = 0;
      ReplaceRules(t->g, rules);
      t->g.SilentMode = true;
      t->g.Dice.pendingSeed = Money::Dollars(2026);
      SeedRng(t->g, true);
      EXPECT_TRUE(CompileActiveScripts(t->g)) << t->ui.LastText();
    }
  }
  // The game files of the two, the faults each seat's script met, and where they stopped.
  void ExpectAlike(const std::string& when) {
    const Game &a = planned.g, &b = reduced.g;
    EXPECT_TRUE(GameFileBytes(a, {}) == GameFileBytes(b, {})) << when;
    EXPECT_TRUE(a.AutoBet.FaultCount == b.AutoBet.FaultCount && a.AutoBet.FirstFaults == b.AutoBet.FirstFaults) << when;
    EXPECT_EQ(a.StopReason, b.StopReason) << when;
  }
  void Play(int rolls) {
    for (int roll = 1; roll <= rolls; ++roll) {
      RollDice(planned.g);
      RollDice(reduced.g);
      if (roll % 25 == 0 || roll == rolls) ExpectAlike("after roll " + std::to_string(roll));
    }
  }
};

TEST(StatementPlans, PlayTheExampleSystemsAsTheirRecordsDo) {
  TwinTables t(ExampleScripts());
  t.Play(400);
  EXPECT_GT(t.planned.g.AutoBet.Plans->plans.size(), 80u);
  EXPECT_TRUE(t.reduced.g.AutoBet.Plans->plans.empty());
}

// Conditions on numbers alone, which run on the numbers without the records' codes: every
// operator that can't fault, facts among amounts, joins of numbers that aren't -1 or 0.
TEST(StatementPlans, JudgeConditionsOnNumbersAsTheirRecordsDo) {
  TwinTables t({{"cs1 = cs1 + 1", "If cs1 > 4 Then cs1 = -3 : EndIf", "cs2 = cs2 + 0.25",
                 "If cs1 * 2 - 1 > cs2 ^ 2 xor not cs3 Then cs3 = cs3 + 1 : EndIf",
                 "If -cs1 + 3 >= 0 or cs2 = 1.5 and next roll is a comeout roll Then cs4 = cs4 + 1 : EndIf",
                 "If cs1 Then cs5 = cs5 + 1 : EndIf", "If 2.5 and cs2 + 0.5 Then cs6 = cs6 + 1 : EndIf",
                 "If point + cs1 <> 8 and passline player8 <= cs2 Then cs7 = cs7 + 1 : EndIf",
                 "If cs2 ^ 2 > cs1 + 2 Then cs8 = cs8 + 1 : EndIf",
                 "If place(cs1) = 0 and comeodds(cs1) <= cs2 Then cs9 = cs9 + 1 : EndIf",
                 "If csn(cs1) > -5000 or cs1 > 2 Then cs10 = cs10 + 1 : EndIf",
                 "If csn2 > -5000 or wins passline >= cs1 Then cs11 = cs11 + 1 : EndIf"}});
  t.Play(60);
  for (int n = 3; n <= 11; ++n) EXPECT_GT(t.planned.g.BetAmount[1][kCheckStackRow + n].raw, 0) << n;
}

// Assignments and target lists of every kind the shortcuts take or leave to the buffer:
// checkstacks and their names, bets through the gate, another seat's and an empty seat's
// (refused), qualifiers, a target that a call names, lists that fault or are refused part
// way, and the jumps between them.
TEST(StatementPlans, CarryOutAssignmentsAndTargetListsAsTheirRecordsDo) {
  const std::vector<std::vector<std::string>> scripts = {
      {"cs1 = cs1 + 1", "csn1 = \"n\" & str$(cs1)", "cs(cs1 mod 5 + 10) = cs1 * 2", "cs2 = cs1 / (cs1 mod 3)",
       "place6 = 6 * (cs1 mod 4)", "place8 player8 = cs1 mod 7", "cs3 player7 = 1", "passline = cs1 * 1000000",
       "cs4 thru cs6 = cs1", "If 1.5 and 3 Then cs7 = not 0.6 : EndIf",
       "If cs1 / (cs1 mod 2) > 1 Then cs8 = cs8 + 1 : EndIf"},
      {"If next roll is a comeout roll Then GoSub \"Down\"", "Else", "  Bet 5 on = 0, place5, place6, place8",
       "  Add 1 to > 5, place5, place6, < 7, place8", "  Multiply by 2 on place(cs1 mod 3 + 5)",
       "  Round up to the nearest 6 on place6, place8", "EndIf", "cs1 = cs1 + 1", "GoTo \"End\"", "\"Down\"",
       "Take down place bets", "Bet 5 on place4, place5 player7", "Add 2 to = 0, place9 player7, place10 player7",
       "Bet 5 on = \"0\", place9, place10", "Return", "\"End\""},
      {"Bet 10 on field", "Clear = 10, field, hard6", "Bet 1 on hard6, hard8, hard4 player8", "Divide by cs9 on hard6",
       "Buy the place bet on > 0, place4, place10", "Call off place6 player8", "Subtract 1 from field, cs1",
       "Add 1 to < 9, place4, < 9, place5, < 9, place6, < 9, place8, < 9, place9, < 9, place10, < 9, field, < 9, "
       "hard6, < 9, hard8"}};
  TwinTables t(scripts);
  t.Play(300);
  // Each path was taken: every script met faults, and Place 6 bets were decided.
  for (int s = 1; s <= 3; ++s) EXPECT_GT(t.planned.g.AutoBet.FaultCount[s], 0) << s;
  EXPECT_GT(t.planned.g.Stats.BetStats[kSessionScope + 2][bet::Place4 + 2][0].raw, 0);
}

}  // namespace
