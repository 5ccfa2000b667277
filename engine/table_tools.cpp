#include "engine/table_tools.h"

#include "engine/messages.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "storage/language_text.h"

namespace {

std::string Text(const Game& g, int number, int piece = 0) {
  return std::string(LanguageText(g.LanguageId, number, piece));
}

}  // namespace

bool BetAlwaysWorks(int bet) {
  return bet == bet::PassLine || bet == bet::DontPass || bet == bet::Come || bet == bet::DontCome ||
         (bet >= bet::Come4 && bet <= bet::Come10) || (bet >= bet::DontCome4 && bet <= bet::DontCome10);
}

bool CallBet(Game& g, int seat, int bet, bool on) {
  if (seat < 1 || seat >= kSeats || bet < 1 || bet > kBets) return false;
  if (g.BetAmount[seat][bet].raw <= 0) return false;
  if (BetAlwaysWorks(bet)) {
    Tell(g, Text(g, 59, 0) + std::string(BetName(bet)) + Text(g, 59, 1), Text(g, 58), 0, msg::kOk | msg::kClass1);
    return false;
  }
  const WorkingState before = g.BetWorking[seat][bet], rest = RestingState(g, seat, bet);
  const WorkingState after = on ? (before == -1 ? rest : WorkingState{2}) : (before == 2 ? rest : WorkingState{-1});
  SetWorkingState(g, seat, bet, after);
  return after != before;
}

void CallAllBets(Game& g, int seat, bool on) {
  if (seat < 1 || seat >= kSeats) return;
  for (int b = 1; b <= kBets; ++b)
    if (g.BetAmount[seat][b].raw > 0 && !BetAlwaysWorks(b)) CallBet(g, seat, b, on);
}

Money BuyPlaceBet(Game& g, int seat, int bet) {
  if (bet < bet::Place4 || bet > bet::Place10) {
    Tell(g, Text(g, 57), Text(g, 58), 0, msg::kOk | msg::kClass1);
    return Money{};
  }
  const int to = bet + (bet::Buy4 - bet::Place4);
  const Money amount = g.BetAmount[seat][bet];
  if (amount.raw <= 0) return Money{};
  const int32_t working = g.BetWorking[seat][bet];
  const Money down = -ChangeBet(g, seat, bet, -amount);
  const Money up = ChangeBet(g, seat, to, down);
  if (up < down) ChangeBet(g, seat, bet, down - up);
  // A bet called on or off stays so on its new row.
  if (up.raw > 0 && (working == 2 || working == -1)) g.BetWorking[seat][to] = working;
  return up;
}

void RemoveAllBets(Game& g, int seat) {
  if (seat < 1 || seat >= kSeats) return;
  for (int b = 1; b <= kBets; ++b)
    if (g.BetAmount[seat][b].raw > 0) TakeDown(g, seat, b);
}

std::string RenamePlayer(Game& g, int seat, const std::string& typed) {
  if (seat < 1 || seat >= kSeats || !SeatOccupied(g, seat)) return "";
  std::string name = typed;
  while (!name.empty() && name.front() == ' ') name.erase(name.begin());
  while (!name.empty() && name.back() == ' ') name.pop_back();
  if (name.empty() || name == g.PlayerName[seat]) return "";
  const std::string fault = PlayerNameFault(g, name);
  if (!fault.empty()) return fault;
  g.PlayerName.Set(seat, name);
  // Scripts may name the player: they are compiled again before they next run.
  g.AutoBet.ScriptsCompiled = false;
  return "";
}
