#include <optional>

#include "autobet/compiler.h"

namespace {

constexpr int kBig6 = 50;
constexpr int kBig8 = 51;
constexpr int kListSeparator = 75;

// The bets a plural word stands for: first..last by `step`.
struct Span {
  int first;
  int last;
  int step = 1;
};

// The seven numbered families come in threes: all, inside (5 to 9), outside (4 and 10).
constexpr int kFirstFamilyWord = 4000;
constexpr int kFamilyWords = 7;
constexpr int kFamilySize = 6;

std::optional<Span> PluralSpan(int word) {
  if (word >= kFirstFamilyWord && word < kFirstFamilyWord + 10 * kFamilyWords && word % 10 <= 2) {
    const int first = 1 + kFamilySize * ((word - kFirstFamilyWord) / 10);
    const int last = first + kFamilySize - 1;
    switch (word % 10) {
      case 0: return Span{first, last};
      case 1: return Span{first + 1, last - 1};
      default: return Span{first, last, kFamilySize - 1};
    }
  }
  switch (word) {
    case 4070: return Span{50, 51};
    case 4071: return Span{53, 56};
    case 4072: return Span{64, 80};
    case 4073: return Span{98, 107};
    case 4100: return Span{1, 107};
    case 980: return Span{200, 299};
    case 990: return Span{800, 899};
    default: return std::nullopt;
  }
}

}  // namespace

void CompileVariablesDistribute(std::vector<TokenRecord>& records, bool bigBetsOffered) {
  std::vector<TokenRecord> out;
  out.reserve(records.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    const TokenRecord& r = records[i];
    const std::optional<Span> span = r.code == kCodeVariable ? PluralSpan(static_cast<int>(r.value)) : std::nullopt;
    if (!span) {
      out.push_back(r);
      continue;
    }
    // The word's pieces, as organised, go with every bet of the list.
    std::size_t piecesEnd = i + 1;
    while (piecesEnd < records.size() && IsReferencePiece(records[piecesEnd])) ++piecesEnd;
    const bool allBets = r.value == 4100;
    bool first = true;
    for (int v = span->first; v <= span->last; v += span->step) {
      // Without Big 6 and Big 8 on the layout "bets" must not reach for them.
      if (allBets && !bigBetsOffered && (v == kBig6 || v == kBig8)) continue;
      if (!first) out.push_back({kListSeparator, 0});
      first = false;
      out.push_back({kCodeVariable, static_cast<double>(v)});
      out.insert(out.end(), records.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                 records.begin() + static_cast<std::ptrdiff_t>(piecesEnd));
    }
    i = piecesEnd - 1;
  }
  records = std::move(out);
}
