#include "storage/language_text.h"

#include <array>
#include <cstddef>

namespace {

constexpr int kMaxPieces = 3;

// One row of the English column. Unused trailing pieces stay empty; no real piece is empty.
//
// Where a row reads as one block of sentences with line breaks in it (60, 110, 141), the line
// breaks are kept inside a single piece as "\n". Where a row holds texts the caller uses
// apart (the prompt and the title of 39 and 155), each is its own piece; the prompt of 155
// still carries its own "\n\n".
struct TextRow {
  int number;
  std::array<std::string_view, kMaxPieces> pieces;
};

// Numbers missing here (38, 62..96, 106..109, 151, 168..185, 187 on) have no text.
constexpr TextRow kEnglishRows[] = {
    {1, {"Click an open position on the rail to add a player."}},
    {2, {"Add a Player"}},
    {3, {"Would you like to add a player here?"}},
    {4, {"What's the new player's name?"}},
    {5, {"Add new player"}},
    {6, {"There's already a player named "}},
    {7, {"A player's name can't be all numeric because it can't be used in auto-betting."}},
    {8,
     {" can't be used as a player's name because it contains a word, phrase, or symbol used "
      "in auto-betting."}},
    {9, {"How much would ", " like to buy-in for?"}},
    {10, {"The maximum player bankroll is "}},
    {11, {"The minimum player bankroll is "}},
    {12, {"Click the rail where you want to put "}},
    {13, {"Enter a new name for "}},
    {14, {"Rename player"}},
    {15, {" joined the game at stick ", "-left with $"}},
    {16, {" joined the game at stick ", "-right with $"}},
    {17, {"'s name changed to "}},
    {18, {"Would you like to remove "}},
    {19, {" still has "}},
    {20, {"an active ", " bet "}},
    {21, {"and "}},
    {22, {"an active ", " bet "}},
    {23, {" active ", " bets "}},
    {24, {"that can't be removed and will be abandoned."}},
    {25, {"Total to be abandoned: $"}},
    {26, {"Remove player"}},
    {27, {" cashed out with $"}},
    {28, {" loss"}},
    {29, {" win"}},
    {30, {"broke even"}},
    {31, {" after $"}},
    {32, {" abandoned)"}},
    {33, {"Yes"}},
    {34, {"No"}},
    {35, {"Won"}},
    {36, {"Lost"}},
    {37, {"Error"}},
    {39,
     {"Please enter a whole number between 1 and ",
      " to seed the random number generator:", "Random Number Generator"}},
    {40, {"Your seed value is out of limits."}},
    {41, {" bet"}},
    {42, {" increased by $"}},
    {43, {" decreased by $"}},
    {44, {" remains the same."}},
    {45, {"Bet"}},
    {46, {"units"}},
    {47, {"Bet remainder"}},
    {48, {"lost"}},
    {49, {"Payoff at "}},
    {50, {"&Take bet"}},
    {51, {"&Same bet"}},
    {52, {"Press &1 unit ($"}},
    {53, {"Press &double"}},
    {54, {"&Parlay"}},
    {55, {"Unable to open file"}},
    {56, {"File not found."}},
    {57, {"You can only buy Place bets."}},
    {58, {"Action not allowed"}},
    {59, {"You may not call the ", " bet ON or OFF."}},
    {60, {"An error occurred with your system's clipboard.\nPlease try again."}},
    {61, {"Your system's clipboard is in use by another program.  Please try again."}},
    {97, {"Die"}},
    {98, {"Player"}},
    {99, {"Players"}},
    {100, {"No players present"}},
    {101, {"No players selected"}},
    {102, {"player selected"}},
    {103, {"players selected"}},
    {104, {"All players selected"}},
    {105, {"No players available"}},
    {110,
     {"No players are available to bet.\n\nPlease enter a player or change the requirement to "
      "make a bet on the 'Bets tab' of the configuration screen."}},
    {111, {"Bet required"}},
    {112, {"Start &Hyper-Drive"}},
    {113, {"Stop &Hyper-Drive"}},
    {114, {"Hyper-Drive Active"}},
    {115, {"Start &Auto-Roll"}},
    {116, {"Stop &Auto-Roll"}},
    {117, {"Auto-Roll Active"}},
    {118, {"Do you want to stop the Hyper-Drive?"}},
    {119, {"Do you want to stop auto-rolling?"}},
    {120, {"Save auto-bets?"}},
    {121, {"Auto-Bet Active"}},
    {122, {"Auto-bet file"}},
    {123, {"DiceHall location"}},
    {124, {"Game file"}},
    {125, {"Events log file"}},
    {126, {"Dice roll file"}},
    {127, {"Probability file"}},
    {128, {"Auto-bet files"}},
    {129, {"Sessions log files"}},
    {130, {"Text files"}},
    {131, {"Path"}},
    {132, {"Jump to DiceHall' home folder?"}},
    {133, {"continue playback as is"}},
    {134, {"continue recording as is"}},
    {135, {"continue inactive"}},
    {136, {"Open session file"}},
    {137, {"Session files"}},
    {138, {"All files"}},
    {139, {"Save session"}},
    {140, {"Save session file as"}},
    {141, {"Your current session has not been saved.\n\nDo you want to save it now?"}},
    {142, {"Confirm ready to print?"}},
    {143, {"Print"}},
    {144, {"Auto-bet & text files"}},
    {145, {"Do you want to stop auto-betting?"}},
    {146, {"Copy to auto-bet file"}},
    {147, {"Save auto-bet file as"}},
    {148, {"Save probability file as"}},
    {149, {"Probability files"}},
    {150, {"Hot-key file"}},
    {152, {"Red"}},
    {153, {"Green"}},
    {154, {"Blue"}},
    {155,
     {"How many seconds would you like between rolls?\n\n"
      "(min 0, max 300, fractional amounts allowed)",
      "Set Auto-Roll Time Delay"}},
    {156, {"Auto-Bet"}},
    {157, {"&Active"}},
    {158, {"In&active"}},
    {159, {"session"}},
    {160, {"sessions"}},
    {161, {"Mean"}},
    {162, {"Median"}},
    {163, {"Events Log"}},
    {164, {"True % probable:"}},
    {165, {"Skewed % probable:"}},
    {166, {"Total hands"}},
    {167, {"Total rolls"}},
    {186,
     {" can't be used as a player's name because it won't work with the required game "
      "files."}},
};

constexpr int kHighestNumber = 186;

// Row index by text number, -1 for a number without a row.
constexpr std::array<int, kHighestNumber + 1> MakeRowIndex() {
  std::array<int, kHighestNumber + 1> index{};
  index.fill(-1);
  for (std::size_t i = 0; i < std::size(kEnglishRows); ++i) index[kEnglishRows[i].number] = static_cast<int>(i);
  return index;
}
constexpr auto kRowIndex = MakeRowIndex();

// Only these rows are translated so far; every other row of Spanish, German, French, Turkish
// and Italian falls back to the English text until the translated columns arrive with the
// desktop screens. Each translated row here is a single piece, as its English row is.
struct TranslatedRow {
  int number;
  std::array<std::string_view, kLanguages - 1> text;  // by LanguageId 1..5
};

constexpr TranslatedRow kTranslatedRows[] = {
    {1,
     {"Haga clic en una posición abierta en el riel para agregar un jugador.",
      "Klicken Sie auf eine offene position auf der schiene, um einen player hinzuzufügen.",
      "Cliquez sur une position ouverte sur le rail pour ajouter un lecteur.",
      "Bir oyuncu eklemek için raydaki açik bir pozisyona tiklayin.",
      "Fare clic su una posizione aperta sul binario per aggiungere un giocatore."}},
    {35, {"Ganado", "Gewonnen", "Gagné", "Kazandi", "Vinto"}},
    {45, {"Apuesta", "Wette", "Pari", "Bahis", "Scommessa"}},
    {111, {"Apuesta requerida", "Wette erforderlich", "Pari requis", "Bahis gerekli", "Scommessa richiesta"}},
};

constexpr std::array<std::array<std::string_view, 5>, kLanguages> kScopeNames = {{
    {"Current hand", "Last hand", "Current session", "Last session", "All sessions"},
    {"Mano actual", "Mano previa", "Sesión actual", "Sesión previa", "Todas sesiones"},
    {"Aktuelle hand", "Letzte hand", "Aktuelle sitzung", "Letzte sitzung", "Alle sitzungen"},
    {"Main courante", "Dernière main", "Session actuelle", "Dernière session", "Toutes sessions"},
    {"Mevcut el", "Son el", "Mevcut oturum", "Son seans", "Tüm oturumlar"},
    {"Mano corrente", "Ultima mano", "Sessione corrente", "Ultima sessione", "Tutte le sessioni"},
}};

// Statistics stores have five groups of nine columns; a scope is given either way.
constexpr int kColumnsPerScope = 9;

const TextRow* FindRow(int number) {
  if (number < 0 || number > kHighestNumber) return nullptr;
  int i = kRowIndex[number];
  return i < 0 ? nullptr : &kEnglishRows[i];
}

const TranslatedRow* FindTranslation(int number) {
  for (const TranslatedRow& row : kTranslatedRows)
    if (row.number == number) return &row;
  return nullptr;
}

bool ValidLanguage(int language) { return language >= 0 && language < kLanguages; }

}  // namespace

std::string_view LanguageText(int language, int number, int piece) {
  if (!ValidLanguage(language)) return {};
  const TextRow* row = FindRow(number);
  if (!row || piece < 0 || piece >= kMaxPieces) return {};
  if (language != kEnglish && piece == 0) {
    if (const TranslatedRow* t = FindTranslation(number)) return t->text[language - 1];
  }
  return row->pieces[piece];
}

int LanguageTextPieces(int language, int number) {
  if (!ValidLanguage(language)) return 0;
  const TextRow* row = FindRow(number);
  if (!row) return 0;
  int n = 0;
  while (n < kMaxPieces && !row->pieces[n].empty()) ++n;
  return n;
}

std::string_view ScopeName(int language, int scope) {
  if (!ValidLanguage(language)) return {};
  int group = -1;
  if (scope >= 0 && scope < 5) group = scope;
  else if (scope > 0 && scope % kColumnsPerScope == 0 && scope / kColumnsPerScope < 5) group = scope / kColumnsPerScope;
  return group < 0 ? std::string_view{} : kScopeNames[language][group];
}

const std::vector<LanguageItem>& LanguageList() {
  static const std::vector<LanguageItem> list = {
      {"English", kEnglish}, {"Español", kSpanish},  {"Deutsch", kGerman},
      {"Français", kFrench}, {"Italiano", kItalian}, {"Türk", kTurkish},
  };
  return list;
}
