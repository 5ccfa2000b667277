#include "autobet/tokens.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "storage/language_text.h"

namespace {

// ---- NormaliseSpacing ----

struct SpacingCase {
  const char* source;
  const char* normalised;
};

class NormaliseSpacingTest : public testing::TestWithParam<SpacingCase> {};

TEST_P(NormaliseSpacingTest, SpacesOperatorsOutsideQuotesOnly) {
  const SpacingCase& c = GetParam();
  EXPECT_EQ(NormaliseSpacing(c.source), c.normalised);
  // The editor normalises lines it has normalised before; nothing may drift.
  EXPECT_EQ(NormaliseSpacing(c.normalised), c.normalised);
}

INSTANTIATE_TEST_SUITE_P(
    NormaliseLines, NormaliseSpacingTest,
    testing::Values(SpacingCase{"Bet 5 on Field", " Bet 5 on Field"}, SpacingCase{"x=cs1+4", " x = cs1 + 4"},
                    SpacingCase{"if x<>5 then", " if x <> 5 then"},
                    SpacingCase{"a<=b:a=<b:a>=b:a=>b", " a <= b : a =< b : a >= b : a => b"},
                    SpacingCase{"a==b", " a = = b"},  // not one of the joined pairs
                    SpacingCase{"Any[4,5,6,8,9,10]", " Any [ 4 , 5 , 6 , 8 , 9 , 10 ]"},
                    SpacingCase{"bet $5.00 on place(6)", " bet $ 5 on place ( 6 )"},
                    SpacingCase{"x = 007 + 1e3 + .50 - 2.", " x = 7 + 1000 + 0.5 - 2"},
                    SpacingCase{"hop(1.30)", " hop ( 1.3 )"}, SpacingCase{"x-1", " x - 1"},
                    SpacingCase{"bet $5:x=left$(s,1)&chr$(9)", " bet $ 5 : x = left$ ( s , 1 ) & chr$ ( 9 )"},
                    SpacingCase{"cs5. = 2.50", " cs5. = 2.5"},  // only whole numbers are rewritten
                    SpacingCase{"show message \"a+b  =  5.00\"", " show message \"a+b  =  5.00\""},
                    SpacingCase{"x=1 ' a+b 5.00 \"q", " x = 1 ' a+b 5.00 \"q"},
                    SpacingCase{"say \"it's\" ' 1+1", " say \"it's\" ' 1+1"}, SpacingCase{"   bet 5   ", " bet 5"},
                    SpacingCase{"   ", ""}));

// ---- Lines through the table ----

struct TranslateCase {
  const char* source;
  const char* words;
};

class TokenTranslateTest : public testing::TestWithParam<TranslateCase> {};

TEST_P(TokenTranslateTest, GivesTheseWords) {
  const TranslateCase& c = GetParam();
  std::vector<StringEntry> strings;
  CompileFault fault;
  EXPECT_EQ(TranslateLine(c.source, {}, strings, fault), c.words);
  EXPECT_FALSE(fault.Failed()) << fault.message;
}

INSTANTIATE_TEST_SUITE_P(
    TokenPhrases, TokenTranslateTest,
    testing::Values(TranslateCase{"Bet 5 on the Field", " A481 5 L057 V049 "},
                    TranslateCase{"bet $5 on a field", " A481 5 L057 V049 "},
                    TranslateCase{"If PassLine > 0 Then Bet 10 on Place6", " L001 V043 L053 0 L009 A481 10 L057 V033 "},
                    // Later keys built on earlier replacements.
                    TranslateCase{"Stop AutoRoll/HyperDrive", " A115 "},
                    TranslateCase{"stop autoroll / hyperdrive", " A115 "},
                    TranslateCase{"dontcome(4) + dontcome", " F002 L020 4 L021 L065 V048 "},
                    TranslateCase{"if not not field then", " L001 L070 L070 V049 L009 "},  // keys share a blank
                    TranslateCase{"chisquare(3)", " F034 L020 3 L021 "}, TranslateCase{"chisquare", " V4510 "},
                    TranslateCase{"left$(date$,2) & tab", " F801 L020 S-01 L075 2 L021 L074 F811 L020 9 L021 "},
                    TranslateCase{"total$ + current $ + high$ hard6", " Y22 L065 Y34 L065 Y23 V054 "},
                    TranslateCase{"x = Input()", " x L050 F125 L020 S000 L021 "},
                    TranslateCase{"x = Input$[ ]", " x L050 F825 L020 S000 L021 "},
                    TranslateCase{"a point is established on 6", " V5500 L050 6 "},
                    TranslateCase{"total wins last session field", " Y0 X2 H4 V049 "},
                    TranslateCase{"# rolls since last hard6", " V4505 V054 "},
                    TranslateCase{"number of rolls since last hard6", " V4505 V054 "},
                    TranslateCase{"50% of bankroll", " 50 L061 .01 L061 V1301 "},
                    // Rows kept as they stand.
                    TranslateCase{"die2 face3", " X34 5 "}, TranslateCase{"two + one", " V057 L065 1 "},
                    TranslateCase{"true or false", " -1 L072 0 "}, TranslateCase{"answer is yes", " V5697 L050 6 "},
                    TranslateCase{"field exists", " V049 L051 0 "},
                    TranslateCase{"field does not exist", " V049 L050 0 "},
                    TranslateCase{"dice roll file next roll from roll", " V5006 S-15 "},
                    // Checkstacks: prefix keys, the generated rows and the function forms.
                    TranslateCase{"checkstack5 = 1", " V205 L050 1 "},
                    TranslateCase{"CS99 + csn0 + cs name7", " V299 L065 V800 L065 V807 "},
                    TranslateCase{"cs5.", " V205. "}, TranslateCase{"checkstacks", " V980 "},
                    TranslateCase{"CS(5) & CSN(5)", " F021 L020 5 L021 L074 F800 L020 5 L021 "},
                    TranslateCase{"  ' only a comment", ""}));

// ---- Whole scripts to records ----

std::vector<TokenRecord> Tokenise(const std::vector<std::string>& lines, std::vector<StringEntry>& strings,
                                  CompileFault& fault, const std::vector<std::string>& names = {}) {
  std::vector<TokenRecord> records;
  fault = TokeniseScript(3, lines, names, records, strings);
  return records;
}

TEST(TokeniseScript, MarksStatementsAtTheirSourceColumns) {
  std::vector<StringEntry> strings;
  CompileFault fault;
  const auto records =
      Tokenise({"If field > 5 Then", "", "  Bet 5 on Field : EndIf", "' note", "cs5. = -1"}, strings, fault);
  ASSERT_FALSE(fault.Failed()) << fault.message;
  // clang-format off
  const std::vector<TokenRecord> expected = {
      {-3, 3},
      {101, 0}, {1, 0}, {101, 3}, {-11, 49}, {53, 0}, {-31, 5}, {101, 13}, {9, 0},
      // The marker after Then would end the line empty: the next line's marker stands for it.
      {103, 0}, {-61, 481}, {-31, 5}, {57, 0}, {-11, 49}, {103, 19}, {12, 0},
      {105, 0}, {-11, 205}, {50, 0}, {66, 0}, {-31, 1}
  };
  // clang-format on
  EXPECT_EQ(records, expected);
}

TEST(TokeniseScript, PoolsStringsInOrderAndKeepsTheirCase) {
  std::vector<StringEntry> strings;
  CompileFault fault;
  const auto records =
      Tokenise({"Show Message \"The A Field\" & \"\"", "\"Make bets\"", "cs1 = \"it's\" ' \"not\""}, strings, fault);
  ASSERT_FALSE(fault.Failed()) << fault.message;
  const std::vector<StringEntry> pool = {{"The A Field", 0}, {"Make bets", 0}, {"it's", 0}};
  EXPECT_EQ(strings, pool);
  const std::vector<TokenRecord> expected = {{-3, 3},  {101, 0}, {-61, 210}, {-51, 1},   {74, 0}, {-51, 0},
                                             {102, 0}, {-51, 2}, {103, 0},   {-11, 201}, {50, 0}, {-51, 3}};
  EXPECT_EQ(records, expected);
}

TEST(TokeniseScript, PoolIndexesHaveAtLeastThreeDigits) {
  std::vector<StringEntry> strings;
  CompileFault fault;
  std::string line = "show message ";
  for (int i = 0; i < 1000; ++i) line += "\"s\" & ";
  line += "\"last\"";
  EXPECT_EQ(TranslateLine("x \"a\"", {}, strings, fault), " x S001 ");
  strings.clear();
  const std::string words = TranslateLine(line, {}, strings, fault);
  ASSERT_EQ(strings.size(), 1001u);
  EXPECT_NE(words.find(" S009 L074 S010 "), std::string::npos);
  EXPECT_NE(words.find(" S999 L074 S1000 L074 S1001 "), std::string::npos);
}

struct FaultCase {
  std::vector<std::string> lines;
  const char* message;
  int line, firstColumn, lastColumn;
};

class TokeniseFaultTest : public testing::TestWithParam<FaultCase> {};

TEST_P(TokeniseFaultTest, StopsAtTheFirstFaultWithItsRange) {
  const FaultCase& c = GetParam();
  std::vector<StringEntry> strings;
  CompileFault fault;
  const auto records = Tokenise(c.lines, strings, fault);
  EXPECT_EQ(fault.message, c.message);
  EXPECT_EQ(fault.firstLine, c.line);
  EXPECT_EQ(fault.lastLine, c.line);
  EXPECT_EQ(fault.firstColumn, c.firstColumn);
  EXPECT_EQ(fault.lastColumn, c.lastColumn);
  EXPECT_TRUE(records.empty());
  EXPECT_TRUE(strings.empty());
}

// One case of each message is in compile_messages_test.cpp.
INSTANTIATE_TEST_SUITE_P(
    TokenFaults, TokeniseFaultTest,
    testing::Values(FaultCase{{"bet 5 on field", "show message \"Hi there"}, "Missing quotation mark.", 2, 13, 22},
                    FaultCase{{"x = \"a\" ' \"b"}, "Unknown or misplaced element:\nx", 1, 0, 1},
                    FaultCase{{"bet 5 on field:bet 5 on hardd6"}, "Unknown or misplaced element:\nhardd6", 1, 24, 30}));

TEST(TokeniseScript, PlayerNamesGiveTheirSeats) {
  const std::vector<std::string> names = {"Alice", "", "Mary Ann", "", "", "", "", "Zed"};
  std::vector<StringEntry> strings;
  CompileFault fault;
  EXPECT_EQ(TranslateLine("bet 5 on field ALICE", names, strings, fault), " A481 5 L057 V049 P1 ");
  EXPECT_EQ(TranslateLine("wins mary ann + wins zed", names, strings, fault), " X2 P3 L065 X2 P8 ");
  // Inside quotes a name is text.
  EXPECT_EQ(TranslateLine("show message \"Alice\"", names, strings, fault), " A210 S001 ");
  // Without the names the same words are unknown.
  EXPECT_EQ(TranslateLine("wins zed", {}, strings, fault), " X2 zed ");
  const auto records = Tokenise({"wins alice"}, strings, fault, {"", "Alice"});
  EXPECT_EQ(records, (std::vector<TokenRecord>{{-3, 3}, {101, 0}, {-15, 2}, {-13, 2}}));
}

// ---- The reserved-word probe ----

struct ProbeCase {
  const char* name;
  int text;  // 0 accepted, else the language text of the refusal
};

class ReservedWordProbeTest : public testing::TestWithParam<ProbeCase> {};

TEST_P(ReservedWordProbeTest, RefusesNamesTheScriptsCouldNotTellApart) {
  const ProbeCase& c = GetParam();
  for (int language : {kEnglish, kGerman}) {
    std::string probe = c.name;
    const std::string message = ProbeReservedWord(c.name, language, probe);
    if (c.text == 0) {
      EXPECT_EQ(message, "");
      EXPECT_EQ(probe, c.name);
      continue;
    }
    EXPECT_EQ(probe, kReservedWordMark);
    if (c.text == 7) EXPECT_EQ(message, LanguageText(language, 7));
    else EXPECT_EQ(message, "\"" + std::string(c.name) + "\"" + std::string(LanguageText(language, 8)));
  }
}

INSTANTIATE_TEST_SUITE_P(TokenReservedNames, ReservedWordProbeTest,
                         testing::Values(ProbeCase{"Alice", 0}, ProbeCase{"Mary Ann", 0}, ProbeCase{"Big Bob", 8},
                                         ProbeCase{"Tom", 0}, ProbeCase{"Ann", 0}, ProbeCase{"123", 7},
                                         ProbeCase{" 2.5 ", 7}, ProbeCase{"Field", 8}, ProbeCase{"Lucky Seven", 8},
                                         ProbeCase{"Jean-Luc", 8}, ProbeCase{"Hourglass", 8}, ProbeCase{"Player1", 8},
                                         ProbeCase{"cs12", 8}, ProbeCase{"...", 8}, ProbeCase{"12!", 8}));

// ---- The table as a whole ----

TEST(TokenTable, NoReplacementBringsBackItsOwnKeyAndThePlayersFit) {
  // A row is applied while its key occurs; one that re-creates its key would never end.
  for (const TokenRow& row : TokenTable()) EXPECT_EQ(row.replacement.find(row.key), std::string_view::npos) << row.key;
  EXPECT_LE(TokenTable().size() + kPlayerSeats, static_cast<std::size_t>(kTokenTableRoom));
}

}  // namespace
