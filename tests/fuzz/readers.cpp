#include "tests/fuzz/readers.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

#include "autobet/script_files.h"
#include "dice/probability_file.h"
#include "dice/roll_files.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "stats/sessions_log_file.h"
#include "storage/fixed_record.h"
#include "storage/game_file.h"
#include "storage/hot_key_file.h"

namespace {

std::unique_ptr<Game> DefaultGame() {
  auto g = std::make_unique<Game>();
  SetDefaultGame(*g);
  return g;
}

// A plain write to a new name, removed after the read: a file cut to nothing and written
// again makes some file systems wait for the disk, thousands of times over.
struct Put {
  std::string path;
  Put(const Bytes& bytes, const std::string& folder, const char* name) {
    static uint64_t serial = 0;
    path = folder + "/" + std::to_string(++serial) + name;
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }
  ~Put() { std::remove(path.c_str()); }
};

}  // namespace

std::string CheckGameFileReader(const Bytes& bytes, const std::string&) {
  auto scratch = DefaultGame();
  GameCompanions companions;
  if (ReadGameFileBytes(bytes, *scratch, companions) != GameFileRead::Ok) return "";
  const Bytes again = GameFileBytes(*scratch, companions);
  auto second = DefaultGame();
  GameCompanions c2;
  if (ReadGameFileBytes(again, *second, c2) != GameFileRead::Ok) return "a game read from the file saves unreadably";
  return GameFileBytes(*second, c2) == again ? "" : "a game read from the file saves differently each time";
}

std::string CheckScriptFileReader(const Bytes& bytes, const std::string&) {
  return AutoBetLinesFromBytes(bytes).empty() ? "a script file gave no line" : "";
}

std::string CheckHotKeysReader(const Bytes& bytes, const std::string&) {
  const HotKeyTable before = {{'X', "kept.bet", "kept", true, true, 1, 2, 3}};
  HotKeyTable table = before;
  if (!ParseHotKeyFile(bytes, table)) return table == before ? "" : "a refused hot-keys file changed the list";
  // Texts come back in the code page: what was written once writes the same again.
  const Bytes written = HotKeyFileBytes(table);
  HotKeyTable again;
  const bool same = ParseHotKeyFile(written, again) && HotKeyFileBytes(again) == written;
  return same ? "" : "hot keys read from a file don't write back the same";
}

std::string CheckProbabilityReader(const Bytes& bytes, const std::string& folder) {
  ProbabilityTable before;
  SetDefaultProbabilities(before);
  ProbabilityTable t = before;
  std::string error;
  const bool refused = !LoadProbabilityFile(Put(bytes, folder, ".prb").path, t, error);
  return refused && !(t == before) ? "a refused probability file changed the table" : "";
}

std::string CheckRollFileReader(const Bytes& bytes, const std::string& folder) {
  auto g = DefaultGame();
  g->SilentMode = true;
  RollFiles& rf = g->Rolls;
  const Put file(bytes, folder, ".rol");
  if (!rf.RollFile.Open(file.path, false)) return "";
  rf.RecorderState = 2;
  for (size_t k = 0; k <= bytes.size(); ++k) {
    const int before1 = g->Table.Die1, before2 = g->Table.Die2;
    if (!ReadRollFromFile(*g, rf))
      return g->Table.Die1 != before1 || g->Table.Die2 != before2 ? "a refused roll changed the dice" : "";
    if (g->Table.Die1 < 1 || g->Table.Die1 > 6 || g->Table.Die2 < 1 || g->Table.Die2 > 6)
      return "a roll file gave a die out of 1..6";
  }
  return "a roll file read past its end";
}

std::string CheckSessionsLogReader(const Bytes& bytes, const std::string& folder) {
  SessionsLogFile before;
  before.Records.resize(2);
  before.Records[1][0] = Money::Dollars(7);
  SessionsLogFile log = before;
  std::string error;
  const bool refused = !ReadSessionsLog(Put(bytes, folder, ".slg").path, log, error, "fuzz");
  const bool changed = log.Records != before.Records || log.Unused != before.Unused;
  return refused && changed ? "a refused sessions log changed what was read" : "";
}

const std::string& FuzzFolder() {
  static const std::string folder = [] {
    const auto dir = std::filesystem::temp_directory_path() / ("dicehall-fuzz-" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    return dir.string();
  }();
  return folder;
}

Bytes SampleGameFile(const std::string&) {
  auto g = DefaultGame();
  AddPlayer(*g, 2, "Ann", 500_usd);
  g->CheckStackName[2][3] = "Nest egg";
  return GameFileBytes(*g, {});
}

Bytes SampleScriptFile(const std::string&) {
  Bytes b;
  LegacyAutoBetBytes({"when pass line has won", "set stack #1 to 5", "top", "highest of rolls on 7", "x"}, b);
  const int32_t kinds[] = {1, 30, 90, 5, 99};
  for (size_t k = 0; k < 5; ++k) PutInt32(b.data() + (k + 1) * 256 + 128, kinds[k]);
  return b;
}

Bytes SampleHotKeysFile(const std::string&) {
  return HotKeyFileBytes(
      {{'A', "a.bet", "All down", true, true, 10, 20, 0xff00}, {'b', "b.bet", "", true, false, 0, 0, 0}});
}

Bytes SampleProbabilityFile(const std::string& folder) {
  ProbabilityTable t;
  SetDefaultProbabilities(t);
  std::string error;
  const std::string path = folder + "/sample.prb";
  SaveProbabilityFile(path, t, error);
  Bytes b;
  ReadWholeFile(path, b, 1 << 20);
  return b;
}

Bytes SampleRollFile(const std::string&) {
  Bytes b;
  for (int k = 0; k < 64; ++k) b.push_back(EncodeRoll(1 + k % 6, 1 + (k / 6) % 6, k % 3));
  return b;
}

Bytes SampleSessionsLog(const std::string& folder) {
  SessionsLogFile log;
  log.Records.resize(3);
  log.Records[2][slg::Ending] = 1234_usd;
  std::string error;
  const std::string path = folder + "/sample.slg";
  WriteSessionsLog(path, log, error, "sample");
  Bytes b;
  ReadWholeFile(path, b, 1 << 20);
  return b;
}
