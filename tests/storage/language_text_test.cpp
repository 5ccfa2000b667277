#include "storage/language_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <string_view>
#include <vector>

namespace {

struct PiecesCase {
  int number;
  std::vector<std::string_view> pieces;
};

class LanguageTextPiecesTest : public ::testing::TestWithParam<PiecesCase> {};

TEST_P(LanguageTextPiecesTest, SplitsWhereTheCallerInsertsText) {
  const PiecesCase& c = GetParam();
  ASSERT_EQ(LanguageTextPieces(kEnglish, c.number), static_cast<int>(c.pieces.size()));
  for (std::size_t i = 0; i < c.pieces.size(); ++i)
    EXPECT_EQ(LanguageText(kEnglish, c.number, static_cast<int>(i)), c.pieces[i]) << "piece " << i;
  EXPECT_EQ(LanguageText(kEnglish, c.number, static_cast<int>(c.pieces.size())), "");
  EXPECT_EQ(LanguageText(kEnglish, c.number, -1), "");
}

INSTANTIATE_TEST_SUITE_P(
    LanguageText, LanguageTextPiecesTest,
    ::testing::Values(PiecesCase{9, {"How much would ", " like to buy-in for?"}},
                      PiecesCase{15, {" joined the game at stick ", "-left with $"}},
                      PiecesCase{16, {" joined the game at stick ", "-right with $"}},
                      PiecesCase{20, {"an active ", " bet "}},
                      PiecesCase{39,
                                 {"Please enter a whole number between 1 and ",
                                  " to seed the random number generator:", "Random Number Generator"}},
                      // Line breaks inside one block stay in the piece; a separate title is its own piece.
                      PiecesCase{60, {"An error occurred with your system's clipboard.\nPlease try again."}},
                      PiecesCase{110,
                                 {"No players are available to bet.\n\nPlease enter a player or change the "
                                  "requirement to make a bet on the 'Bets tab' of the configuration screen."}},
                      PiecesCase{155,
                                 {"How many seconds would you like between rolls?\n\n(min 0, max 300, "
                                  "fractional amounts allowed)",
                                  "Set Auto-Roll Time Delay"}},
                      // A leading blank matters: the name stands in front.
                      PiecesCase{8,
                                 {" can't be used as a player's name because it contains a word, phrase, or "
                                  "symbol used in auto-betting."}},
                      PiecesCase{186,
                                 {" can't be used as a player's name because it won't work with the required "
                                  "game files."}}));

// The gaps in the numbering are empty in every language; the numbers next to them have text.
TEST(LanguageTextTable, TheGapsAreEmptyAndTheirNeighboursHaveText) {
  const int outside[] = {INT_MIN, -1, 0, 38, 62, 80, 96, 106, 109, 151, 168, 185, 187, 200, INT_MAX};
  const int inside[] = {1, 37, 39, 61, 97, 105, 110, 150, 152, 167, 186};
  for (int language = 0; language < kLanguages; ++language) {
    for (int number : outside) {
      EXPECT_EQ(LanguageText(language, number), "") << language << "/" << number;
      EXPECT_EQ(LanguageTextPieces(language, number), 0) << language << "/" << number;
    }
    for (int number : inside) {
      EXPECT_NE(LanguageText(language, number), "") << language << "/" << number;
      EXPECT_GE(LanguageTextPieces(language, number), 1) << language << "/" << number;
    }
  }
}

TEST(LanguageTextTable, LanguageOutsideTheListIsEmpty) {
  for (int language : {-1, kLanguages, 100}) {
    EXPECT_EQ(LanguageText(language, 1), "");
    EXPECT_EQ(LanguageText(language, 9, 1), "");
    EXPECT_EQ(LanguageTextPieces(language, 9), 0);
    EXPECT_EQ(ScopeName(language, 0), "");
  }
}

struct TellingCase {
  int language, number;
  std::string_view text;
};

class LanguageTextTellingTest : public ::testing::TestWithParam<TellingCase> {};

TEST_P(LanguageTextTellingTest, TranslatedRowIsOnePiece) {
  const TellingCase& c = GetParam();
  EXPECT_EQ(LanguageText(c.language, c.number), c.text);
  EXPECT_EQ(LanguageTextPieces(c.language, c.number), 1);
  EXPECT_EQ(LanguageText(c.language, c.number, 1), "");
}

INSTANTIATE_TEST_SUITE_P(
    LanguageText, LanguageTextTellingTest,
    ::testing::Values(TellingCase{kEnglish, 1, "Click an open position on the rail to add a player."},
                      TellingCase{kSpanish, 1, "Haga clic en una posición abierta en el riel para agregar un jugador."},
                      TellingCase{kGerman, 1,
                                  "Klicken Sie auf eine offene position auf der schiene, um einen player "
                                  "hinzuzufügen."},
                      TellingCase{kFrench, 1, "Cliquez sur une position ouverte sur le rail pour ajouter un lecteur."},
                      TellingCase{kTurkish, 1, "Bir oyuncu eklemek için raydaki açik bir pozisyona tiklayin."},
                      TellingCase{kItalian, 1,
                                  "Fare clic su una posizione aperta sul binario per aggiungere un giocatore."}));

// Rows whose word is the same as the English one in that language.
struct SameWord {
  int language, number;
};
constexpr SameWord kSameAsEnglish[] = {{kSpanish, 34},  {kItalian, 34},  // "No"
                                       {kSpanish, 37},                   // "Error"
                                       {kFrench, 159},  {kFrench, 160},  // "session", "sessions"
                                       {kGerman, 162},                   // "Median", the German statistics term
                                       {kSpanish, 156}, {kGerman, 156},  // "Auto-Bet", the name of the script language
                                       {kFrench, 156},  {kTurkish, 156}, {kItalian, 156}};

bool SameAsEnglishAllowed(int language, int number) {
  for (const SameWord& s : kSameAsEnglish)
    if (s.language == language && s.number == number) return true;
  return false;
}

int Count(std::string_view s, std::string_view what) {
  int n = 0;
  for (std::size_t at = s.find(what); at != std::string_view::npos; at = s.find(what, at + what.size())) ++n;
  return n;
}

char LastMark(std::string_view s) {
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return !s.empty() && std::string_view(".?:$)").find(s.back()) != std::string_view::npos ? s.back() : 0;
}

TEST(LanguageTextTable, EveryRowIsTranslatedPieceForPiece) {
  for (int number = 0; number <= 200; ++number) {
    const int pieces = LanguageTextPieces(kEnglish, number);
    for (int language = 1; language < kLanguages; ++language) {
      SCOPED_TRACE(::testing::Message() << "language " << language << ", text " << number);
      ASSERT_EQ(LanguageTextPieces(language, number), pieces);
      for (int piece = 0; piece < pieces; ++piece) {
        SCOPED_TRACE(::testing::Message() << "piece " << piece);
        const std::string_view en = LanguageText(kEnglish, number, piece);
        const std::string_view text = LanguageText(language, number, piece);
        ASSERT_FALSE(en.empty());
        ASSERT_FALSE(text.empty());
        if (!SameAsEnglishAllowed(language, number)) {
          EXPECT_NE(text, en);
        }
        // English glues "'s" to the name in 17; every other language needs a blank there.
        if (number != 17) {
          EXPECT_EQ(text.front() == ' ', en.front() == ' ');
        }
        EXPECT_EQ(text.back() == ' ', en.back() == ' ');
        EXPECT_EQ(Count(text, "\n"), Count(en, "\n"));
        EXPECT_EQ(Count(text, "&"), Count(en, "&"));
        EXPECT_EQ(Count(text, "$"), Count(en, "$"));
        // "& " is a plain ampersand; an access key stands before a letter.
        EXPECT_EQ(Count(text, "& "), Count(en, "& "));
        EXPECT_NE(text.back(), '&');
        // A translation may add a colon before the caller's name, but keeps the English closing mark.
        if (LastMark(en) != 0) {
          EXPECT_EQ(LastMark(text), LastMark(en));
        }
      }
    }
  }
}

TEST(LanguageTextTable, SpanishQuestionsOpenWithTheirMark) {
  for (int number = 0; number <= 200; ++number) {
    int opened = 0, closed = 0;
    for (int piece = 0; piece < LanguageTextPieces(kSpanish, number); ++piece) {
      opened += Count(LanguageText(kSpanish, number, piece), "¿");
      closed += Count(LanguageText(kSpanish, number, piece), "?");
    }
    EXPECT_GE(opened, closed) << number;
  }
}

struct ScopeCase {
  int language;
  std::vector<std::string_view> names;
};

class LanguageTextScopeTest : public ::testing::TestWithParam<ScopeCase> {};

TEST_P(LanguageTextScopeTest, NamesByGroupAndByColumnBase) {
  const ScopeCase& c = GetParam();
  ASSERT_EQ(c.names.size(), 5u);
  for (int group = 0; group < 5; ++group) {
    EXPECT_EQ(ScopeName(c.language, group), c.names[group]) << "group " << group;
    EXPECT_EQ(ScopeName(c.language, group * 9), c.names[group]) << "column " << group * 9;
  }
  for (int scope : {-1, 5, 8, 10, 17, 35, 45, 54}) EXPECT_EQ(ScopeName(c.language, scope), "") << "scope " << scope;
}

INSTANTIATE_TEST_SUITE_P(
    LanguageText, LanguageTextScopeTest,
    ::testing::Values(
        ScopeCase{kEnglish, {"Current hand", "Last hand", "Current session", "Last session", "All sessions"}},
        ScopeCase{kSpanish, {"Mano actual", "Mano previa", "Sesión actual", "Sesión previa", "Todas sesiones"}},
        ScopeCase{kGerman, {"Aktuelle hand", "Letzte hand", "Aktuelle sitzung", "Letzte sitzung", "Alle sitzungen"}},
        ScopeCase{kFrench,
                  {"Main courante", "Dernière main", "Session actuelle", "Dernière session", "Toutes sessions"}},
        ScopeCase{kTurkish, {"Mevcut el", "Son el", "Mevcut oturum", "Son seans", "Tüm oturumlar"}},
        ScopeCase{kItalian,
                  {"Mano corrente", "Ultima mano", "Sessione corrente", "Ultima sessione", "Tutte le sessioni"}}));

TEST(LanguageTextList, OrderAndIdsDifferForTheLastTwo) {
  const std::vector<LanguageItem>& list = LanguageList();
  const std::pair<std::string_view, int> expected[] = {{"English", 0},  {"Español", 1},  {"Deutsch", 2},
                                                       {"Français", 3}, {"Italiano", 5}, {"Türk", 4}};
  ASSERT_EQ(list.size(), std::size(expected));
  for (std::size_t i = 0; i < list.size(); ++i) {
    EXPECT_EQ(list[i].text, expected[i].first) << "position " << i;
    EXPECT_EQ(list[i].id, expected[i].second) << "position " << i;
  }
}

}  // namespace
