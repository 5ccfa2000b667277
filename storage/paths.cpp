#include "storage/paths.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>

std::string ResolveDataDir(const std::string& option) {
  if (!option.empty()) return option;
  if (const char* home = std::getenv("DICEHALL_HOME"); home && *home) return home;
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) return std::string(xdg) + "/dicehall";
  const char* home = std::getenv("HOME");
  return std::string(home ? home : ".") + "/.local/share/dicehall";
}

std::string InProgramFolder(const std::string& programFolder, const std::string& name) {
  std::filesystem::path p(name);
  if (p.has_parent_path() || p.is_absolute() || programFolder.empty()) return name;
  return (std::filesystem::path(programFolder) / p).string();
}

std::string InsideFolder(const std::string& folder, const std::string& name) {
  namespace fs = std::filesystem;
  if (folder.empty() || name.empty()) return {};
  const fs::path relative(name);
  if (relative.is_absolute() || relative.has_root_name() || relative.has_root_directory()) return {};
  for (const fs::path& part : relative)
    if (part == "..") return {};
  std::error_code ec;
  // Links are followed as far as they exist, so a link that points out of the folder,
  // whether a folder on the way or the file itself, leads out.
  const fs::path base = fs::weakly_canonical(fs::absolute(folder, ec), ec);
  if (ec) return {};
  const fs::path full = fs::weakly_canonical(base / relative, ec);
  if (ec) return {};
  const std::string b = base.string(), f = full.string();
  if (f.size() <= b.size() || f.compare(0, b.size(), b) != 0 || (f[b.size()] != '/' && b.back() != '/')) return {};
  return f;
}

namespace {

// 0x80..0x9F of Windows-1252; 0 where the code page has no character.
constexpr uint16_t kHigh[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                                0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                                0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void AppendUtf8(std::string& out, uint32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

}  // namespace

std::string Windows1252ToUtf8(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (unsigned char c : bytes) {
    uint32_t cp = c;
    if (c >= 0x80 && c <= 0x9F) cp = kHigh[c - 0x80] ? kHigh[c - 0x80] : 0xFFFD;
    AppendUtf8(out, cp);
  }
  return out;
}

std::string Utf8ToWindows1252(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    uint32_t cp;
    int len;
    if (c < 0x80) {
      cp = c;
      len = 1;
    } else if ((c & 0xE0) == 0xC0) {
      cp = c & 0x1F;
      len = 2;
    } else if ((c & 0xF0) == 0xE0) {
      cp = c & 0x0F;
      len = 3;
    } else if ((c & 0xF8) == 0xF0) {
      cp = c & 0x07;
      len = 4;
    } else {
      out += '?';
      ++i;
      continue;
    }
    if (i + static_cast<size_t>(len) > text.size()) {
      out += '?';
      break;
    }
    bool ok = true;
    for (int k = 1; k < len; ++k) {
      unsigned char cc = static_cast<unsigned char>(text[i + static_cast<size_t>(k)]);
      if ((cc & 0xC0) != 0x80) ok = false;
      cp = (cp << 6) | (cc & 0x3F);
    }
    i += ok ? static_cast<size_t>(len) : 1;
    if (!ok) {
      out += '?';
      continue;
    }
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) {
      out += static_cast<char>(cp);
      continue;
    }
    char mapped = '?';
    for (int k = 0; k < 32; ++k)
      if (kHigh[k] == cp) mapped = static_cast<char>(0x80 + k);
    out += mapped;
  }
  return out;
}
