#include "automation/auto_play.h"

#include <string>

#include "engine/bet_states.h"
#include "engine/online_link.h"
#include "storage/language_text.h"

namespace {

std::string Lower(std::string_view s) {
  std::string out(s);
  for (char& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  while (!out.empty() && out.back() == ' ') out.pop_back();
  while (!out.empty() && out.front() == ' ') out.erase(out.begin());
  return out;
}

int IndexOf(const std::string& word, std::initializer_list<const char*> words) {
  int i = 0;
  for (const char* w : words) {
    if (word == w) return i;
    ++i;
  }
  if (word.size() == 1 && word[0] >= '0' && word[0] < '0' + static_cast<int>(words.size())) return word[0] - '0';
  return -1;
}

}  // namespace

void SetAdjustMode(Game& g, int seat, int mode) { g.AdjustForPayoff[seat].fill(mode); }

int AdjustMode(const Game& g, int seat) { return g.AdjustForPayoff[seat][3]; }

std::string BiasText(int family, int bias) {
  static const char* const kFamilies[] = {"Place bets", "Lay bets", "Do odds", "Don't odds"};
  static const char* const kBiases[] = {"nearest", "increase", "decrease"};
  if (family < 0 || family > 3 || bias < 0 || bias > 2) return "";
  return std::string(kFamilies[family]) + " bias: " + kBiases[bias];
}

void SetWorkOnComeOut(Game& g, int seat, int bet, bool works) {
  g.Rules.WorkOnComeOut[bet][seat] = works;
  FollowWorkOnComeOut(g, seat, bet);
  // The other side follows the rule as this table did.
  if (g.Online) g.Online->WorkOnComeOutChanged(seat);
}

void SetWorkOnComeOutDefault(Game& g, int seat, int bet) {
  SetWorkOnComeOut(g, seat, bet, g.Rules.WorkOnComeOut[bet][0]);
}

std::string SelectedPlayersLabel(const Game& g, const std::vector<int>& selectedSeats) {
  int seated = 0;
  for (int s = 1; s < kSeats; ++s) seated += SeatOccupied(g, s);
  const int n = static_cast<int>(selectedSeats.size());
  if (n == 0) return std::string(LanguageText(g.LanguageId, 101));
  if (n == seated) return std::string(LanguageText(g.LanguageId, 104));
  return std::to_string(n) + " " + std::string(LanguageText(g.LanguageId, n == 1 ? 102 : 103));
}

bool ApplyAutoPlay(Game& g, int seat, std::string_view keyText, std::string_view valueText, std::string& error) {
  const std::string key = Lower(keyText), value = Lower(valueText);
  if (key == "adjust") {
    const int mode = IndexOf(value, {"manual", "minor", "color"});
    if (mode < 0) return error = "adjust is manual, minor or color.", false;
    SetAdjustMode(g, seat, mode);
    return true;
  }
  const int family = IndexOf(key, {"place-bias", "lay-bias", "odds-bias", "dont-odds-bias"});
  if (family >= 0 && key.size() > 1) {
    const int bias = IndexOf(value, {"nearest", "increase", "decrease"});
    if (bias < 0) return error = key + " is nearest, increase or decrease.", false;
    g.AdjustBias[seat][family] = bias;
    return true;
  }
  const int aid = IndexOf(key, {"take-odds", "lay-odds", "down-place", "pass-dice"});
  if (aid >= 0 && key.size() > 1) {
    const int on = IndexOf(value, {"off", "on"});
    if (on < 0) return error = key + " is on or off.", false;
    BySeat<bool>* aids[] = {&g.AutoTakeOdds, &g.AutoLayOdds, &g.AutoDownPlace, &g.AutoPassDice};
    (*aids[aid])[seat] = on == 1;
    return true;
  }
  if (key.rfind("work ", 0) == 0) {
    const int bet = FindBetByName(key.substr(5));
    if (bet == 0) return error = "there is no bet named \"" + std::string(keyText.substr(5)) + "\".", false;
    const int works = IndexOf(value, {"no", "yes", "default"});
    if (works < 0) return error = "work is yes, no or default.", false;
    if (works == 2) SetWorkOnComeOutDefault(g, seat, bet);
    else SetWorkOnComeOut(g, seat, bet, works == 1);
    return true;
  }
  error = "\"" + std::string(keyText) +
          "\" is no Auto-Play setting: adjust, place-bias, lay-bias, odds-bias, dont-odds-bias, take-odds, "
          "lay-odds, down-place, pass-dice or \"work BET\".";
  return false;
}
