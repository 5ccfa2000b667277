#pragma once
// Numbered texts in six languages. A text may have several pieces; the caller puts a
// name, a value or line breaks between them.

#include <string>
#include <string_view>
#include <vector>

enum LanguageIdValue { kEnglish = 0, kSpanish = 1, kGerman = 2, kFrench = 3, kTurkish = 4, kItalian = 5 };
constexpr int kLanguages = 6;

// Piece `piece` (from 0) of text `number` in `language`; "" for a number or piece
// outside the table.
std::string_view LanguageText(int language, int number, int piece = 0);
// How many pieces text `number` has (0 outside the table).
int LanguageTextPieces(int language, int number);

// The five StatScope names; scope is the group index 0..4 (or the column base 0, 9,
// 18, 27, 36).
std::string_view ScopeName(int language, int scope);

struct LanguageItem {
  std::string_view text;
  int id;
};
// lstLanguages in list order; note that list position and id differ for the last two.
const std::vector<LanguageItem>& LanguageList();
