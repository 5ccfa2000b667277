// Dice roll files: playback in the roll cycle, the pop-up file, recording with marks and
// the roll history; the editor's operations on a small file and the copy to a text file.

#include "dice/roll_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "automation/auto_roll.h"
#include "dice/roll_file_editor.h"
#include "tests/test_support.h"

namespace {

namespace fs = std::filesystem;

const std::string kOutOfLimitsStop = "Stopped due to Dice Roll File value out of limits.";

struct RollFileTable : TestTable {
  TempDir dir;
  RollFiles rf;
  RollFileTable() { g.ProgramFolder = dir.path.string(); }
  fs::path File(const char* name) const { return dir.path / name; }
  void PlayBack(const std::string& bytes) {
    WriteText(File("dice.rol"), bytes);
    ASSERT_TRUE(OpenRollFile(g, rf, "dice.rol"));
    ASSERT_TRUE(StartPlayback(g, rf));
  }
};

// ---- Playback ------------------------------------------------------------------------------

class RollFileMarkTest : public ::testing::TestWithParam<int> {};

TEST_P(RollFileMarkTest, EveryPairPlaysWhateverItsMarkAndTheReadAfterTheLastEnds) {
  RollFileTable t;
  std::string bytes;
  for (int d1 = 1; d1 <= 6; ++d1)
    for (int d2 = 1; d2 <= 6; ++d2) bytes += static_cast<char>(d2 * 32 + d1 * 4 + GetParam());
  t.PlayBack(bytes);
  for (int d1 = 1; d1 <= 6; ++d1)
    for (int d2 = 1; d2 <= 6; ++d2) {
      ASSERT_TRUE(ReadRollFromFile(t.g, t.rf));
      EXPECT_EQ(t.g.Table.Die1 * 10 + t.g.Table.Die2, d1 * 10 + d2);
    }
  EXPECT_FALSE(t.rf.EndOfFile) << "the last roll plays normally";
  EXPECT_FALSE(ReadRollFromFile(t.g, t.rf));
  EXPECT_TRUE(t.rf.EndOfFile);
  EXPECT_EQ(t.g.StopReason, "Stopped due to end of Dice Roll File reached.");
  EXPECT_EQ(t.rf.NextRollPosition, 37);

  t.ui.replies.push_back({kButtonYes, "", false});
  StopPlayback(t.g, t.rf);
  EXPECT_EQ(t.ui.LastText(), "Rewind for playback?");
  EXPECT_EQ(t.rf.RecorderState, 0);
  EXPECT_EQ(t.rf.NextRollPosition, 1);
}

INSTANTIATE_TEST_SUITE_P(RollFileMarks, RollFileMarkTest, ::testing::Values(0, 1, 2, 3));

struct LimitCase {
  const char* what;
  uint8_t byte;
  bool hyperDrive;
};

class RollFileLimitTest : public ::testing::TestWithParam<LimitCase> {};

TEST_P(RollFileLimitTest, StopsWithoutRollingAndKeepsTheFileAtTheRoll) {
  const LimitCase& c = GetParam();
  RollFileTable t;
  t.PlayBack(std::string{static_cast<char>(EncodeRoll(2, 5, 0)), static_cast<char>(c.byte)});
  ASSERT_TRUE(ReadRollFromFile(t.g, t.rf));
  if (c.hyperDrive) {
    t.g.Auto.AutoRollThrottle = 0;
    ToggleAutoRoll(t.g);
  }
  EXPECT_FALSE(ReadRollFromFile(t.g, t.rf));
  EXPECT_EQ(t.g.Table.Die1 * 10 + t.g.Table.Die2, 25);
  EXPECT_EQ(t.rf.RecorderState, 0);
  EXPECT_EQ(t.rf.NextRollPosition, 2);
  EXPECT_EQ(t.g.StopReason, kOutOfLimitsStop);
  EXPECT_FALSE(t.g.Auto.AutoRollActive);
  ASSERT_EQ(t.ui.transcript.size(), 1u);
  const MessageRequest& box = t.ui.transcript[0].request;
  if (c.hyperDrive) {  // only the stop text, shown as Hyper-Drive stops
    EXPECT_EQ(box.Title, "Hyper-Drive Stopped");
    EXPECT_EQ(box.Text, kOutOfLimitsStop);
  } else {
    EXPECT_EQ(box.Title, "Dice roll file error");
    EXPECT_EQ(box.HelpId, 210);
    EXPECT_EQ(box.Text,
              "A dice roll value has been found to be out of limits. \n\nPlayback of this Dice Roll File "
              "has stopped so that you can check the file or continue without it.");
  }
}

INSTANTIATE_TEST_SUITE_P(RollFileBytes, RollFileLimitTest,
                         ::testing::Values(LimitCase{"zero", 0, false}, LimitCase{"zero_silent", 0, true},
                                           LimitCase{"die2_zero", EncodeRoll(3, 0, 1), false},
                                           LimitCase{"die1_seven", EncodeRoll(7, 1, 0), true},
                                           LimitCase{"die2_seven", EncodeRoll(4, 7, 2), false}),
                         [](const auto& info) { return std::string(info.param.what); });

// ---- The pop-up roll file --------------------------------------------------------------------

struct PopupCase {
  const char* what;
  const char* content;  // nullptr: no file
  int dice;             // die1 * 10 + die2, 0 for too few dice
};

class RollFilePopupTest : public ::testing::TestWithParam<PopupCase> {};

TEST_P(RollFilePopupTest, FirstTwoDigitsOneToSixAreTheDice) {
  const PopupCase& c = GetParam();
  RollFileTable t;
  if (c.content) WriteText(t.File("popup.txt"), c.content);
  OpenPopupSource(t.g, t.rf, "popup.txt");
  EXPECT_EQ(ReadPopupRoll(t.g, t.rf), c.dice != 0);
  EXPECT_EQ(t.g.Table.Die1 * 10 + t.g.Table.Die2, c.dice ? c.dice : 34);
  EXPECT_EQ(fs::exists(t.File("popup.txt")), c.dice == 0 && c.content) << "a bad file stays to be checked";
  if (c.dice) return;
  EXPECT_EQ(t.ui.LastText(),
            "A dice roll value has been found to be out of limits. \n\n"
            "Play has stopped so that you can check the pop-up file or continue without it.");
  EXPECT_EQ(t.ui.transcript.back().request.Title, "Dice roll file error");
  EXPECT_EQ(t.g.StopReason, kOutOfLimitsStop);
}

INSTANTIATE_TEST_SUITE_P(RollFileContents, RollFilePopupTest,
                         ::testing::Values(PopupCase{"blank", "5 2", 52}, PopupCase{"letters", "die a:5,b:2.", 52},
                                           PopupCase{"skipped", "7 8 9 0 3,1", 31},
                                           PopupCase{"more", "1\r\n6\r\n4", 16}, PopupCase{"one", "x4y", 0},
                                           PopupCase{"outside", "77 0 9", 0}, PopupCase{"missing", nullptr, 0}),
                         [](const auto& info) { return std::string(info.param.what); });

// An event loop in which time passes, and the file appears or Auto-Roll is stopped.
struct WaitCase {
  const char* what;
  int dropAt, stopAt;
  bool goOn;
  int yields;
};

struct WaitingUi : HeadlessUi {
  RollFileTable& t;
  const WaitCase& c;
  std::vector<std::string> statuses;
  WaitingUi(RollFileTable& table, const WaitCase& wait) : t(table), c(wait) {}
  void Refresh(const std::vector<std::string>&) override { statuses.push_back(t.g.Auto.StatusText); }
  void Yield() override {
    t.clock.tick += 100;
    if (++yields == c.dropAt) WriteText(t.File("popup.txt"), "4 4");
    if (yields == c.stopAt) ToggleAutoRoll(t.g);
  }
};

class RollFileWaitTest : public ::testing::TestWithParam<WaitCase> {};

TEST_P(RollFileWaitTest, WaitsTestingEveryHalfSecond) {
  const WaitCase& c = GetParam();
  RollFileTable t;
  WaitingUi ui(t, c);
  t.g.Ui = &ui;
  t.g.Auto.StatusText = "Ready";
  ToggleAutoRoll(t.g);
  if (c.dropAt == 0) WriteText(t.File("popup.txt"), "1 1");
  OpenPopupSource(t.g, t.rf, "popup.txt");
  EXPECT_EQ(WaitForPopupFile(t.g, t.rf), c.goOn);
  EXPECT_EQ(ui.yields, c.yields);
  if (c.yields) {
    EXPECT_EQ(ui.statuses, std::vector<std::string>({"Waiting for Roll File", "Ready"}));
  }
}

INSTANTIATE_TEST_SUITE_P(RollFileWaits, RollFileWaitTest,
                         ::testing::Values(WaitCase{"there", 0, -1, true, 0},
                                           WaitCase{"dropped", 7, -1, true, 10},  // seen at the next half second
                                           WaitCase{"dropped_on_test", 5, -1, true, 5},
                                           WaitCase{"auto_roll_off", -1, 3, false, 3}),
                         [](const auto& info) { return std::string(info.param.what); });

// ---- Recording and the roll history ----------------------------------------------------------

TEST(RollFileRecord, RecordedRollsCarryTheirMarksAndPlayBackTheSameDice) {
  struct Roll {
    int die1, die2, priorPoint, mark;
  };
  const std::vector<Roll> rolls = {{2, 2, 0, 2}, {3, 3, 4, 0}, {1, 3, 4, 1},   // point 4 established, then made
                                   {5, 6, 0, 0}, {6, 4, 0, 2}, {4, 3, 10, 1},  // come-out 11; point 10, seven-out
                                   {1, 1, 0, 0}, {6, 6, 0, 0}, {3, 4, 0, 0}};
  RollFileTable t;
  WriteText(t.File("current roll history.rol"), "old");
  ASSERT_TRUE(ReopenRollHistory(t.g, t.rf));
  WriteText(t.File("rec.rol"), std::string(12, static_cast<char>(EncodeRoll(1, 1, 0))));
  ASSERT_TRUE(OpenRollFile(t.g, t.rf, "rec.rol"));
  ASSERT_TRUE(StartRecording(t.g, t.rf));
  std::string expected;
  for (const Roll& r : rolls) {
    t.g.Table.Die1 = r.die1;
    t.g.Table.Die2 = r.die2;
    RecordRoll(t.g, t.rf);
    const int mark = RollMark(r.priorPoint, r.die1 + r.die2);
    EXPECT_EQ(mark, r.mark) << r.die1 << "-" << r.die2;
    MarkRecordedRoll(t.g, t.rf, mark);
    WriteRollHistory(t.g, t.rf, mark);
    expected += static_cast<char>(r.die2 * 32 + r.die1 * 4 + r.mark);
  }
  CloseRollHistory(t.rf);
  EXPECT_EQ(FileText(t.File("current roll history.rol")), expected);

  ApplyDiceFileMode(t.rf, 1);  // a new session playing from the start
  EXPECT_EQ(t.rf.RecorderState, 2);
  EXPECT_EQ(FileText(t.File("rec.rol")), expected + std::string(3, static_cast<char>(EncodeRoll(1, 1, 0))));
  for (const Roll& r : rolls) {
    ASSERT_TRUE(ReadRollFromFile(t.g, t.rf));
    EXPECT_EQ(t.g.Table.Die1 * 10 + t.g.Table.Die2, r.die1 * 10 + r.die2);
  }
  ApplyDiceFileMode(t.rf, 0);
  EXPECT_FALSE(t.rf.RollFile.IsOpen());
  EXPECT_TRUE(t.rf.RollFileName.empty());
}

// ---- The editor ---------------------------------------------------------------------------

// Rolls given as die1 * 10 + die2.
std::string Rolls(std::initializer_list<int> pairs) {
  std::string s;
  for (int p : pairs) s += static_cast<char>(EncodeRoll(p / 10, p % 10, 0));
  return s;
}

struct EditorTable : RollFileTable {
  explicit EditorTable(const std::string& bytes = Rolls({11, 22, 33, 44, 55})) {
    WriteText(File("edit.rol"), bytes);
    EXPECT_TRUE(OpenRollFile(g, rf, "edit.rol"));
  }
  std::string Content() {
    rf.RollFile.Flush();
    return FileText(File("edit.rol"));
  }
};

struct EditCase {
  const char* what;
  std::function<bool(EditorTable&)> op;
  std::string after;  // "" when refused: the file stays as it was
};

class RollFileEditorTest : public ::testing::TestWithParam<EditCase> {};

TEST_P(RollFileEditorTest, ChangesTheFileOrLeavesItAsItWas) {
  const EditCase& c = GetParam();
  EditorTable t;
  EXPECT_EQ(c.op(t), !c.after.empty());
  EXPECT_EQ(t.Content(), c.after.empty() ? Rolls({11, 22, 33, 44, 55}) : c.after);
  EXPECT_EQ(RollFileLength(t.rf), static_cast<int32_t>(t.Content().size()));
}

const EditCase kEdits[] = {
    {"replace", [](auto& t) { return EnterRoll(t.rf, 2, 6, 5, false); }, Rolls({11, 65, 33, 44, 55})},
    {"replace_after_last", [](auto& t) { return EnterRoll(t.rf, 6, 1, 2, false); }, Rolls({11, 22, 33, 44, 55, 12})},
    {"insert_first", [](auto& t) { return EnterRoll(t.rf, 1, 3, 1, true); }, Rolls({31, 11, 22, 33, 44, 55})},
    {"delete_range", [](auto& t) { return DeleteRolls(t.rf, 2, 4); }, Rolls({11, 55})},
    {"cut_paste", [](auto& t) { return CutRolls(t.g, t.rf, 4, 5) && PasteRolls(t.g, t.rf, 1, true); },
     Rolls({44, 55, 11, 22, 33})},
    {"copy_paste_over", [](auto& t) { return CopyRolls(t.g, t.rf, 1, 2) && PasteRolls(t.g, t.rf, 5, false); },
     Rolls({11, 22, 33, 44, 11, 22})},
    {"paste_nothing", [](auto& t) { return PasteRolls(t.g, t.rf, 1, true); }, ""},
    {"die_of_seven", [](auto& t) { return EnterRoll(t.rf, 1, 7, 1, false); }, ""},
    {"past_the_end", [](auto& t) { return EnterRoll(t.rf, 7, 1, 1, true); }, ""},
    {"beyond", [](auto& t) { return DeleteRolls(t.rf, 5, 6); }, ""},
};

INSTANTIATE_TEST_SUITE_P(RollFileOperations, RollFileEditorTest, ::testing::ValuesIn(kEdits),
                         [](const auto& info) { return std::string(info.param.what); });

TEST(RollFileEditor, RandomToolsStayInsideTheSelection) {
  EditorTable t(Rolls({11, 12, 13, 14, 15, 16, 21, 22, 23, 24}));
  ASSERT_TRUE(RandomSwap(t.g, t.rf, 3, 8, 20));
  std::string c = t.Content(), inside = c.substr(2, 6), before = Rolls({13, 14, 15, 16, 21, 22});
  EXPECT_EQ(c.substr(0, 2) + c.substr(8), Rolls({11, 12, 23, 24}));
  std::sort(inside.begin(), inside.end());
  std::sort(before.begin(), before.end());
  EXPECT_EQ(inside, before);

  ASSERT_TRUE(RandomReplace(t.g, t.rf, 4, 5, 50));
  const std::string replaced = t.Content();
  EXPECT_EQ(replaced.substr(0, 3) + replaced.substr(5), c.substr(0, 3) + c.substr(5));

  ASSERT_TRUE(RandomInsert(t.g, t.rf, 3, 1000));
  c = t.Content();
  ASSERT_EQ(c.size(), 1010u);
  EXPECT_EQ(c.substr(0, 2) + c.substr(1002), replaced);
  for (char b : c) {
    const int d1 = RollByteDie1(static_cast<uint8_t>(b)), d2 = RollByteDie2(static_cast<uint8_t>(b));
    ASSERT_TRUE(d1 >= 1 && d1 <= 6 && d2 >= 1 && d2 <= 6);
  }
}

struct TextCase {
  const char* what;
  int32_t first, last;
  const char* format;
  int reply;  // -1: no question expected
  std::string text;
};

class RollFileTextTest : public ::testing::TestWithParam<TextCase> {};

TEST_P(RollFileTextTest, WordsReplacedAndRenumberingOffered) {
  const TextCase& c = GetParam();
  EditorTable t(Rolls({12, 34, 56, 61}));
  if (c.reply >= 0) t.ui.replies.push_back({c.reply, "", false});
  ASSERT_TRUE(CopyRollsToTextFile(t.g, t.rf, c.first, c.last, c.format, "out.txt"));
  EXPECT_EQ(FileText(t.dir.path / "out.txt"), c.text);
  ASSERT_EQ(t.ui.transcript.size(), c.reply < 0 ? 0u : 1u);
  if (c.reply >= 0) {
    EXPECT_EQ(t.ui.LastText(),
              "The rolls you've selected do not begin with roll #1.  Would you like to renumber "
              "them in the output starting with #1?");
  }
}

INSTANTIATE_TEST_SUITE_P(
    RollFileFormats, RollFileTextTest,
    ::testing::Values(TextCase{"default", 1, 2, "Roll# (Die1.Die2) Total", -1, "1 (1.2) 3\n2 (3.4) 7\n"},
                      TextCase{"empty_is_default", 1, 1, "  ", -1, "1 (1.2) 3\n"},
                      TextCase{"renumbered", 3, 4, "Roll# (Die1.Die2) Total", kButtonYes, "1 (5.6) 11\n2 (6.1) 7\n"},
                      TextCase{"as_in_file", 3, 4, "ROLL#:TOTAL", kButtonNo, "3:11\n4:7\n"},
                      TextCase{"no_roll_number", 2, 3, "  die2-DIE1 = total, x ", -1, "4-3 = 7, x\n6-5 = 11, x\n"}),
    [](const auto& info) { return std::string(info.param.what); });

}  // namespace
