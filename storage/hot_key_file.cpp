#include "storage/hot_key_file.h"

#include <cmath>
#include <cstring>

#include "storage/fixed_record.h"
#include "storage/record_io.h"

namespace {

constexpr int kFileAt = 1, kDescriptionAt = kFileAt + kHotKeyFileChars,
              kInUseAt = kDescriptionAt + kHotKeyDescriptionChars, kShowAt = kInUseAt + 4, kLeftAt = kShowAt + 4,
              kTopAt = kLeftAt + 4, kColourAt = kTopAt + 4;
static_assert(kColourAt + 4 == kHotKeyRecordBytes);

void PutFloat(unsigned char* at, float v) {
  uint32_t bits;
  std::memcpy(&bits, &v, 4);
  PutInt32(at, static_cast<int32_t>(bits));
}

float GetFloat(const unsigned char* at) {
  const auto bits = static_cast<uint32_t>(GetInt32(at));
  float v;
  std::memcpy(&v, &bits, 4);
  return v;
}

}  // namespace

char HotKeyChar(char key, bool shift, bool ctrl) {
  const bool letter = (key >= 'a' && key <= 'z') || (key >= 'A' && key <= 'Z');
  if (!letter) return key;
  const char upper = static_cast<char>(key & ~0x20);
  if (ctrl) return static_cast<char>(upper - 'A' + 1);
  return shift ? static_cast<char>(upper | 0x20) : upper;
}

std::string HotKeyLabel(char key) {
  if (key >= 1 && key <= 26) return std::string("Ctrl+") + static_cast<char>('A' + key - 1);
  if (key >= 'a' && key <= 'z') return std::string("Shift+") + static_cast<char>(key & ~0x20);
  return std::string(1, key);
}

int FindHotKey(const HotKeyTable& table, char key) {
  for (size_t i = 0; i < table.size(); ++i)
    if (table[i].InUse && table[i].Key == key) return static_cast<int>(i);
  return -1;
}

Bytes HotKeyFileBytes(const HotKeyTable& table) {
  Bytes bytes((table.size() + 1) * kHotKeyRecordBytes, 0);
  unsigned char* h = bytes.data();
  h[0] = ' ';
  PutFixedText(h + kFileAt, kHotKeyFileChars, kHotKeysHeader);
  PutFixedText(h + kDescriptionAt, kHotKeyDescriptionChars, "");
  PutInt32(h + kInUseAt, static_cast<int32_t>(table.size()));
  for (size_t i = 0; i < table.size(); ++i) {
    const HotKeyRecord& e = table[i];
    unsigned char* r = bytes.data() + (i + 1) * kHotKeyRecordBytes;
    r[0] = static_cast<unsigned char>(e.Key);
    PutFixedText(r + kFileAt, kHotKeyFileChars, e.ScriptFile);
    PutFixedText(r + kDescriptionAt, kHotKeyDescriptionChars, e.Description);
    PutInt32(r + kInUseAt, e.InUse ? -1 : 0);
    PutInt32(r + kShowAt, e.ShowButton ? -1 : 0);
    PutFloat(r + kLeftAt, e.Left);
    PutFloat(r + kTopAt, e.Top);
    PutInt32(r + kColourAt, e.Colour);
  }
  return bytes;
}

bool ParseHotKeyFile(const Bytes& bytes, HotKeyTable& out) {
  if (bytes.size() < static_cast<size_t>(kHotKeyRecordBytes)) return false;
  const unsigned char* h = bytes.data();
  if (GetFixedText(h + kFileAt, kHotKeyFileChars) != kHotKeysHeader) return false;
  const int32_t count = GetInt32(h + kInUseAt);
  if (count < 0 || count > kMaxHotKeys) return false;
  if (bytes.size() < static_cast<size_t>(count + 1) * kHotKeyRecordBytes) return false;
  HotKeyTable table(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    const unsigned char* r = bytes.data() + static_cast<size_t>(i + 1) * kHotKeyRecordBytes;
    HotKeyRecord& e = table[static_cast<size_t>(i)];
    e.Key = static_cast<char>(r[0]);
    e.ScriptFile = GetFixedText(r + kFileAt, kHotKeyFileChars);
    e.Description = GetFixedText(r + kDescriptionAt, kHotKeyDescriptionChars);
    e.InUse = GetInt32(r + kInUseAt) != 0;
    e.ShowButton = GetInt32(r + kShowAt) != 0;
    e.Left = GetFloat(r + kLeftAt);
    e.Top = GetFloat(r + kTopAt);
    e.Colour = GetInt32(r + kColourAt);
    if (!std::isfinite(e.Left) || !std::isfinite(e.Top)) return false;
  }
  out = std::move(table);
  return true;
}
