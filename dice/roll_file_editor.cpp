#include "dice/roll_file_editor.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <vector>

#include "engine/messages.h"
#include "storage/paths.h"

namespace {

constexpr const char* kCopyToTextTitle = "Copy Dice Rolls To Text File";

bool ValidSelection(RollFiles& rf, int32_t first, int32_t last) {
  return rf.RollFile.IsOpen() && first >= 1 && first <= last && last <= RollFileLength(rf);
}

std::vector<uint8_t> ReadAll(RollFiles& rf) {
  std::vector<uint8_t> bytes(static_cast<size_t>(rf.RollFile.Size()));
  bytes.resize(static_cast<size_t>(rf.RollFile.ReadBlock(0, bytes.data(), rf.RollFile.Size())));
  return bytes;
}

std::vector<uint8_t> ReadRange(RollFiles& rf, int32_t first, int32_t last) {
  std::vector<uint8_t> bytes(static_cast<size_t>(last - first + 1));
  bytes.resize(static_cast<size_t>(rf.RollFile.ReadBlock(first - 1, bytes.data(), last - first + 1)));
  return bytes;
}

std::minstd_rand& EditorRandom(Game& g, RollFiles& rf) {
  if (!rf.EditorRandomSeeded) {
    rf.EditorRandom.seed(g.Time ? g.Time->TickMs() : DefaultClock().TickMs());
    rf.EditorRandomSeeded = true;
  }
  return rf.EditorRandom;
}

uint8_t RandomRoll(std::minstd_rand& r) {
  std::uniform_int_distribution<int> die(1, 6);
  const int die1 = die(r);
  return EncodeRoll(die1, die(r), 0);
}

// Puts `rolls` in at `position`, inserted, or over the rolls there (growing the file
// where they run past its end).
bool PutRolls(RollFiles& rf, int32_t position, const std::vector<uint8_t>& rolls, bool insert) {
  if (!rf.RollFile.IsOpen() || position < 1 || position > RollFileLength(rf) + 1) return false;
  if (!insert) {
    for (size_t i = 0; i < rolls.size(); ++i) rf.RollFile.Write(position - 1 + static_cast<int64_t>(i), rolls[i]);
    return rf.RollFile.Flush();
  }
  std::vector<uint8_t> bytes = ReadAll(rf);
  bytes.insert(bytes.begin() + (position - 1), rolls.begin(), rolls.end());
  return rf.RollFile.Rewrite(bytes);
}

bool StartsWithWord(const std::string& s, size_t at, const char* word) {
  for (size_t k = 0; word[k]; ++k)
    if (at + k >= s.size() || std::tolower(static_cast<unsigned char>(s[at + k])) != word[k]) return false;
  return true;
}

std::string Trimmed(const std::string& s) {
  const size_t b = s.find_first_not_of(" \t");
  if (b == std::string::npos) return "";
  return s.substr(b, s.find_last_not_of(" \t") - b + 1);
}

}  // namespace

int32_t RollFileLength(RollFiles& rf) { return static_cast<int32_t>(rf.RollFile.Size()); }

int32_t ReadRollBlock(RollFiles& rf, int32_t first, uint8_t (&out)[kRollListBlock]) {
  if (first < 1) return 0;
  return static_cast<int32_t>(rf.RollFile.ReadBlock(first - 1, out, kRollListBlock));
}

bool EnterRoll(RollFiles& rf, int32_t position, int die1, int die2, bool insert) {
  if (die1 < 1 || die1 > 6 || die2 < 1 || die2 > 6) return false;
  return PutRolls(rf, position, {EncodeRoll(die1, die2, 0)}, insert);
}

bool EnterRandomRoll(Game& g, RollFiles& rf, int32_t position, bool insert) {
  if (!rf.RollFile.IsOpen()) return false;
  return PutRolls(rf, position, {RandomRoll(EditorRandom(g, rf))}, insert);
}

bool DeleteRolls(RollFiles& rf, int32_t first, int32_t last) {
  if (!ValidSelection(rf, first, last)) return false;
  std::vector<uint8_t> bytes = ReadAll(rf);
  bytes.erase(bytes.begin() + (first - 1), bytes.begin() + last);
  return rf.RollFile.Rewrite(bytes);
}

bool RandomInsert(Game& g, RollFiles& rf, int32_t position, int32_t count) {
  if (count < 1 || !rf.RollFile.IsOpen()) return false;
  std::minstd_rand& r = EditorRandom(g, rf);
  std::vector<uint8_t> rolls(static_cast<size_t>(count));
  for (uint8_t& b : rolls) b = RandomRoll(r);
  return PutRolls(rf, position, rolls, true);
}

bool RandomReplace(Game& g, RollFiles& rf, int32_t first, int32_t last, int32_t count) {
  if (count < 1 || !ValidSelection(rf, first, last)) return false;
  std::minstd_rand& r = EditorRandom(g, rf);
  std::uniform_int_distribution<int32_t> at(first, last);
  for (int32_t i = 0; i < count; ++i) rf.RollFile.Write(at(r) - 1, RandomRoll(r));
  return rf.RollFile.Flush();
}

bool RandomSwap(Game& g, RollFiles& rf, int32_t first, int32_t last, int32_t count) {
  if (count < 1 || !ValidSelection(rf, first, last)) return false;
  std::vector<uint8_t> bytes = ReadRange(rf, first, last);
  std::minstd_rand& r = EditorRandom(g, rf);
  std::uniform_int_distribution<size_t> at(0, bytes.size() - 1);
  for (int32_t i = 0; i < count; ++i) {
    const size_t a = at(r);
    std::swap(bytes[a], bytes[at(r)]);
  }
  return PutRolls(rf, first, bytes, false);
}

bool CopyRolls(Game& g, RollFiles& rf, int32_t first, int32_t last) {
  if (!ValidSelection(rf, first, last)) return false;
  const std::vector<uint8_t> bytes = ReadRange(rf, first, last);
  RollByteFile clip;
  if (!clip.Open(InProgramFolder(g.ProgramFolder, kRollCopyFileName), true)) return false;
  for (uint8_t b : bytes) clip.Append(b);
  return clip.Close();
}

bool CutRolls(Game& g, RollFiles& rf, int32_t first, int32_t last) {
  return CopyRolls(g, rf, first, last) && DeleteRolls(rf, first, last);
}

bool PasteRolls(Game& g, RollFiles& rf, int32_t position, bool insert) {
  const std::string clipPath = InProgramFolder(g.ProgramFolder, kRollCopyFileName);
  std::FILE* f = std::fopen(clipPath.c_str(), "rb");
  if (!f) return false;
  std::vector<uint8_t> rolls;
  for (int c; (c = std::fgetc(f)) != EOF;) rolls.push_back(static_cast<uint8_t>(c));
  std::fclose(f);
  return !rolls.empty() && PutRolls(rf, position, rolls, insert);
}

bool CopyRollsToTextFile(Game& g, RollFiles& rf, int32_t first, int32_t last, const std::string& format,
                         const std::string& path) {
  if (!ValidSelection(rf, first, last)) return false;
  std::string line = Trimmed(format);
  if (line.empty()) line = kDefaultRollFormat;
  bool numbered = false;
  for (size_t i = 0; i < line.size() && !numbered; ++i) numbered = StartsWithWord(line, i, "roll#");
  int32_t number = first;
  if (first != 1 && numbered &&
      Tell(g,
           "The rolls you've selected do not begin with roll #1.  Would you like to renumber them in the "
           "output starting with #1?",
           kCopyToTextTitle, 0, msg::kYesNoQuestion)
              .Button == kButtonYes)
    number = 1;

  const std::vector<uint8_t> bytes = ReadRange(rf, first, last);
  std::FILE* out = std::fopen(InProgramFolder(g.ProgramFolder, path).c_str(), "wb");
  if (!out) {
    Tell(g, "Bad path and/or file name.", kCopyToTextTitle, 0, msg::kAlertOk);
    return false;
  }
  std::string text;
  for (uint8_t b : bytes) {
    const int die1 = RollByteDie1(b), die2 = RollByteDie2(b);
    for (size_t i = 0; i < line.size();) {
      if (StartsWithWord(line, i, "roll#")) {
        text += std::to_string(number);
        i += 5;
      } else if (StartsWithWord(line, i, "die1")) {
        text += std::to_string(die1);
        i += 4;
      } else if (StartsWithWord(line, i, "die2")) {
        text += std::to_string(die2);
        i += 4;
      } else if (StartsWithWord(line, i, "total")) {
        text += std::to_string(die1 + die2);
        i += 5;
      } else {
        text += line[i++];
      }
    }
    text += '\n';
    ++number;
  }
  const bool written = std::fwrite(text.data(), 1, text.size(), out) == text.size();
  return std::fclose(out) == 0 && written;
}
