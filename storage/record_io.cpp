#include "storage/record_io.h"

#include <cmath>
#include <cstring>

#include "storage/fixed_record.h"
#include "storage/paths.h"

void PutFixedText(unsigned char* at, int width, const std::string& text) {
  const std::string bytes = Utf8ToWindows1252(text);
  const size_t n = std::min(bytes.size(), static_cast<size_t>(width));
  std::memset(at, ' ', static_cast<size_t>(width));
  std::memcpy(at, bytes.data(), n);
}

std::string GetFixedText(const unsigned char* at, int width) {
  size_t n = static_cast<size_t>(width);
  while (n > 0 && (at[n - 1] == ' ' || at[n - 1] == 0)) --n;
  return Windows1252ToUtf8(std::string_view(reinterpret_cast<const char*>(at), n));
}

unsigned char* RecordIo::NewRecord() {
  out_.resize(out_.size() + kFixedRecordBytes, 0);
  ++next_;
  return out_.data() + out_.size() - kFixedRecordBytes;
}

const unsigned char* RecordIo::ReadRecord() {
  const size_t at = static_cast<size_t>(next_) * kFixedRecordBytes;
  if (at + kFixedRecordBytes > in_->size()) Fault();
  ++next_;
  return in_->data() + at;
}

void RecordIo::Text(std::string& text) {
  std::string date;
  Text(text, date);
}

void RecordIo::Text(std::string& text, std::string& date) {
  if (Reading()) {
    const unsigned char* r = ReadRecord();
    text = GetFixedText(r, kTextChars);
    date = GetFixedText(r + kTextChars, kDateChars);
    return;
  }
  unsigned char* r = NewRecord();
  PutFixedText(r, kTextChars, text);
  PutFixedText(r + kTextChars, kDateChars, date);
}

void RecordIo::LongText(std::string& text) {
  if (Reading()) {
    text = GetFixedText(ReadRecord(), kFixedRecordBytes);
    return;
  }
  PutFixedText(NewRecord(), kFixedRecordBytes, text);
}

// ---- Runs.

unsigned char* RecordIo::Run::Slot() {
  if (used_ + width_ > kFixedRecordBytes) {
    io_.NewRecord();
    used_ = 0;
  }
  unsigned char* at = io_.out_.data() + io_.out_.size() - kFixedRecordBytes + used_;
  used_ += width_;
  return at;
}

const unsigned char* RecordIo::Run::Next() {
  if (used_ + width_ > kFixedRecordBytes) {
    io_.ReadRecord();
    used_ = 0;
  }
  const unsigned char* at = io_.in_->data() + static_cast<size_t>(io_.next_ - 1) * kFixedRecordBytes + used_;
  used_ += width_;
  return at;
}

void RecordIo::Run::Fault() const { io_.Fault(); }

void RecordIo::Run::Int(int32_t& v) { Int(v, INT32_MIN, INT32_MAX); }

void RecordIo::Run::Int(int32_t& v, int32_t lo, int32_t hi) {
  if (!io_.Reading()) {
    if (width_ == 4) PutInt32(Slot(), v);
    else PutInt64(Slot(), int64_t{v} * ::Money::kScale);
    return;
  }
  const int64_t read = width_ == 4 ? GetInt32(Next()) : GetInt64(Next()) / ::Money::kScale;
  if (read < lo || read > hi) Fault();
  v = static_cast<int32_t>(read);
}

void RecordIo::Run::Bool(bool& v) {
  int32_t word = v ? -1 : 0;
  Int(word);
  v = word != 0;
}

void RecordIo::Run::Float(float& v) {
  if (!io_.Reading()) {
    uint32_t bits;
    std::memcpy(&bits, &v, 4);
    PutInt32(Slot(), static_cast<int32_t>(bits));
    return;
  }
  const uint32_t bits = static_cast<uint32_t>(GetInt32(Next()));
  float f;
  std::memcpy(&f, &bits, 4);
  if (!std::isfinite(f)) Fault();
  v = f;
}

void RecordIo::Run::Double(double& v) {
  if (!io_.Reading()) {
    uint64_t bits;
    std::memcpy(&bits, &v, 8);
    PutInt64(Slot(), static_cast<int64_t>(bits));
    return;
  }
  const uint64_t bits = static_cast<uint64_t>(GetInt64(Next()));
  double d;
  std::memcpy(&d, &bits, 8);
  if (!std::isfinite(d)) Fault();
  v = d;
}

void RecordIo::Run::Long(int64_t& v, int64_t lo, int64_t hi) {
  if (!io_.Reading()) {
    PutInt64(Slot(), v);
    return;
  }
  const int64_t read = GetInt64(Next());
  if (read < lo || read > hi) Fault();
  v = read;
}

void RecordIo::Run::Money(::Money& v) { Long(v.raw, INT64_MIN, INT64_MAX); }

void RecordIo::Run::Money(::Money& v, ::Money lo, ::Money hi) { Long(v.raw, lo.raw, hi.raw); }

void RecordIo::Run::Skip(int slots) {
  for (int i = 0; i < slots; ++i) {
    if (io_.Reading()) Next();
    else Slot();
  }
}
