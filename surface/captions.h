#pragma once
// The desktop's own captions (menus, dialogs, buttons, labels and the table's lettering)
// in the six languages, by name. The numbered texts of the engine are LanguageText's;
// these are the rest. "%1", "%2" in a caption stand for a value the caller fills in.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "storage/language_text.h"

struct CaptionRow {
  std::string_view name;
  std::array<std::string_view, kLanguages> text;  // by LanguageId
  // Bit 2^language set where the caption is the English one on purpose: a term that
  // tables of that language write the same way (e.g. "OFF" on the puck).
  int keptEnglish = 0;
};

const std::vector<CaptionRow>& CaptionRows();

// The caption in the language; the English one where a name is unknown to the language,
// and the name itself where it is unknown altogether (a fault a test catches).
std::string Caption(int language, std::string_view name);
// The caption with %1, %2, ... replaced by the values.
std::string Caption(int language, std::string_view name, const std::vector<std::string>& values);
