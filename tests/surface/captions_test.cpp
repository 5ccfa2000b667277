// The captions of the desktop in six languages: none empty, none left in English where a
// translation is due, every placeholder kept.

#include "surface/captions.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

std::multiset<std::string> Placeholders(std::string_view text) {
  std::multiset<std::string> out;
  for (size_t i = 0; i + 1 < text.size(); ++i)
    if (text[i] == '%' && text[i + 1] >= '1' && text[i + 1] <= '9') out.insert(std::string(text.substr(i, 2)));
  return out;
}

int LineBreaks(std::string_view text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }

TEST(Captions, EveryCaptionInEveryLanguage) {
  std::set<std::string_view> names;
  for (const CaptionRow& row : CaptionRows()) {
    EXPECT_TRUE(names.insert(row.name).second) << "twice: " << row.name;
    const std::string_view english = row.text[kEnglish];
    for (int lang = 0; lang < kLanguages; ++lang) {
      const std::string_view text = row.text[lang];
      EXPECT_FALSE(text.empty()) << row.name << " in language " << lang;
      EXPECT_EQ(Placeholders(text), Placeholders(english)) << row.name << " in language " << lang;
      EXPECT_EQ(LineBreaks(text), LineBreaks(english)) << row.name << " in language " << lang;
      // A menu's access key stays one per caption.
      EXPECT_EQ(std::count(text.begin(), text.end(), '&') > 0, std::count(english.begin(), english.end(), '&') > 0)
          << row.name << " in language " << lang;
      if (lang == kEnglish) continue;
      const bool kept = row.keptEnglish & (1 << lang);
      EXPECT_EQ(text == english, kept) << row.name << " in language " << lang
                                       << (kept ? ": marked as kept but translated" : ": left in English");
    }
  }
}

TEST(Captions, ValuesFillThePlaceholdersInTheirOrder) {
  EXPECT_EQ(Caption(kEnglish, "tblPayTo", {"7", "6"}), "7 to 6");
  EXPECT_EQ(Caption(kTurkish, "tblPayFor", {"15", "1"}), "1 için 15");
  EXPECT_EQ(Caption(kGerman, "stsLastRoll", {"8", "5", "3"}), "Letzter Wurf: 8 (5-3)");
  // An unknown name shows itself, so that a missing caption is seen at once.
  EXPECT_EQ(Caption(kSpanish, "noSuchCaption"), "noSuchCaption");
}

}  // namespace
