#pragma once
// The four sound lists ("*.stk" stickman's calls by total, "*.dce" dice, "*.win"
// winnings, "*.chp" checks) and their playing, asynchronous, with Qt Multimedia. A sound
// that can't be played, or a machine without audio, is skipped silently.

#include <QObject>
#include <map>
#include <random>
#include <string>
#include <vector>

class QSoundEffect;

enum SoundKind { kSoundStick = 0, kSoundDice, kSoundWin, kSoundChecks };

struct SoundLists {
  std::array<std::vector<std::string>, 4> files;  // full paths, sorted by name
  // The first row of each list: 0 off; the win list's 2 picks at random.
  std::array<int, 4> choice{1, 1, 1, 1};
  std::string dice;  // the chosen dice sound; "soft.dce" when there is one
};

// Fills the lists from the folders, the first holding a name winning over later ones.
SoundLists FillSoundLists(const std::vector<std::string>& folders);
// The stickman's call of a total: the file whose name holds the total ("stick 07.stk").
std::string StickSoundFor(const SoundLists& lists, int total);

class SoundBank : public QObject {
  Q_OBJECT
 public:
  SoundBank(std::vector<std::string> folders, bool enabled, QObject* parent = nullptr);
  void Fill();
  const SoundLists& Lists() const { return lists_; }
  // A file by bare name (found in the folders) or by path; "" or a missing file plays nothing.
  void Play(const std::string& file);
  void PlayStick(int total);
  void PlayDice();
  void PlayWin();
  void PlayChecks();
  // The file of a list chosen as the list's setting says; "" for none.
  std::string Chosen(SoundKind kind);
  bool enabled() const { return enabled_; }

 private:
  std::vector<std::string> folders_;
  bool enabled_;
  SoundLists lists_;
  std::map<std::string, QSoundEffect*> effects_;
  std::minstd_rand cosmetic_{20260405};  // cosmetic choices never use the game's generators
};
