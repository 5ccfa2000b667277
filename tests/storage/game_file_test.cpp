// The game file: the default game against a file built by hand from the record table,
// a played table saved, opened and saved again, and every corrupt form refused with the
// table exactly as it was.

#include "storage/game_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <random>

#include "autobet/script_files.h"
#include "automation/auto_roll.h"
#include "dice/roll_files.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"
#include "storage/fixed_record.h"
#include "storage/rule_validation.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

// The expected file, record by record, as the layout table gives it.
struct Layout {
  Bytes bytes;
  unsigned char* Record() {
    bytes.resize(bytes.size() + 256, 0);
    return bytes.data() + bytes.size() - 256;
  }
  void Text(const std::string& text, const std::string& date = "", int width = 200) {
    unsigned char* r = Record();
    std::memset(r, ' ', 256);
    std::memcpy(r, text.data(), text.size());
    std::memcpy(r + width, date.data(), date.size());
  }
  void Words(const std::vector<int32_t>& words) {
    for (size_t i = 0; i < words.size(); ++i) {
      if (i % 64 == 0) Record();
      PutInt32(bytes.data() + bytes.size() - 256 + (i % 64) * 4, words[i]);
    }
  }
  void Wide(const std::vector<int64_t>& values) {
    for (size_t i = 0; i < values.size(); ++i) {
      if (i % 32 == 0) Record();
      PutInt64(bytes.data() + bytes.size() - 256 + (i % 32) * 8, values[i]);
    }
  }
  void Zeros(int records) {
    for (int k = 0; k < records; ++k) Record();
  }
};

int32_t FloatBits(float f) {
  int32_t b;
  std::memcpy(&b, &f, 4);
  return b;
}

constexpr int64_t kOne = 10000, kTrue = -10000;

TEST(GameFile, DefaultGameMatchesTheRecordTable) {
  FolderTable t;
  const Game& g = t.g;
  GameCompanions c;
  c.rollHistory = {"x - roll history.rol", "2026-01-02 03:04:05"};
  c.hotKeysFile = {"Hot-keys.hky", ""};
  c.eventsLog = {"Events Log.txt", ""};
  Layout f;
  f.Text("DiceHall Pro Game File, Data Format 3.0");
  f.Zeros(1);  // 2: main window and its windows
  std::vector<int32_t> report(64, 0);
  report[25] = FloatBits(0.36f);
  f.Words(report);                           // 3: report windows
  f.Zeros(2);                                // 4, 5: frmRolls, table views
  for (int k = 6; k <= 11; ++k) f.Text("");  // last folders
  for (const char* text : {"DiceHall Online", "Host", "", "", ""}) f.Text(text);
  f.Words({-9999999, 9999999, 8, 2, -1, -1, 10, 0, 0, 0, 0, 0, 0});  // 17
  std::vector<int32_t> table(62, 0);                                 // 18
  table[8] = 3, table[9] = 4, table[10] = g.Dice.lcgState, table[11] = g.Dice.lastSeed;
  f.Words(table);
  f.Zeros(1);                                             // 19
  f.Text("x - roll history.rol", "2026-01-02 03:04:05");  // 20
  for (int k = 21; k <= 23; ++k) f.Text("");
  f.Text("Hot-keys.hky");
  f.Text("Events Log.txt");
  f.Words({0, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 0});  // 26
  f.Wide({0,     0,         0,         0,         0,         0,     120 * kOne,
          kTrue, kTrue,     0,         0,         0,         0,     0,
          0,     15 * kOne, 10 * kOne, 10 * kOne, 10 * kOne, kTrue, g.Dice.rngNumber * kOne,
          0,     0,         11 * kOne, kOne,      0,         0,     36 * kOne});  // 27
  f.Wide({kOne, kOne, 1000 * kOne, 5000 * kOne, 3000 * kOne, 3 * kOne, 4 * kOne, 5 * kOne, 0,    12 * kOne,
          500,  0,    kTrue,       500,         0,           kTrue,    kTrue,    kOne,     kOne, 0});  // 28
  ASSERT_EQ(f.bytes.size(), 28u * 256);
  RuleSet d;
  SetDefaultRules(d);
  std::vector<int32_t> comp, house;
  for (int b = 0; b < 200; ++b) {
    comp.push_back(b <= kBets && d.CompBets[b] ? -1 : 0);
    house.push_back(b <= kBets && d.WorkOnComeOut[b][0] ? -1 : 0);
  }
  f.Words(comp);
  f.Wide({0, d.CompsUseTrueProbs ? kTrue : 0, d.CompRate.raw, 0, 0, 0, 0, 0, 100 * kOne, 0, kOne, 5 * kOne, 25 * kOne,
          100 * kOne, 500 * kOne});
  auto payoffs = [&](const auto& rows, int first, int last) {
    std::vector<int64_t> v;
    for (Money PayoffRow::*field : {&PayoffRow::PayoffPay, &PayoffRow::PayoffToFor, &PayoffRow::PayoffFor})
      for (int i = first; i <= last; ++i) v.push_back(i < int(rows.size()) ? (rows[i].*field).raw : 0);
    f.Wide(v);
  };
  payoffs(d.BetPayoff, 0, 199);
  payoffs(d.SevenPointSevenPayoff, 1, 2);
  payoffs(d.MidwayPayoff, 1, 5);
  payoffs(d.HotRollerPayoff, 1, 7);
  payoffs(d.SharpShooterPayoff, 1, 11);
  payoffs(d.RideLinePayoff, 1, 12);
  payoffs(d.FirePayoff, 1, 6);
  payoffs(d.FieldPayoff, 1, 21);
  f.Zeros(2);  // table colours, textures
  f.Words(house);
  // Statistics of a game that never rolled: rolls since each kind all 0.
  f.Zeros(64 + 3 + 283 + 24 + 6);
  f.Zeros(2);                                        // frmRollTotals
  f.Text("", "", 256);                               // caption setting
  f.Words({0, 0, 1, 0, 12, 0, 1, 0, 0, 0, 1, 150});  // main settings
  f.Zeros(1);
  f.Text("Roll# (Die1.Die2) Total", "", 256);
  f.Zeros(1);                                // script panel
  f.Wide({0, kOne, 500 * kOne, 327680, 0});  // Auto-Stop, delay 1 s, the ATM amount, Rnd's seed
  f.Words(std::vector<int32_t>(36, 2778));
  std::vector<int32_t> sides = {2778, 5556, 8333, 11111, 13889, 16667, 13889, 11111, 8333, 5556, 2778};
  sides.resize(23, 16667);
  sides.resize(36, 0);
  f.Words(sides);
  f.Zeros(1);  // no cell locked
  EXPECT_EQ(f.bytes.size(), 459u * 256);
  // Each player adds one block: header, name, script, two files, money, 3 x 10 bets, 7
  // contract, vig, 13 streaks, 8 working, 100 texts, 33 tallies, 3 x 188 bet statistics,
  // 2 come base, 8 bankroll, last.
  FolderTable seated;
  AddPlayer(seated.g, 3, "Ann", 1000_usd);
  EXPECT_EQ(GameFileBytes(seated.g, {}).size(), (459u + 773) * 256);
  const Bytes written = GameFileBytes(g, c);
  ASSERT_EQ(written.size(), f.bytes.size());
  for (size_t r = 0; r < written.size() / 256; ++r)
    EXPECT_TRUE(std::equal(written.begin() + r * 256, written.begin() + r * 256 + 256, f.bytes.begin() + r * 256))
        << "record " << r + 1;
}

// A played table: four players, two with scripts, bets on the table, a dice roll file in
// playback, rules changed.
struct PlayedTable : FolderTable {
  std::string rolls = Path("dice.rol");
  PlayedTable() {
    std::mt19937 dice(99);
    Bytes file;
    for (int k = 0; k < 12000; ++k) file.push_back(EncodeRoll(1 + dice() % 6, 1 + dice() % 6, 0));
    EXPECT_TRUE(WriteFileAtomically(rolls, file));
    g.Rules.MaxPlacardBet = 2000_usd;
    g.Rules.OddsAllowed68 = 10_usd;
    g.Rules.AllowPutBets = false;
    g.Rules.BetNeededToShoot = 0;
    g.Rules.FieldPayoff[1].PayoffPay = 3_usd;
    const char* names[] = {"Ann", "Bob", "Cy", "Dee"};
    for (int s = 1; s <= 4; ++s) AddPlayer(g, s, names[s - 1], Money::Dollars(5000 * s));
    for (int s : {3, 4}) {
      const auto script = ExamplesFolder() / (s == 3 ? "martingale_passline.bet" : "iron_cross.bet");
      EXPECT_TRUE(OpenAutoBets(g, s, script.string()));
      g.ScriptActive[s] = true;
    }
    for (int s : {1, 2}) g.AutoHandleWin[s] = g.AutoHandleLose[s] = 2;
    g.AdjustBias[2][kBiasPlace] = 1;
    g.AdjustForPayoff[2].fill(2);
    ChangeBet(g, 1, bet::PassLine, 10_usd);
    ChangeBet(g, 2, PointRow(BetFamily::Place, 6), 13_usd);
    ChangeBet(g, 2, bet::Field, 5_usd);
    EXPECT_TRUE(OpenRollFile(g, g.Rolls, rolls));
    ApplyDiceFileMode(g.Rolls, 1);
    Play(g, 500);
  }
  static void Play(Game& g, int n) {
    g.Auto.AutoStopRolls = Money::Dollars(g.Stats.RollCount[kSessionScope][0] + n);
    g.Auto.AutoRollThrottle = 0;
    ToggleAutoRoll(g);
    RollDice(g);
    EXPECT_EQ(g.StopReason, "Stopped by Auto-Stop.");
  }
};

TEST(GameFile, SavedOpenedAndSavedAgainIsTheSameFileAndPlaysOnTheSame) {
  PlayedTable a;
  const std::string file = a.Path("table.crp");
  ASSERT_TRUE(SaveGame(a.g, file));
  ASSERT_GT(a.g.Stats.RollCount[kSessionScope][0], 0);
  FolderTable b;
  // The other program folder holds the same hot-keys file, date and all.
  ASSERT_TRUE(CopyFileKeepingDate(a.Path("Hot-keys.hky"), b.Path("Hot-keys.hky")));
  ASSERT_TRUE(OpenGame(b.g, file)) << b.ui.LastText();
  EXPECT_EQ(b.g.PlayerName[4], "Dee");
  EXPECT_EQ(b.g.Rolls.RecorderState, 2);
  const Bytes first = FileBytes(file);
  ASSERT_TRUE(SaveGame(b.g, file));
  EXPECT_TRUE(first == FileBytes(file));
  PlayedTable::Play(a.g, 10000);
  PlayedTable::Play(b.g, 10000);
  EXPECT_GT(a.g.Stats.RollCount[kSessionScope][0], 10000);
  EXPECT_TRUE(GameFileBytes(a.g, {}) == GameFileBytes(b.g, {}));
}

// Checks of equal value side by side are a table the configuration accepts: its file opens.
TEST(GameFile, EqualNeighbouringChecksOpen) {
  FolderTable a;
  RuleSet rules = a.g.Rules;
  rules.CheckDenom = {Money{}, 1_usd, 5_usd, 5_usd, 100_usd, 500_usd};
  ASSERT_TRUE(ValidateRules(rules, false).ok);
  ReplaceRules(a.g, rules);
  ASSERT_TRUE(SaveGame(a.g, a.Path("five.crp")));
  FolderTable b;
  ASSERT_TRUE(OpenGame(b.g, a.Path("five.crp"))) << b.ui.LastText();
  EXPECT_EQ(b.g.Rules.CheckDenom[3], 5_usd);
}

// Everything a refused open must leave as it was.
Bytes Dump(const Game& g) {
  Bytes d = GameFileBytes(g, {});
  for (int s = 0; s < kSeats; ++s)
    for (const std::string& line : g.AutoBet.ScriptSource[s]) d.insert(d.end(), line.begin(), line.end());
  for (const std::string* text : {&g.GameFileName, &g.HotKeysFileName, &g.EventsLogFile, &g.Rolls.RollFileName})
    d.insert(d.end(), text->begin(), text->end());
  return d;
}

struct Corruption {
  const char* name;
  std::function<void(Bytes&)> apply;
  const char* says;
};

void PutWide(Bytes& b, int record, int slot, int64_t v) { PutInt64(b.data() + (record - 1) * 256 + slot * 8, v); }

const std::string kCorrupt = "An error occurred while attempting to open:";

const Corruption kCorruptions[] = {
    {"no DiceHall header", [](Bytes& b) { std::memcpy(b.data(), "Craps Pro", 9); },
     "This is not a DiceHall game file."},
    {"another version", [](Bytes& b) { b[38] = '1'; }, "This file appears to be from an incompatible version."},
    {"a point of 7", [](Bytes& b) { PutInt32(b.data() + 17 * 256 + 5 * 4, 7); }, kCorrupt.c_str()},
    {"a denomination of 0", [](Bytes& b) { PutWide(b, 33, 10, 0); }, kCorrupt.c_str()},
    {"denominations that descend", [](Bytes& b) { PutWide(b, 33, 11, kOne / 2); }, kCorrupt.c_str()},
    {"a probability cell out of range", [](Bytes& b) { PutInt32(b.data() + 456 * 256, 100001); }, kCorrupt.c_str()},
    {"seat 9", [](Bytes& b) { PutWide(b, 460, 0, 9 * kOne); }, kCorrupt.c_str()},
    {"an amount on row 150", [](Bytes& b) { PutWide(b, 470, 22, 5 * kOne); }, kCorrupt.c_str()},
    {"a record more", [](Bytes& b) { b.resize(b.size() + 256); }, kCorrupt.c_str()}};

TEST(GameFile, EveryCorruptFormIsRefusedAndTheTableStaysAsItWas) {
  PlayedTable t;
  FolderTable saved;
  AddPlayer(saved.g, 1, "Zed", 700_usd);
  const std::string file = saved.Path("one.crp");
  ASSERT_TRUE(SaveGame(saved.g, file));
  const Bytes good = FileBytes(file);
  const Bytes before = Dump(t.g);
  auto refused = [&](const Bytes& bytes, const std::string& says, const std::string& what) {
    ASSERT_TRUE(WriteFileAtomically(file, bytes));
    t.ui.transcript.clear();
    EXPECT_FALSE(OpenGame(t.g, file)) << what;
    EXPECT_NE(t.ui.LastText().find(says), std::string::npos) << what << ": " << t.ui.LastText();
    EXPECT_TRUE(Dump(t.g) == before) << what;
  };
  for (const Corruption& c : kCorruptions) {
    Bytes bytes = good;
    c.apply(bytes);
    refused(bytes, c.says, c.name);
  }
  // Cut at every record boundary and inside a record: a reader that takes a short file
  // refuses each one (the table itself is checked on a sample of them).
  auto scratch = std::make_unique<Game>();
  SetDefaultGame(*scratch);
  for (size_t cut = 0; cut < good.size(); cut += 128) {
    GameCompanions c;
    const Bytes part(good.begin(), good.begin() + cut);
    EXPECT_EQ(ReadGameFileBytes(part, *scratch, c), GameFileRead::Corrupt) << cut;
    if (cut % (256 * 97) == 128) refused(part, kCorrupt, "cut at " + std::to_string(cut));
  }
  t.ui.transcript.clear();
  EXPECT_FALSE(OpenGame(t.g, t.Path("none.crp")));
  EXPECT_EQ(t.ui.LastText(), "Game file not found.");
}

TEST(GameFile, CompanionsThatAreGoneOrChangedAreTold) {
  const auto past = std::filesystem::file_time_type::clock::now() - std::chrono::hours(30);
  for (const char* title : {"Missing roll history file", "Altered roll history file", "Missing dice roll file"}) {
    PlayedTable t;
    const std::string game = t.Path("c.crp"), copy = RollHistoryCopyName(game);
    ASSERT_TRUE(SaveGame(t.g, game));
    if (title[0] == 'A') std::filesystem::last_write_time(copy, past);
    else std::remove(title[8] == 'r' ? copy.c_str() : t.rolls.c_str());
    FolderTable b;
    EXPECT_TRUE(OpenGame(b.g, game)) << title;
    bool told = false;
    for (const auto& e : b.ui.transcript) told = told || e.request.Title == title;
    EXPECT_TRUE(told) << title;
  }
}

}  // namespace
