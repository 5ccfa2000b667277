#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "autobet/compiler.h"
#include "tests/autobet/records.h"

namespace {

using namespace records;

// The block keywords and labels of a compiled script in order, each jump shown as ">k",
// k being the position in this same list of the record it jumps to. Positions rather
// than record indices keep the cases readable whatever the earlier passes insert.
std::string Links(const std::vector<TokenRecord>& records) {
  std::vector<std::size_t> marks;
  for (std::size_t i = 0; i < records.size(); ++i)
    if ((records[i].code >= 1 && records[i].code <= 19) || records[i].code == kCodeLabel) marks.push_back(i);
  auto position = [&](double target) {
    for (std::size_t k = 0; k < marks.size(); ++k)
      if (static_cast<double>(marks[k]) == target) return std::to_string(k);
    return std::string("?") + std::to_string(target);
  };
  std::string out;
  for (std::size_t i : marks) {
    const TokenRecord& r = records[i];
    static const std::map<int, const char*> names = {
        {1, "IF"},    {9, "THEN"},   {10, "ELSE"}, {11, "ELSEIF"}, {12, "ENDIF"},  {13, "RETURN"},
        {14, "GOTO"}, {15, "GOSUB"}, {16, "DO"},   {17, "LOOP"},   {18, "EXITDO"}, {kCodeLabel, "LABEL"}};
    if (!out.empty()) out += ' ';
    out += names.count(r.code) ? names.at(r.code) : std::to_string(r.code);
    if (r.code == kCodeGoto || r.code == kCodeGosub)
      out += ">" + (i + 1 < records.size() ? position(records[i + 1].value) : std::string("none"));
    else if (r.code != kCodeLabel && r.value != 0) out += ">" + position(r.value);
  }
  return out;
}

struct LogicCase {
  std::vector<std::string> lines;
  const char* links;  // the linked shape
};

std::ostream& operator<<(std::ostream& os, const LogicCase& c) { return records::PrintScript(os, c.lines); }

LogicCase Linked(std::vector<std::string> lines, const char* links) { return {std::move(lines), links}; }

class CompileLogicTest : public testing::TestWithParam<LogicCase> {};

TEST_P(CompileLogicTest, LinksBlocksAndJumps) {
  const LogicCase& c = GetParam();
  AutoBetProgram program;
  program.ScriptSource[1] = c.lines;
  const CompileFault fault = CompileAutobets(program, 1, {});
  EXPECT_EQ(fault.message, "");
  EXPECT_EQ(Links(program.ScriptRecords), c.links);
}

const char* const kAfterElse =
    "ELSEIF out of position.\nCannot be placed after ELSE within the same IF/THEN statement.";

INSTANTIATE_TEST_SUITE_P(
    Blocks, CompileLogicTest,
    testing::Values(
        // THEN jumps to its ELSE, ELSEIF or ENDIF; ELSE and ELSEIF to the ENDIF.
        Linked({"If 2 > 1 Then", "cs1 = 1", "EndIf"}, "IF THEN>2 ENDIF"),
        Linked({"If 2 > 1 Then", "Else", "EndIf"}, "IF THEN>2 ELSE>3 ENDIF"),
        Linked({"If 2 > 1 Then : cs1 = 1", "ElseIf 3 > 1 Then", "ElseIf 4 > 1 Then", "Else", "EndIf"},
               "IF THEN>2 ELSEIF>7 THEN>4 ELSEIF>7 THEN>6 ELSE>7 ENDIF"),
        Linked({"If 1 < 2 Then", "If 2 > 1 Then", "Else", "EndIf", "Else", "EndIf"},
               "IF THEN>6 IF THEN>4 ELSE>5 ENDIF ELSE>7 ENDIF"),
        Linked({"If 2 > 1 Then cs1 = 1 : Else cs1 = 2 : EndIf"}, "IF THEN>2 ELSE>3 ENDIF"),
        Linked({"If", "2 > 1", "3 > 1", "Then", "EndIf"}, "IF THEN>2 ENDIF"),
        // DO and LOOP point at each other; EXITDO at its own LOOP, not an outer one.
        Linked({"Do", "If 2 > 1 Then ExitDo", "EndIf", "Loop"}, "DO>5 IF THEN>4 EXITDO>5 ENDIF LOOP>0"),
        Linked({"Do", "ExitDo", "Do : ExitDo : Loop", "ExitDo", "Loop"},
               "DO>6 EXITDO>6 DO>4 EXITDO>4 LOOP>2 EXITDO>6 LOOP>0"),
        Linked({"If 2 > 1 Then", "Do : Loop", "Else", "Do : ExitDo : Loop", "EndIf"},
               "IF THEN>4 DO>3 LOOP>2 ELSE>8 DO>7 EXITDO>7 LOOP>5 ENDIF"),
        // GOTO and GOSUB reach the label's record, whatever the case or surrounding blanks.
        Linked({"\"Top\"", "GoTo \"make bets\"", "\"Make Bets\"", "GoSub \" TOP\"", "Return"},
               "LABEL GOTO>2 LABEL GOSUB>0 RETURN"),
        Linked({"100", "GoTo 100.0 : GoSub 100", "1.5", "GoTo 1.50"}, "LABEL GOTO>0 GOSUB>0 LABEL GOTO>3"),
        Linked({"If 2 > 1 Then GoTo \"x\" : Else GoTo \"x\"", "EndIf", "\"x\""},
               "IF THEN>3 GOTO>6 ELSE>5 GOTO>6 ENDIF LABEL"),
        Linked({"cs1 = 1 : GoTo \"x\"", "\"x\""}, "GOTO>1 LABEL"), Linked({"bet 5 on field"}, "")));

// One case of each message is in compile_messages_test.cpp; these are the further ones.
INSTANTIATE_TEST_SUITE_P(
    LogicFaults, CompileScriptTest,
    testing::Values(Faulty({"If 2 > 1 Then Then", "EndIf"}, "THEN out of position.", 1, 14, 1, 18),
                    Faulty("If 2 > 1 Else", "Expected THEN before ELSE.", 9, 13),
                    Faulty({"If 2 > 1 Then", "Else", "Else", "EndIf"}, "Expected THEN before ELSE.", 3, 0, 3, 4),
                    // The outer IF's THEN is not this IF's: a second ELSE is refused even when nested.
                    Faulty({"If 1 < 2 Then", "If 2 > 1 Then", "Else", "Else", "EndIf", "EndIf"},
                           "Expected THEN before ELSE.", 4, 0, 4, 4),
                    Faulty("If 2 > 1 ElseIf 3 > 1 Then", "ELSEIF out of position.", 9, 15),
                    Faulty({"If 1 < 2 Then", "If 2 > 1 Then", "Else", "ElseIf 3 > 1 Then"}, kAfterElse, 4, 0, 4, 6),
                    Faulty("If 2 > 1 Then : EndIf : EndIf", "Unassociated ENDIF.", 24, 29),
                    Faulty("Do : Loop : Loop", "Missing DO statement or LOOP statement out of position.", 12, 16),
                    Faulty("Do : Loop : ExitDo", "EXIT DO statement outside of DO/LOOP.", 12, 18),
                    // GOTO and GOSUB.
                    Faulty({"If 2 > 1 GoSub 100", "100"}, "GOSUB out of position.", 1, 3, 1, 18),
                    Faulty("GoSub : cs1 = 1", "GOSUB missing reference.", 0, 5),
                    Faulty({"100", "GoTo 200"}, "Label \"200\" not found.", 2, 0, 2, 8),
                    Refused("GoTo \"\"", "Label \"\" not found."),
                    // A string with company is no label, even with the right text.
                    Faulty("GoTo \"x\" : cs1 = \"x\"", "Label \"x\" not found.", 0, 8),
                    // What is still open at the end, at the keyword that opened it.
                    Faulty({"If 2 > 1 Then", "ElseIf 3 > 1"}, "Missing THEN statement.", 2, 0, 2, 6),
                    Faulty({"Do", "If 2 > 1 Then", "Else"}, "Missing ENDIF statement.", 2, 0, 2, 2),
                    Faulty({"Do", "If 2 > 1 Then", "EndIf"}, "Missing LOOP statement.", 1, 0, 1, 2)));

// ---- The records as the interpreter reads them ----

TEST(CompileLogicRecords, JumpTargetsAreRecordIndices) {
  AutoBetProgram program;
  program.ScriptSource[1] = {"Do : GoTo \"x\"", "Loop", "\"x\""};
  ASSERT_FALSE(CompileAutobets(program, 1, {}).Failed());
  const std::vector<TokenRecord> expected = {Head(1), M(1, 0), Jump(16, 7), M(1, 5), Op(kCodeGoto),
                                             S(9),    M(2, 0), Jump(17, 2), M(3, 0), L(2)};
  EXPECT_EQ(program.ScriptRecords, expected);
  const std::vector<StringEntry> strings = {{"x", 0}, {"x", 9}};
  EXPECT_EQ(program.ScriptStrings, strings);
}

TEST(CompileLogicRecords, LabelsAreFoundWhereTheirRecordsStandNow) {
  // As left by passes that inserted records after the labels were marked at 2 and 4.
  std::vector<TokenRecord> records = {Head(1), M(1, 0),        V(201), P(1),    M(2, 0), L(1),
                                      M(3, 0), Op(kCodeGosub), S(3),   M(4, 0), L(2)};
  std::vector<StringEntry> strings = {{"a", 2}, {"b", 4}, {"A", 0}};
  const std::vector<std::string> lines = {"cs1", "\"a\"", "gosub \"A\"", "\"b\""};
  ASSERT_FALSE(CompileLogic(records, strings, lines).Failed());
  EXPECT_EQ(records[8], (TokenRecord{kCodeString, 5}));
  const std::vector<StringEntry> expected = {{"a", 5}, {"b", 10}, {"A", 0}};
  EXPECT_EQ(strings, expected);
}

TEST(CompileLogicRecords, JoinedSeatsKeepTheirOwnTargets) {
  AutoBetProgram program;
  program.ScriptSource[1] = {"\"a\"", "Do : Loop"};
  program.ScriptSource[2] = {"\"a\"", "Do : GoTo \"a\" : Loop"};
  SeatFacts seats;
  seats.active = {true, true};
  ASSERT_FALSE(CompileALLAutobets(program, 0, seats).Failed());
  // Seat 2 starts at record 7; its own label "a" stands at 9.
  EXPECT_EQ(Links(program.ProgramRecords), "LABEL DO>2 LOOP>1 LABEL DO>6 GOTO>3 LOOP>4");
  EXPECT_EQ(program.ProgramRecords[14], (TokenRecord{kCodeString, 9}));
}

// ---- Auto-indent of the editor's lines ----

struct IndentCase {
  std::vector<std::string> lines, indented;
  std::vector<int> depths;
};

class CompileLogicIndent : public testing::TestWithParam<IndentCase> {};

// Runs the chain up to the linking pass with the editor's lines as the source.
CompileFault LinkWithIndent(std::vector<std::string>& lines, std::vector<TokenRecord>& records,
                            std::vector<int>& depths) {
  std::vector<StringEntry> strings;
  CompileFault fault = TokeniseScript(1, lines, {}, records, strings);
  if (!fault.Failed()) fault = CompileMisc(records, strings, lines);
  if (!fault.Failed()) fault = CompileLogic(records, strings, lines, &lines, &depths);
  return fault;
}

TEST_P(CompileLogicIndent, ThreeBlanksPerBlockDepth) {
  std::vector<std::string> lines = GetParam().lines;
  std::vector<TokenRecord> records;
  std::vector<int> depths;
  const CompileFault fault = LinkWithIndent(lines, records, depths);
  ASSERT_FALSE(fault.Failed()) << fault.message;
  EXPECT_EQ(lines, GetParam().indented);
  EXPECT_EQ(depths, GetParam().depths);
}

INSTANTIATE_TEST_SUITE_P(
    Editor, CompileLogicIndent,
    testing::Values(
        IndentCase{
            {"If 2 > 1 Then", "cs1 = 1", "   ElseIf 3 > 1 Then", "cs1 = 2", "Else", "Do", "' count up", "cs1 = cs1 + 1",
             "If cs1 > 5 Then ExitDo", "EndIf", "Loop", "  ", "EndIf", "cs2 = 1"},
            {"If 2 > 1 Then", "   cs1 = 1", "ElseIf 3 > 1 Then", "   cs1 = 2", "Else", "   Do", "      ' count up",
             "      cs1 = cs1 + 1", "      If cs1 > 5 Then ExitDo", "      EndIf", "   Loop", "", "EndIf", "cs2 = 1"},
            {0, 1, 0, 1, 0, 1, 2, 2, 2, 2, 1, 1, 0, 0}},
        // Keywords alone on their lines stand one level out of what they open.
        IndentCase{{"If", "2 > 1", "Then", "cs1 = 1", "EndIf"},
                   {"If", "   2 > 1", "Then", "   cs1 = 1", "EndIf"},
                   {0, 1, 0, 1, 0}},
        // Blocks within one line leave the depth as it was; a line that closes stands out.
        IndentCase{{"  If 2 > 1 Then cs1 = 1 : EndIf", "Do : Loop", "If 2 > 1 Then", "cs1 = 1 : EndIf"},
                   {"If 2 > 1 Then cs1 = 1 : EndIf", "Do : Loop", "If 2 > 1 Then", "cs1 = 1 : EndIf"},
                   {0, 0, 0, 0}},
        IndentCase{
            {"Do", "      Do", "Loop : Loop", "cs1 = 1"}, {"Do", "   Do", "Loop : Loop", "cs1 = 1"}, {0, 1, 0, 0}}));

TEST(CompileLogicIndentColumns, StatementColumnsFollowTheIndentedText) {
  std::vector<std::string> lines = {"If 2 > 1 Then", "      cs1 = 1 : cs2 = 2", "EndIf"};
  std::vector<TokenRecord> records;
  std::vector<int> depths;
  ASSERT_FALSE(LinkWithIndent(lines, records, depths).Failed());
  ASSERT_EQ(lines[1], "   cs1 = 1 : cs2 = 2");
  std::vector<double> columns;
  for (const TokenRecord& r : records)
    if (r.code == 102) columns.push_back(r.value);
  EXPECT_EQ(columns, (std::vector<double>{0, 13}));
  EXPECT_EQ(lines[1].substr(13, 3), "cs2");
}

TEST(CompileLogicIndentColumns, AFaultyScriptKeepsItsLines) {
  std::vector<std::string> lines = {"If 2 > 1 Then", "cs1 = 1"};
  const std::vector<std::string> before = lines;
  std::vector<TokenRecord> records;
  std::vector<int> depths;
  EXPECT_EQ(LinkWithIndent(lines, records, depths).message, "Missing ENDIF statement.");
  EXPECT_EQ(lines, before);
  EXPECT_TRUE(depths.empty());
}

}  // namespace
