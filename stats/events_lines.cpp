// The lines of the events log, each built only when the log is on and its kind chosen.

#include <fmt/format.h>

#include <filesystem>

#include "engine/game_state.h"
#include "stats/events_log.h"
#include "storage/language_text.h"

namespace {

bool Chosen(const Game& g, int32_t kind) { return (g.EventsLogCategories & kind) != 0; }

// A section's header goes in once, with its first line.
class Section {
 public:
  Section(Game& g, const char* header) : g_(g), header_(header) {}
  void Line(const std::string& text) {
    if (!written_) AddEventLine(g_, header_);
    written_ = true;
    AddEventLine(g_, text);
  }

 private:
  Game& g_;
  const char* header_;
  bool written_ = false;
};

std::string Stick(int seat) {
  const std::string_view name = SeatName(seat);
  if (name.empty()) return {};
  return std::string(1, name[0]) + (seat <= 4 ? "-left" : "-right");
}

std::string ScriptLine(const Game& g, int s) {
  if (!g.ScriptActive[s]) return "      " + g.PlayerName[s] + " deactivated script";
  if (g.ScriptFile[s].empty()) return "      " + g.PlayerName[s] + " activated untitled script";
  return "      " + g.PlayerName[s] + " activated script (" + g.ScriptFile[s] + ")";
}

std::string HandLine(const Game& g, int shooter, bool sameShooter) {
  if (shooter == 0) return "----New hand, come-out roll----------";
  return std::string(sameShooter ? "----Same shooter (" : "----New shooter (") + g.PlayerName[shooter] +
         ") coming out----------";
}

// "Ann increased to $1010 ($10 gain)": `up` and `down` close the bracket for each sign.
std::string BankrollLine(const Game& g, int s, Money change, const char* up, const char* down) {
  return "      " + g.PlayerName[s] + (change > Money{} ? " increased to $" : " decreased to $") +
         MoneyText(g.Bankroll[s]) + " ($" + MoneyText(Abs(change)) + (change > Money{} ? up : down);
}

// What the seat had on the bet at the last roll's start, with the Come and Don't Come
// flats that travelled since counted as standing where they went.
Money AmountBefore(const Game& g, int s, int b) {
  const EventsLog& e = g.Events;
  if (e.SeatLeft[s]) return {};
  Money m = g.BetAmountStartOfRoll[s][b];
  if (b == bet::Come || b == bet::DontCome) {
    for (int k = b == bet::Come ? 0 : 6, end = k + 6; k < end; ++k) m -= e.Moved[s][k];
  } else if (b >= bet::Come4 && b <= bet::Come10) {
    m += e.Moved[s][b - bet::Come4];
  } else if (b >= bet::DontCome4 && b <= bet::DontCome10) {
    m += e.Moved[s][6 + b - bet::DontCome4];
  }
  return m;
}

void LogBetChanges(Game& g, Section& bets, int s) {
  const std::string& name = g.PlayerName[s];
  for (int w = 0; w < 2; ++w) {
    uint64_t bits = g.SeatBets[s][w] | g.SeatBetsAtStart[s][w];
    for (; bits; bits &= bits - 1) {
      const int b = w * 64 + __builtin_ctzll(bits);
      const Money now = g.BetAmount[s][b], before = AmountBefore(g, s, b);
      if (now == before) continue;
      const std::string bet(BetName(b));
      if (before.raw <= 0) bets.Line("      " + name + " bet $" + MoneyText(now) + " on " + bet);
      else if (now.raw <= 0) bets.Line("      " + name + " removed $" + MoneyText(before) + " from " + bet);
      else bets.Line("      " + name + (now > before ? " increased " : " decreased ") + bet + " to $" + MoneyText(now));
    }
  }
  PresentBets(g, s, [&](int b) {
    const int now = g.BetWorking[s][b], was = g.Events.SeatLeft[s] ? 0 : g.BetWorkingBeforeRoll[s][b];
    const std::string bet(BetName(b));
    if (now == -1 && was != -1) bets.Line("      " + name + " called OFF " + bet);
    else if (now == 2 && was != 2) bets.Line("      " + name + " called ON " + bet);
    else if ((was == -1 || was == 2) && now != -1 && now != 2)
      bets.Line("      " + name + "'s " + bet + " bet working normally again");
  });
}

void LogCheckStackChanges(Game& g, Section& stacks, int s) {
  if (!g.HasCheckStacks[s]) return;
  for (int r = kCheckStackRow; r < kBetRows; ++r) {
    const Money now = g.BetAmount[s][r];
    const Money before = g.Events.SeatLeft[s] ? Money{} : g.BetAmountStartOfRoll[s][r];
    if (now == before) continue;
    stacks.Line("      " + g.PlayerName[s] + (now > before ? " increased CheckStack" : " decreased CheckStack") +
                std::to_string(r - kCheckStackRow) + " to " + MoneyText(now));
  }
}

// The platform's short forms, the same on every machine: "3/9/2026" and "2:05:07 PM".
std::string DateText(const LocalDateTime& t) { return fmt::format("{}/{}/{}", t.month, t.day, t.year); }
std::string TimeText(const LocalDateTime& t) {
  const int h = t.hour % 12 == 0 ? 12 : t.hour % 12;
  return fmt::format("{}:{:02}:{:02} {}", h, t.minute, t.second, t.hour < 12 ? "AM" : "PM");
}

}  // namespace

void StartEventsLogSession(Game& g) {
  if (g.Events.ClearLogNewSessions) ClearEventsLog(g);
  g.Events.ResultHeaderWritten = false;
  g.Events.AtmNet = {};
  g.Events.Moved = {};
  g.Events.SeatLeft = {};
}

void LogSessionHeader(Game& g) {
  std::error_code ec;
  const std::string path = EventsLogTextPath(g);
  if (!path.empty() && std::filesystem::exists(path, ec)) AddEventLine(g, std::string(53, '='));
  const LocalDateTime now = g.Time ? g.Time->Now() : DefaultClock().Now();
  const bool online = g.OnlineRole != 0;
  AddEventLine(g, std::string(online ? " New online session started " : " New session started ") + DateText(now) +
                      " @ " + TimeText(now));
  if (online) {
    AddEventLine(g, "    Game name: " + g.OnlineGameName);
    AddEventLine(g, "    Host name: " + g.HostName);
  }
  Section players(g, "    Players:");
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s))
      players.Line("      " + g.PlayerName[s] + " at stick " + Stick(s) + " with $" + MoneyText(g.Bankroll[s]));
  if (g.Rolls.RecorderState == 2)
    AddEventLine(g, "    Dice roll file playback activated (" + g.Rolls.RollFileName + ")");
  Section scripts(g, "    AutoBets:");
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s) && g.ScriptActive[s]) scripts.Line(ScriptLine(g, s));
  AddEventLine(g, HandLine(g, g.Table.Shooter, false));
}

void LogChangesSinceLastRoll(Game& g) {
  EventsLog& e = g.Events;
  e.ResultHeaderWritten = false;
  Section scripts(g, "    AutoBets:");
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s) && g.ScriptActive[s] != g.ScriptActiveCopy[s]) scripts.Line(ScriptLine(g, s));
  if (Chosen(g, events::kBankrollChanges)) {
    Section bankroll(g, "    Bankroll:");
    for (int s = 1; s < kSeats; ++s)
      if (SeatOccupied(g, s) && e.AtmNet[s].raw != 0)
        bankroll.Line(BankrollLine(g, s, e.AtmNet[s], " ATM withdrawal)", " ATM deposit)"));
  }
  if (Chosen(g, events::kBetChanges)) {
    Section bets(g, "    Bets:");
    for (int s = 1; s < kSeats; ++s)
      if (SeatOccupied(g, s)) LogBetChanges(g, bets, s);
  }
  if (Chosen(g, events::kCheckStackChanges)) {
    Section stacks(g, "    CheckStacks:");
    for (int s = 1; s < kSeats; ++s)
      if (SeatOccupied(g, s)) LogCheckStackChanges(g, stacks, s);
  }
  e.AtmNet = {};
  e.Moved = {};
  e.SeatLeft = {};
}

void LogRollLine(Game& g, RollSource source) {
  if (!Chosen(g, events::kRolls)) return;
  const TableState& t = g.Table;
  std::string line = " Roll #" + std::to_string(static_cast<int64_t>(g.Stats.RollCount[kSessionScope][0]) + 1) + ":  " +
                     std::to_string(t.Die1 + t.Die2) + " (" + std::to_string(t.Die1) + "." + std::to_string(t.Die2) +
                     ")";
  switch (source) {
    case RollSource::OnlineHost: line += " from online host"; break;
    case RollSource::ManualPad: line += " from manual roll pad"; break;
    case RollSource::PopupFile: line += " from pop-up roll file"; break;
    case RollSource::RollFile: line += " from roll file"; break;
    case RollSource::Generator:
      line += " from RNG #" + std::to_string(g.Dice.rngNumber);
      if (g.Percentage.PercentageDiceOn) {
        if (g.Percentage.ProbabilityFileName.empty()) line += " using untitled probability matrix";
        else line += " using probability matrix: " + g.Percentage.ProbabilityFileName;
      }
      break;
  }
  AddEventLine(g, line);
}

void LogOutcome(Game& g, int pointBefore) {
  if (!Chosen(g, events::kPassesMisses)) return;
  const int total = g.Table.DiceTotal;
  const char* line = nullptr;
  if (pointBefore != 0) {
    if (total == pointBefore) line = "    Pass (point rolled)";
    else if (total == 7) line = "    Miss (seven-out)";
  } else if (total == 7 || total == 11) {
    line = "    Pass (natural)";
  } else if (total == 2 || total == 3 || total == 12) {
    line = "    Miss (craps natural)";
  } else if (total >= 4 && total <= 10) {
    line = "    Point established";
  }
  if (line) AddEventLine(g, line);
}

void LogBetResult(Game& g, int seat, int bet, Money payoff) {
  const bool won = payoff > Money{};
  const bool wins = Chosen(g, events::kBetsWon), losses = Chosen(g, events::kBetsLost);
  if (won ? !wins : !losses) return;
  if (!g.Events.ResultHeaderWritten) {
    AddEventLine(g, wins && losses ? "    Wins/losses:" : wins ? "    Wins:" : "    Losses:");
    g.Events.ResultHeaderWritten = true;
  }
  AddEventLine(g, "      " + g.PlayerName[seat] + (won ? " won $" : " lost $") + MoneyText(Abs(payoff)) + " on " +
                      std::string(BetName(bet)));
}

void LogBetMoved(Game& g, int seat, int from, int to, Money amount) {
  if (from == bet::Come && to >= bet::Come4 && to <= bet::Come10) g.Events.Moved[seat][to - bet::Come4] += amount;
  if (from == bet::DontCome && to >= bet::DontCome4 && to <= bet::DontCome10)
    g.Events.Moved[seat][6 + to - bet::DontCome4] += amount;
  if (!Chosen(g, events::kBetChanges)) return;
  AddEventLine(g, "    " + g.PlayerName[seat] + "'s " + std::string(BetName(from)) + " bet moved to " +
                      std::string(BetName(to)));
}

void LogRollEnd(Game& g) {
  if (Chosen(g, events::kBankrollChanges)) {
    Section bankroll(g, "    Bankroll:");
    for (int s = 1; s < kSeats; ++s) {
      if (!SeatOccupied(g, s)) continue;
      const Money change = g.Bankroll[s] - g.BankrollStartOfRoll[s];
      if (change.raw != 0) bankroll.Line(BankrollLine(g, s, change, " gain)", " loss)"));
    }
  }
  const TableState& t = g.Table;
  if (t.DiceTotal == 7 && t.PriorPoint > 0 && Chosen(g, events::kPassesMisses)) {
    // The hand's own shooter has gone when nobody is named: a new hand, whoever holds the dice.
    const int shooter = t.LastHandShooter == 0 ? 0 : t.Shooter;
    AddEventLine(g, HandLine(g, shooter, shooter == t.LastHandShooter));
  }
}

void LogSeeded(Game& g, int rng, int32_t seed) {
  AddEventLine(g, "    RNG #" + std::to_string(rng) + " seeded: " + std::to_string(seed));
}

void LogDicePassed(Game& g, int seat) {
  if (Chosen(g, events::kShooterChanges)) AddEventLine(g, "    The dice were passed to " + g.PlayerName[seat]);
}

void LogCashedOut(Game& g, int seat, Money abandoned) {
  const int lang = g.LanguageId;
  const Money net = g.Bankroll[seat] - g.BuyInTotal[seat + kSessionScope];
  std::string line = "    " + g.PlayerName[seat] + std::string(LanguageText(lang, 27)) + MoneyText(g.Bankroll[seat]);
  if (net.raw != 0) line += " ($" + MoneyText(Abs(net)) + std::string(LanguageText(lang, net.raw < 0 ? 28 : 29));
  else line += " (" + std::string(LanguageText(lang, 30));
  if (abandoned.raw > 0)
    line += std::string(LanguageText(lang, 31)) + MoneyText(abandoned) + std::string(LanguageText(lang, 32));
  else line += ")";
  AddEventLine(g, line);
  // The next player at this seat starts with nothing to compare with.
  g.Events.AtmNet[seat] = Money{};
  g.Events.SeatLeft[seat] = true;
}

void LogPlayerMoved(Game& g, int from, int to) {
  EventsLog& e = g.Events;
  std::swap(e.AtmNet[from], e.AtmNet[to]);
  std::swap(e.Moved[from], e.Moved[to]);
  std::swap(e.SeatLeft[from], e.SeatLeft[to]);
  if (SeatOccupied(g, to)) AddEventLine(g, "    " + g.PlayerName[to] + " moved to stick " + Stick(to));
  if (SeatOccupied(g, from)) AddEventLine(g, "    " + g.PlayerName[from] + " moved to stick " + Stick(from));
}
