#include "stats/events_log.h"

#include <cctype>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "engine/game_state.h"
#include "engine/messages.h"
#include "storage/error_report.h"
#include "storage/paths.h"

namespace fs = std::filesystem;

namespace {

// A failing file is told once; play goes on without the line.
bool Fail(Game& g, const char* label) {
  if (!g.Events.FailureReported) {
    g.Events.FailureReported = true;
    Tell(g, ErrorReport("Path/File access error", 75, label), "DiceHall", 0, msg::kAlertOk);
  }
  return false;
}

bool Exists(const std::string& path) {
  std::error_code ec;
  return fs::exists(path, ec);
}

void PutRecord(uint8_t out[4], int32_t value) {
  const auto v = static_cast<uint32_t>(value);
  for (int k = 0; k < 4; ++k) out[k] = static_cast<uint8_t>(v >> (8 * k));
}

int32_t GetRecord(const uint8_t in[4]) {
  return static_cast<int32_t>(in[0] | in[1] << 8 | in[2] << 16 | static_cast<uint32_t>(in[3]) << 24);
}

std::vector<int32_t> ReadIndex(const std::string& path) {
  std::vector<int32_t> records;
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return records;
  uint8_t b[4];
  while (std::fread(b, 1, 4, f) == 4) records.push_back(GetRecord(b));
  std::fclose(f);
  return records;
}

// The line at a 1-based byte position, without its line end.
std::string LineAt(std::FILE* f, int32_t position) {
  std::string line;
  if (position < 1 || std::fseek(f, position - 1, SEEK_SET) != 0) return line;
  int c;
  while ((c = std::fgetc(f)) != EOF && c != '\n') line += static_cast<char>(c);
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

std::string Lowered(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

}  // namespace

std::string EventsLogTextPath(const Game& g) {
  if (g.ProgramFolder.empty() || g.EventsLogFile.empty()) return {};
  return InProgramFolder(g.ProgramFolder, g.EventsLogFile);
}

std::string EventsLogIndexPath(const Game& g) {
  if (g.ProgramFolder.empty()) return {};
  return (fs::path(g.ProgramFolder) / kEventsLogIndexName).string();
}

bool AddEventLine(Game& g, const std::string& text) {
  constexpr const char* kLabel = "sub Add Event Line";
  const std::string textPath = EventsLogTextPath(g), indexPath = EventsLogIndexPath(g);
  if (textPath.empty() || indexPath.empty()) return false;
  std::FILE* log = std::fopen(textPath.c_str(), "ab");
  // Never "w+b" over an index that exists but won't open: that would lose it.
  std::FILE* index = log ? std::fopen(indexPath.c_str(), Exists(indexPath) ? "r+b" : "w+b") : nullptr;
  if (!index) {
    if (log) std::fclose(log);
    return Fail(g, kLabel);
  }
  std::fseek(index, 0, SEEK_END);
  const long indexLength = std::ftell(index);
  std::fseek(log, 0, SEEK_END);
  const long textLength = std::ftell(log);
  const auto n = static_cast<int32_t>(indexLength / 4 + 1);
  uint8_t record[4];
  PutRecord(record, static_cast<int32_t>(textLength + 1));
  bool ok = indexLength >= 0 && textLength >= 0 && std::fseek(index, (n - 1) * 4L, SEEK_SET) == 0 &&
            std::fwrite(record, 1, 4, index) == 4;
  ok = std::fclose(index) == 0 && ok;
  if (ok) {
    const std::string line = text + "\r\n";
    ok = std::fwrite(line.data(), 1, line.size(), log) == line.size();
  }
  ok = std::fclose(log) == 0 && ok;
  if (!ok) {
    // The index must not name a line that isn't there.
    std::error_code ec;
    fs::resize_file(indexPath, static_cast<uintmax_t>(n - 1) * 4, ec);
    return Fail(g, kLabel);
  }
  g.Events.FailureReported = false;
  if (g.Events.KeepLatestRollOnTop) {
    size_t first = text.find_first_not_of(' ');
    if (first != std::string::npos && text.compare(first, 4, "Roll") == 0) g.Events.TopLine = n;
  }
  return true;
}

void RecordEventsFromNow(Game& g) {
  g.RecordEvents = true;
  LogSessionHeader(g);
}

void StopRecordingEvents(Game& g) { g.RecordEvents = false; }

bool BuildEventsLogIndex(Game& g) {
  constexpr const char* kLabel = "sub Build Events Log Index";
  const std::string textPath = EventsLogTextPath(g), indexPath = EventsLogIndexPath(g);
  if (textPath.empty() || indexPath.empty()) return false;
  std::FILE* log = std::fopen(textPath.c_str(), "rb");
  if (!log) return Fail(g, kLabel);
  std::vector<uint8_t> out;
  int64_t position = 0;
  bool lineStart = true;
  int c;
  while ((c = std::fgetc(log)) != EOF) {
    if (lineStart) {
      out.resize(out.size() + 4);
      PutRecord(&out[out.size() - 4], static_cast<int32_t>(position + 1));
      lineStart = false;
    }
    ++position;
    if (c == '\n') lineStart = true;
  }
  std::fclose(log);
  std::FILE* index = std::fopen(indexPath.c_str(), "wb");
  if (!index) return Fail(g, kLabel);
  bool ok = out.empty() || std::fwrite(out.data(), 1, out.size(), index) == out.size();
  ok = std::fclose(index) == 0 && ok;
  if (!ok) return Fail(g, kLabel);
  // Its first bytes written back unchanged: the file's stamp tells that the index is new.
  if (std::FILE* touch = std::fopen(textPath.c_str(), "r+b")) {
    uint8_t head[4];
    const size_t got = std::fread(head, 1, 4, touch);
    if (got > 0 && std::fseek(touch, 0, SEEK_SET) == 0) std::fwrite(head, 1, got, touch);
    std::fclose(touch);
  }
  g.Events.FailureReported = false;
  return true;
}

bool ClearEventsLog(Game& g) {
  g.Events.TopLine = 1;
  bool ok = true;
  for (const std::string& path : {EventsLogIndexPath(g), EventsLogTextPath(g)}) {
    std::error_code ec;
    if (!path.empty() && !fs::remove(path, ec) && ec) ok = false;
  }
  return ok || Fail(g, "sub Clear Events Log");
}

int32_t EventsLogLineCount(const Game& g) {
  const std::string path = EventsLogIndexPath(g);
  std::error_code ec;
  const uintmax_t size = path.empty() ? 0 : fs::file_size(path, ec);
  return ec ? 0 : static_cast<int32_t>(size / 4);
}

std::string EventsLogLine(const Game& g, int32_t n) {
  // One record of the index and one line of the text: the view's cost is the lines shown.
  if (n < 1) return {};
  std::FILE* index = std::fopen(EventsLogIndexPath(g).c_str(), "rb");
  if (!index) return {};
  uint8_t b[4];
  const bool got = std::fseek(index, (n - 1) * 4L, SEEK_SET) == 0 && std::fread(b, 1, 4, index) == 4;
  std::fclose(index);
  if (!got) return {};
  std::FILE* f = std::fopen(EventsLogTextPath(g).c_str(), "rb");
  if (!f) return {};
  std::string line = LineAt(f, GetRecord(b));
  std::fclose(f);
  return line;
}

bool FindInLog(Game& g, int direction) {
  if (g.Events.FindText.find_first_not_of(' ') == std::string::npos) return FindInLogAsk(g);
  const std::vector<int32_t> records = ReadIndex(EventsLogIndexPath(g));
  const auto count = static_cast<int32_t>(records.size());
  if (count == 0) return false;
  std::FILE* f = std::fopen(EventsLogTextPath(g).c_str(), "rb");
  if (!f) return Fail(g, "sub Find In Log");
  const std::string wanted = Lowered(g.Events.FindText);
  int32_t line = g.Events.TopLine < 1 ? 1 : g.Events.TopLine > count ? count : g.Events.TopLine;
  bool found = false;
  for (int32_t k = 0; k < count && !found; ++k) {
    line += direction < 0 ? -1 : 1;
    if (line > count) line = 1;
    if (line < 1) line = count;
    found = Lowered(LineAt(f, records[static_cast<size_t>(line - 1)])).find(wanted) != std::string::npos;
  }
  std::fclose(f);
  if (!found) return false;
  g.Events.TopLine = line;
  if (g.Ui && !g.SilentMode) g.Ui->Refresh({"frmEventsLog"});
  return true;
}

bool FindInLogAsk(Game& g) {
  const MessageReply reply =
      Tell(g, "Enter the text you'd like to find.\n\nIf found, the line will scroll to the top of the events log.",
           "Find", 0, msg::kOk | msg::kCancel | msg::kInput, g.Events.FindText);
  if (reply.Button == kButtonCancel || reply.Input.find_first_not_of(' ') == std::string::npos) return false;
  g.Events.FindText = reply.Input;
  return FindInLog(g, 1);
}
