#include "stats/sessions_log_file.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "storage/error_report.h"
#include "storage/fixed_record.h"

namespace {

namespace fs = std::filesystem;

constexpr int kHeaderText = 92;  // bytes 0..91
constexpr int kCountAt = 92;
constexpr int kUnusedAt = 96;
constexpr int32_t kMaxSessions = INT32_MAX - 1;  // the count must still fit after one more record

using Bytes = std::array<unsigned char, kSessionRecordBytes>;

Bytes HeaderBytes(int32_t count, const std::array<unsigned char, kSessionRecordBytes - kUnusedAt>& unused) {
  Bytes h{};
  std::memset(h.data(), ' ', kHeaderText);
  std::memcpy(h.data(), kSessionsLogHeader, std::strlen(kSessionsLogHeader));
  PutInt32(h.data() + kCountAt, count);
  std::memcpy(h.data() + kUnusedAt, unused.data(), unused.size());
  return h;
}

// The format line, with the blanks that pad it, and nothing else.
bool HeaderMatches(const Bytes& h) {
  int end = kHeaderText;
  while (end > 0 && h[static_cast<size_t>(end - 1)] == ' ') --end;
  const auto len = static_cast<int>(std::strlen(kSessionsLogHeader));
  return end == len && std::memcmp(h.data(), kSessionsLogHeader, static_cast<size_t>(len)) == 0;
}

Bytes RecordBytes(const SessionRecord& r) {
  Bytes b{};
  for (int f = 0; f < kSessionFields; ++f) PutInt64(b.data() + 8 * f, r[static_cast<size_t>(f)].raw);
  return b;
}

SessionRecord RecordFrom(const unsigned char* b) {
  SessionRecord r;
  for (int f = 0; f < kSessionFields; ++f) r[static_cast<size_t>(f)] = Money::FromRaw(GetInt64(b + 8 * f));
  return r;
}

bool Fail(std::string& error, std::string text) {
  error = std::move(text);
  return false;
}

// Opens an existing log for reading (or reading and writing) and checks its header and
// length against the count. `count` and `header` come back on success.
bool OpenChecked(const std::string& path, std::fstream& f, std::ios::openmode mode, Bytes& header, int32_t& count,
                 std::string& error, const char* label) {
  std::error_code ec;
  const fs::path file(path);
  if (path.empty() || !fs::exists(file, ec)) return Fail(error, ErrorReport("File not found", 53, label));
  if (fs::is_directory(file, ec)) return Fail(error, ErrorReport("Path/File access error", 75, label));
  const auto size = fs::file_size(file, ec);
  if (ec) return Fail(error, ErrorReport("Path/File access error", 75, label));
  f.open(file, mode | std::ios::binary);
  if (!f) return Fail(error, ErrorReport("Path/File access error", 75, label));
  if (size < static_cast<uintmax_t>(kSessionRecordBytes)) return Fail(error, kNotASessionsLog);
  f.read(reinterpret_cast<char*>(header.data()), kSessionRecordBytes);
  if (!f) return Fail(error, ErrorReport("Path/File access error", 75, label));
  if (!HeaderMatches(header)) return Fail(error, kNotASessionsLog);
  count = GetInt32(header.data() + kCountAt);
  // A count the file can't hold means a cut-off or damaged file.
  if (count < 0 || size / kSessionRecordBytes < static_cast<uintmax_t>(count) + 1) return Fail(error, kNotASessionsLog);
  return true;
}

}  // namespace

bool CreateNewSessionsLog(const std::string& path, std::string& error, const char* label) {
  SessionsLogFile empty;
  return WriteSessionsLog(path, empty, error, label);
}

bool ReadSessionsLog(const std::string& path, SessionsLogFile& out, std::string& error, const char* label) {
  std::fstream f;
  Bytes header;
  int32_t count = 0;
  if (!OpenChecked(path, f, std::ios::in, header, count, error, label)) return false;
  SessionsLogFile log;
  std::memcpy(log.Unused.data(), header.data() + kUnusedAt, log.Unused.size());
  log.Records.reserve(static_cast<size_t>(count));
  Bytes b;
  for (int32_t i = 0; i < count; ++i) {
    f.read(reinterpret_cast<char*>(b.data()), kSessionRecordBytes);
    if (!f) return Fail(error, ErrorReport("Path/File access error", 75, label));
    log.Records.push_back(RecordFrom(b.data()));
  }
  out = std::move(log);
  return true;
}

bool ReadSessionsCount(const std::string& path, int32_t& count, std::string& error, const char* label) {
  std::fstream f;
  Bytes header;
  int32_t n = 0;
  if (!OpenChecked(path, f, std::ios::in, header, n, error, label)) return false;
  count = n;
  return true;
}

bool ReadSessionRecord(const std::string& path, int32_t index, SessionRecord& out, std::string& error,
                       const char* label) {
  std::fstream f;
  Bytes header;
  int32_t count = 0;
  if (!OpenChecked(path, f, std::ios::in, header, count, error, label)) return false;
  if (index < 0 || index >= count) return Fail(error, ErrorReport("Bad record number", 63, label));
  f.seekg(static_cast<std::streamoff>(index + 1) * kSessionRecordBytes);
  Bytes b;
  f.read(reinterpret_cast<char*>(b.data()), kSessionRecordBytes);
  if (!f) return Fail(error, ErrorReport("Path/File access error", 75, label));
  out = RecordFrom(b.data());
  return true;
}

bool AppendSessionRecord(const std::string& path, const SessionRecord& record, std::string& error, const char* label) {
  std::fstream f;
  Bytes header;
  int32_t count = 0;
  if (!OpenChecked(path, f, std::ios::in | std::ios::out, header, count, error, label)) return false;
  if (count >= kMaxSessions) return Fail(error, ErrorReport("Overflow", 6, label));
  const Bytes b = RecordBytes(record);
  f.seekp(static_cast<std::streamoff>(count + 1) * kSessionRecordBytes);
  f.write(reinterpret_cast<const char*>(b.data()), kSessionRecordBytes);
  f.flush();
  if (!f) return Fail(error, ErrorReport("Path/File access error", 75, label));
  unsigned char n[4];
  PutInt32(n, count + 1);
  f.seekp(kCountAt);
  f.write(reinterpret_cast<const char*>(n), 4);
  f.flush();
  if (!f) return Fail(error, ErrorReport("Path/File access error", 75, label));
  return true;
}

bool WriteSessionsLog(const std::string& path, const SessionsLogFile& log, std::string& error, const char* label) {
  if (path.empty()) return Fail(error, ErrorReport("Bad file name or number", 52, label));
  if (log.Records.size() > static_cast<size_t>(kMaxSessions)) return Fail(error, ErrorReport("Overflow", 6, label));
  const fs::path file(path);
  std::error_code ec;
  if (fs::is_directory(file, ec)) return Fail(error, ErrorReport("Path/File access error", 75, label));
  fs::path temp = file;
  temp += ".new";
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    if (!out) return Fail(error, ErrorReport("Path/File access error", 75, label));
    const Bytes h = HeaderBytes(static_cast<int32_t>(log.Records.size()), log.Unused);
    out.write(reinterpret_cast<const char*>(h.data()), kSessionRecordBytes);
    for (const SessionRecord& r : log.Records) {
      const Bytes b = RecordBytes(r);
      out.write(reinterpret_cast<const char*>(b.data()), kSessionRecordBytes);
    }
    out.flush();
    if (!out) {
      out.close();
      fs::remove(temp, ec);
      return Fail(error, ErrorReport("Path/File access error", 75, label));
    }
  }
  fs::rename(temp, file, ec);
  if (ec) {
    fs::remove(temp, ec);
    return Fail(error, ErrorReport("Path/File access error", 75, label));
  }
  return true;
}

bool MergeSessionsLogs(const std::string& path, const std::string& other, std::string& error, const char* label) {
  SessionsLogFile log, more;
  if (!ReadSessionsLog(path, log, error, label) || !ReadSessionsLog(other, more, error, label)) return false;
  if (log.Records.size() + more.Records.size() > static_cast<size_t>(kMaxSessions))
    return Fail(error, ErrorReport("Overflow", 6, label));
  log.Records.insert(log.Records.end(), more.Records.begin(), more.Records.end());
  return WriteSessionsLog(path, log, error, label);
}

bool DeleteSessions(const std::string& path, const std::vector<int32_t>& sessions, std::string& error,
                    const char* label) {
  SessionsLogFile log;
  if (!ReadSessionsLog(path, log, error, label)) return false;
  std::vector<bool> gone(log.Records.size(), false);
  for (int32_t s : sessions)
    if (s >= 0 && static_cast<size_t>(s) < gone.size()) gone[static_cast<size_t>(s)] = true;
  std::vector<SessionRecord> kept;
  kept.reserve(log.Records.size());
  for (size_t i = 0; i < log.Records.size(); ++i)
    if (!gone[i]) kept.push_back(log.Records[i]);
  log.Records = std::move(kept);
  return WriteSessionsLog(path, log, error, label);
}

bool DeleteAllSessions(const std::string& path, std::string& error, const char* label) {
  SessionsLogFile log;
  if (!ReadSessionsLog(path, log, error, label)) return false;
  log.Records.clear();
  return WriteSessionsLog(path, log, error, label);
}
