#include "surface/sound_bank.h"

#include <QSoundEffect>
#include <QUrl>
#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

const char* const kExtensions[4] = {".stk", ".dce", ".win", ".chp"};

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

}  // namespace

SoundLists FillSoundLists(const std::vector<std::string>& folders) {
  SoundLists lists;
  std::array<std::vector<std::string>, 4> names;
  for (const std::string& folder : folders) {
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(folder, ec)) {
      if (!entry.is_regular_file(ec)) continue;
      const std::string name = entry.path().filename().string();
      const std::string ext = Lower(entry.path().extension().string());
      for (int k = 0; k < 4; ++k) {
        if (ext != kExtensions[k]) continue;
        if (std::find(names[k].begin(), names[k].end(), Lower(name)) != names[k].end()) continue;
        names[k].push_back(Lower(name));
        lists.files[k].push_back(entry.path().string());
      }
    }
  }
  for (auto& list : lists.files)
    std::sort(list.begin(), list.end(), [](const std::string& a, const std::string& b) {
      return fs::path(a).filename() < fs::path(b).filename();
    });
  for (const std::string& f : lists.files[kSoundDice])
    if (Lower(fs::path(f).filename().string()) == "soft.dce") lists.dice = f;
  if (lists.dice.empty() && !lists.files[kSoundDice].empty()) lists.dice = lists.files[kSoundDice].front();
  return lists;
}

std::string StickSoundFor(const SoundLists& lists, int total) {
  const auto& stick = lists.files[kSoundStick];
  for (const std::string& f : stick) {
    const std::string name = fs::path(f).stem().string();
    // The last number in the name is the total it calls.
    size_t end = name.find_last_of("0123456789");
    if (end == std::string::npos) continue;
    size_t start = end;
    while (start > 0 && std::isdigit(static_cast<unsigned char>(name[start - 1]))) --start;
    if (std::stoi(name.substr(start, end - start + 1)) == total) return f;
  }
  return "";
}

SoundBank::SoundBank(std::vector<std::string> folders, bool enabled, QObject* parent)
    : QObject(parent), folders_(std::move(folders)), enabled_(enabled) {
  Fill();
}

void SoundBank::Fill() { lists_ = FillSoundLists(folders_); }

void SoundBank::Play(const std::string& file) {
  if (!enabled_ || file.empty()) return;
  std::string path = file;
  if (fs::path(file).parent_path().empty()) {
    path.clear();
    for (const std::string& folder : folders_) {
      std::error_code ec;
      const fs::path candidate = fs::path(folder) / file;
      if (fs::exists(candidate, ec)) {
        path = candidate.string();
        break;
      }
    }
  }
  std::error_code ec;
  if (path.empty() || !fs::exists(path, ec)) return;
  QSoundEffect*& effect = effects_[path];
  if (effect == nullptr) {
    effect = new QSoundEffect(this);
    effect->setSource(QUrl::fromLocalFile(QString::fromStdString(path)));
  }
  if (effect->status() == QSoundEffect::Error) return;
  effect->play();
}

std::string SoundBank::Chosen(SoundKind kind) {
  const auto& list = lists_.files[kind];
  if (lists_.choice[kind] == 0 || list.empty()) return "";
  if (kind == kSoundDice) return lists_.dice;
  if (kind == kSoundWin && lists_.choice[kind] == 2)
    return list[std::uniform_int_distribution<size_t>(0, list.size() - 1)(cosmetic_)];
  return list.front();
}

void SoundBank::PlayStick(int total) {
  if (lists_.choice[kSoundStick] != 0) Play(StickSoundFor(lists_, total));
}
void SoundBank::PlayDice() { Play(Chosen(kSoundDice)); }
void SoundBank::PlayWin() { Play(Chosen(kSoundWin)); }
void SoundBank::PlayChecks() { Play(Chosen(kSoundChecks)); }
