// Selecting generators, the automatic seed from the time of day, the seed prompt, and
// start-up seeding.

#include "dice/seeding.h"

#include <gtest/gtest.h>

#include "dice/rng_texts.h"
#include "tests/test_support.h"

namespace {

// ---- SelectRng and the fall-back of missing generators --------------------------------

struct SelectCase {
  uint32_t mask;
  int32_t number;
  int code;
  int32_t selected;  // rngNumber afterwards, from 5
};

class SeedSelectTest : public ::testing::TestWithParam<SelectCase> {};

TEST_P(SeedSelectTest, LibraryChecksComeBeforeTheRange) {
  const SelectCase& c = GetParam();
  TestTable t;
  t.g.Dice.rngNumber = 5;
  t.g.Dice.missingRngLibraries = c.mask;
  EXPECT_EQ(SelectRng(t.g, c.number), c.code);
  EXPECT_EQ(t.g.Dice.rngNumber, c.selected);
  EXPECT_EQ(t.g.Dice.lastSeed, 12345) << "selecting does not seed";
}

INSTANTIATE_TEST_SUITE_P(SeedCodes, SeedSelectTest,
                         ::testing::Values(SelectCase{0, 8, 0, 8}, SelectCase{0, 9, -2, 5}, SelectCase{0, -1, -2, 5},
                                           SelectCase{0, 0, 0, 0},  // zero passes the range as it stands
                                           SelectCase{1, 1, -1, 5}, SelectCase{1, 6, -1, 5}, SelectCase{1, 8, -1, 5},
                                           SelectCase{1, 2, 0, 2}, SelectCase{2, 2, -1, 5}, SelectCase{2, 7, -1, 5},
                                           SelectCase{2, 1, 0, 1}, SelectCase{3, 3, 0, 3}, SelectCase{3, 9, -2, 5}));

struct RemapCase {
  uint32_t mask;
  int32_t before, after;
};

class SeedRemapTest : public ::testing::TestWithParam<RemapCase> {};

TEST_P(SeedRemapTest, MissingFirstFamilyFallsToTwoThenSecondToFour) {
  DiceSources d;
  d.missingRngLibraries = GetParam().mask;
  d.rngNumber = GetParam().before;
  RemapMissingGenerators(d);
  EXPECT_EQ(d.rngNumber, GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(SeedMasks, SeedRemapTest,
                         ::testing::Values(RemapCase{1, 1, 2}, RemapCase{1, 6, 2}, RemapCase{1, 8, 2},
                                           RemapCase{1, 7, 7}, RemapCase{2, 2, 4}, RemapCase{2, 7, 4},
                                           RemapCase{2, 1, 1}, RemapCase{3, 1, 4}, RemapCase{3, 5, 5},
                                           RemapCase{0, 6, 6}));

// ---- Automatic seeds from a fake clock ------------------------------------------------

struct AutoCase {
  int32_t rng;
  int hour, minute, second, millisecond, weekday;
  int32_t seed;
};

class SeedAutomaticTest : public ::testing::TestWithParam<AutoCase> {};

TEST_P(SeedAutomaticTest, ComesFromTheTimeOfDayAndWeekday) {
  const AutoCase& c = GetParam();
  TestTable t;
  t.clock.now = {2024, 6, 4, c.hour, c.minute, c.second, c.millisecond, c.weekday};
  ASSERT_EQ(SelectRng(t.g, c.rng), 0);
  EXPECT_TRUE(SeedRng(t.g, false));
  EXPECT_EQ(t.g.Dice.lastSeed, c.seed);
  EXPECT_EQ(t.g.Dice.pendingSeed, Money::Dollars(c.seed));
}

INSTANTIATE_TEST_SUITE_P(SeedClock, SeedAutomaticTest,
                         ::testing::Values(AutoCase{3, 12, 34, 56, 789, 3, 452967},     // 45,296,789 ms
                                           AutoCase{1, 12, 34, 56, 789, 3, 345296789},  // + 100,000,000 × Tuesday
                                           AutoCase{7, 23, 59, 59, 999, 7, 786399999},  // Saturday, last millisecond
                                           AutoCase{3, 23, 59, 59, 999, 7, 863999},     // no weekday for #3
                                           AutoCase{3, 0, 0, 1, 0, 1, 1000},            // short enough to stay whole
                                           AutoCase{2, 0, 0, 0, 0, 1, 100000000}));

// #3 can't take a seed of 0, the time of day at midnight, nor one past its limit from a
// script: seeding fails, the generator stays, the pending seed is cleared.
TEST(SeedRngTest, ForThreeMidnightOrASeedPastTheLimitFailsAndLeavesTheGenerator) {
  for (const bool scripted : {false, true}) {
    SCOPED_TRACE(scripted ? "scripted 1000000" : "midnight");
    TestTable t;
    ASSERT_EQ(SelectRng(t.g, 3), 0);
    t.g.Dice.lcgState = 4711;
    t.clock.now = {2024, 6, 4, 0, 0, 0, 0, 5};
    if (scripted) t.g.Dice.pendingSeed = Money::Dollars(1000000);
    EXPECT_FALSE(SeedRng(t.g, scripted));
    EXPECT_EQ(t.g.Dice.lcgState, 4711);
    EXPECT_EQ(t.g.Dice.lastSeed, 12345);
    EXPECT_EQ(t.g.Dice.pendingSeed.raw, 0);
    EXPECT_TRUE(t.ui.transcript.empty());
  }
}

// Seeding sets the selected generator back to the start of the seed's sequence, and
// leaves the other generators' sequences alone.
TEST(SeedRngTest, ReseedingRepeatsTheSequenceOfEachGenerator) {
  for (int rng = 1; rng <= 8; ++rng) {
    SCOPED_TRACE(rng);
    TestTable t;
    auto rolls = [&](int32_t seed) {
      EXPECT_EQ(SelectRng(t.g, rng), 0);
      t.g.Dice.pendingSeed = Money::Dollars(seed);
      EXPECT_TRUE(SeedRng(t.g, true));
      std::array<int, 12> dice{};
      for (int i = 0; i < 6; ++i) GeneratorDice(t.g.Dice, i, dice[2 * i], dice[2 * i + 1]);
      return dice;
    };
    const auto first = rolls(99);
    // Another generator seeded and used in between changes nothing for this one.
    const int other = rng == 3 ? 4 : 3;
    ASSERT_EQ(SelectRng(t.g, other), 0);
    t.g.Dice.pendingSeed = Money::Dollars(5);
    SeedRng(t.g, true);
    EXPECT_EQ(rolls(99), first);
    EXPECT_NE(rolls(100), first);
  }
}

// ---- The seed prompt -------------------------------------------------------------------

MessageReply Typed(const std::string& text) { return {kButtonOk, text, false}; }

// #3 takes seeds up to 999,999 only.
TEST(SeedRngTest, ThePromptAsksAgainUntilTheNumberFits) {
  for (const auto& [rng, typed, seed, limit] :
       {std::tuple{1, std::vector<std::string>{"0", "2147483648", "2.5", "4242"}, 4242, "2,147,483,647"},
        {3, {"1000000", "999999"}, 999999, "999,999"}}) {
    TestTable t;
    ASSERT_EQ(SelectRng(t.g, rng), 0);
    t.g.Dice.seedByUser = true;
    t.g.SilentMode = true;  // Auto-Roll stops for the prompt too
    for (const std::string& text : typed) t.ui.replies.push_back(Typed(text));
    EXPECT_TRUE(SeedRng(t.g, false));
    EXPECT_EQ(t.g.Dice.lastSeed, seed);
    ASSERT_EQ(t.ui.transcript.size(), typed.size());
    const MessageRequest& first = t.ui.transcript[0].request;
    EXPECT_EQ(first.Text, std::string("Please enter a whole number between 1 and ") + limit +
                              " to seed the random number generator:");
    EXPECT_EQ(first.Title, "Random Number Generator");
    EXPECT_EQ(first.Input, "12345");
    EXPECT_TRUE(first.Flags & msg::kCancel);
    EXPECT_EQ(t.ui.transcript[1].request.Text, "Your seed value is out of limits.\n\n" + first.Text);
  }
}

TEST(SeedRngTest, CancelChangesNothingAndSaysNothingMore) {
  TestTable t;
  t.g.Dice.seedByUser = true;
  t.g.Dice.pendingSeed = Money::Dollars(777);
  const DiceSources before = t.g.Dice;
  t.ui.replies = {{kButtonCancel, "55", false}};
  EXPECT_FALSE(SeedRng(t.g, false));
  EXPECT_EQ(t.ui.transcript.size(), 1u);
  EXPECT_EQ(t.g.Dice.pendingSeed, before.pendingSeed);
  EXPECT_EQ(t.g.Dice.lastSeed, before.lastSeed);
  EXPECT_EQ(t.g.Dice.mt.mt, before.mt.mt);
  EXPECT_EQ(t.g.Dice.mt.mti, before.mt.mti);
}

TEST(SeedRngTest, TypingTheLastSeedAgainIsAccepted) {
  TestTable t;
  t.g.Dice.seedByUser = true;
  int d1 = 0, d2 = 0, e1 = 0, e2 = 0;
  GeneratorDice(t.g.Dice, 0, d1, d2);  // the first roll after seed 12345
  t.ui.replies = {Typed("12345")};
  EXPECT_TRUE(SeedRng(t.g, false));
  GeneratorDice(t.g.Dice, 0, e1, e2);
  EXPECT_EQ(std::make_pair(e1, e2), std::make_pair(d1, d2));
}

// ---- Start-up ---------------------------------------------------------------------------

struct StartCase {
  uint32_t mask;
  int32_t selected, lastSeed;
};

class SeedStartUpTest : public ::testing::TestWithParam<StartCase> {};

// The clock stands still, so each automatic seed steps one below the one before it when
// they would be equal: #3 452967, #4 345296789, #5 ...788, #2 ...789, #1 ...788.
TEST_P(SeedStartUpTest, SeedsEverySelectableGeneratorEndingAtOne) {
  const StartCase& c = GetParam();
  TestTable t;
  t.g.Dice.missingRngLibraries = c.mask;
  t.g.Dice.seedByUser = true;
  t.clock.now = {2024, 6, 4, 12, 34, 56, 789, 3};
  SeedAtStartUp(t.g);
  const DiceSources& d = t.g.Dice;
  EXPECT_EQ(d.rngNumber, c.selected);
  EXPECT_EQ(d.lastSeed, c.lastSeed);
  EXPECT_TRUE(d.ran1.initialised && d.ran2.initialised);
  EXPECT_EQ(d.cokus.state.mti == Mt19937::N + 1, (c.mask & 2U) != 0) << "#2 seeded when it can be";
  EXPECT_TRUE(t.ui.transcript.empty()) << "nobody is asked at start-up";
  EXPECT_TRUE(d.seedByUser);
}

INSTANTIATE_TEST_SUITE_P(SeedMasks, SeedStartUpTest,
                         ::testing::Values(StartCase{0, 1, 345296788}, StartCase{1, 2, 345296789},
                                           StartCase{3, 5, 345296788}));

// ---- Texts -------------------------------------------------------------------------------

TEST(SeedTextsTest, MissingLibrariesNoticeJoinsItsPartsByMask) {
  EXPECT_EQ(MissingLibrariesNotice(0), "");
  const std::string mt = MissingLibrariesNotice(1), cokus = MissingLibrariesNotice(2), both = MissingLibrariesNotice(3);
  EXPECT_EQ(mt.rfind("Unable to locate a support file called MT19937AR.DLL\nThis file is needed to "
                     "operate random number generators #1, #6, and #8.\n\nThis problem usually",
                     0),
            0u);
  EXPECT_EQ(cokus.find("MT19937AR"), std::string::npos);
  EXPECT_NE(both.find("#1, #6, and #8.\n\nUnable to locate a support file called COKUS.DLL\nThis file is "
                      "needed to operate random number generators #2 and #7.\n\nThis problem"),
            std::string::npos);
  EXPECT_NE(both.find("desktop to create a shortcut.\n\nDon't worry"), std::string::npos);
  EXPECT_NE(both.find("sound files.\n\nA better solution"), std::string::npos);
}

}  // namespace
