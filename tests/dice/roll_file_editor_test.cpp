// The editor's operations on a small roll file, and the copy to a text file.

#include "dice/roll_file_editor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>

#include "tests/test_support.h"

namespace {

// Rolls given as die1 * 10 + die2.
std::string Rolls(std::initializer_list<int> pairs) {
  std::string s;
  for (int p : pairs) s += static_cast<char>(EncodeRoll(p / 10, p % 10, 0));
  return s;
}

struct EditorTable : TestTable {
  TempDir dir;
  RollFiles rf;
  explicit EditorTable(const std::string& bytes = Rolls({11, 22, 33, 44, 55})) {
    g.ProgramFolder = dir.path.string();
    WriteText(dir.path / "edit.rol", bytes);
    EXPECT_TRUE(OpenRollFile(g, rf, "edit.rol"));
  }
  std::string Content() {
    rf.RollFile.Flush();
    return FileText(dir.path / "edit.rol");
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
