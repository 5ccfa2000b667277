#include "storage/append_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "tests/test_support.h"

namespace fs = std::filesystem;

namespace {

// What happens to the file between a first line and a second, and what it then holds.
struct Between {
  const char* name;
  std::function<void(const fs::path&)> act;
  const char* expected;
  friend void PrintTo(const Between& b, std::ostream* os) { *os << b.name; }
};

class AppendFileBetween : public ::testing::TestWithParam<Between> {};

TEST_P(AppendFileBetween, TheSecondLineGoesWhereAFreshOpenWouldPutIt) {
  TempDir dir;
  const fs::path path = dir.path / "log.txt";
  AppendFile file;
  ASSERT_TRUE(file.Open(path.string(), true));
  ASSERT_TRUE(file.AppendLine("one"));
  EXPECT_EQ(FileText(path), "one\n");  // there at once, with the file still open
  GetParam().act(path);
  ASSERT_TRUE(file.AppendLine("two"));
  EXPECT_EQ(FileText(path), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, AppendFileBetween,
                         ::testing::Values(Between{"Nothing", [](const fs::path&) {}, "one\ntwo\n"},
                                           Between{"Removed", [](const fs::path& p) { fs::remove(p); }, "two\n"},
                                           Between{"ReplacedByRename",
                                                   [](const fs::path& p) {
                                                     WriteText(p.string() + ".new", "new\n");
                                                     fs::rename(p.string() + ".new", p);
                                                   },
                                                   "new\ntwo\n"},
                                           Between{"EmptiedByAnotherOpen",
                                                   [](const fs::path& p) {
                                                     AppendFile other;
                                                     ASSERT_TRUE(other.Open(p.string(), true));
                                                   },
                                                   "two\n"},
                                           Between{"WrittenByAnotherOpen",
                                                   [](const fs::path& p) {
                                                     AppendFile other;
                                                     ASSERT_TRUE(other.Open(p.string(), false));
                                                     ASSERT_TRUE(other.AppendLine("other"));
                                                   },
                                                   "one\nother\ntwo\n"}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(AppendFile, AFailedOpenKeepsTheFileOpenedBefore) {
  TempDir dir;
  AppendFile file;
  EXPECT_FALSE(file.AppendLine("nowhere"));
  ASSERT_TRUE(file.Open((dir.path / "a.txt").string(), false));
  EXPECT_FALSE(file.Open((dir.path / "missing" / "b.txt").string(), false));
  ASSERT_TRUE(file.AppendLine("kept"));
  EXPECT_EQ(FileText(dir.path / "a.txt"), "kept\n");
  // A path that can no longer be opened at all: the line is refused.
  fs::remove(dir.path / "a.txt");
  fs::create_directory(dir.path / "a.txt");
  EXPECT_FALSE(file.AppendLine("lost"));
}

}  // namespace
