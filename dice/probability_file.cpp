#include "dice/probability_file.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "storage/error_report.h"
#include "storage/fixed_record.h"
#include "storage/paths.h"

namespace {

constexpr int kRecord = 256;
constexpr int kHeaderField = 200;
constexpr int kHeaderLength = 42;
constexpr int kValues = 2 * ProbabilityTable::kColumns * ProbabilityTable::kRows;  // 224
constexpr const char* kLoadLabel = "sub Load Probability File";
constexpr const char* kSaveLabel = "sub Save Probability File";

// The values in file order, which is the order of ProbabilityTable::Cells.
template <class Table>
auto& ValueAt(Table& t, int i) {
  constexpr int perPlane = ProbabilityTable::kColumns * ProbabilityTable::kRows;
  return t.Cells[i / perPlane][(i % perPlane) / ProbabilityTable::kRows][i % ProbabilityTable::kRows];
}

}  // namespace

bool LoadProbabilityFile(const std::string& path, ProbabilityTable& t, std::string& error) {
  std::error_code ec;
  const std::filesystem::path file(path);
  if (path.empty() || !std::filesystem::exists(file, ec)) {
    error = ErrorReport("File not found", 53, kLoadLabel);
    return false;
  }
  std::ifstream in(file, std::ios::binary);
  if (std::filesystem::is_directory(file, ec) || !in) {
    error = ErrorReport("Path/File access error", 75, kLoadLabel);
    return false;
  }
  // Whatever the file lacks reads as zeros, as a record read past the end does.
  std::array<unsigned char, kProbabilityFileSize> bytes{};
  in.read(reinterpret_cast<char*>(bytes.data()), kProbabilityFileSize);
  if (in.bad()) {
    error = ErrorReport("Path/File access error", 75, kLoadLabel);
    return false;
  }
  if (std::memcmp(bytes.data(), kProbabilityFileHeader, kHeaderLength) != 0) {
    error = kNotAProbabilityFile;
    return false;
  }
  ProbabilityTable read;
  for (int i = 0; i < kValues; ++i) ValueAt(read, i) = GetInt32(bytes.data() + kRecord + 4 * i);
  t = read;
  return true;
}

bool SaveProbabilityFile(const std::string& path, const ProbabilityTable& t, std::string& error) {
  std::array<unsigned char, kProbabilityFileSize> bytes{};
  std::memcpy(bytes.data(), kProbabilityFileHeader, kHeaderLength);
  std::memset(bytes.data() + kHeaderLength, ' ', kHeaderField - kHeaderLength);
  for (int i = 0; i < kValues; ++i) PutInt32(bytes.data() + kRecord + 4 * i, ValueAt(t, i));
  // The second half of record 5: the record buffer still held record 4's second half.
  constexpr int record4SecondHalf = kRecord * 3 + kRecord / 2, record5SecondHalf = kRecord * 4 + kRecord / 2;
  std::memcpy(bytes.data() + record5SecondHalf, bytes.data() + record4SecondHalf, kRecord / 2);

  std::error_code ec;
  const std::filesystem::path file(path);
  if (file.has_parent_path() && !std::filesystem::is_directory(file.parent_path(), ec)) {
    error = ErrorReport("Path not found", 76, kSaveLabel);
    return false;
  }
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  if (out) out.write(reinterpret_cast<const char*>(bytes.data()), kProbabilityFileSize);
  if (out) out.close();
  if (!out) {
    error = ErrorReport("Path/File access error", 75, kSaveLabel);
    return false;
  }
  return true;
}

bool LoadProbabilityFile(PercentageDice& p, const std::string& programFolder, const std::string& name,
                         std::string& error) {
  if (!LoadProbabilityFile(InProgramFolder(programFolder, name), p.Table, error)) return false;
  p.ProbabilityFileName = name;
  p.ProbabilityChanged = false;
  return true;
}

bool SaveProbabilityFile(PercentageDice& p, const std::string& programFolder, const std::string& name,
                         std::string& error) {
  if (!SaveProbabilityFile(InProgramFolder(programFolder, name), p.Table, error)) return false;
  p.ProbabilityFileName = name;
  p.ProbabilityChanged = false;
  return true;
}
