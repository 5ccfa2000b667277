#include "engine/money.h"

#include <cfenv>
#include <cmath>
#include <limits>

Money Money::FromDouble(double d) {
  // nearbyint honours the default rounding mode, ties to even.
  return FromRaw(static_cast<int64_t>(std::nearbyint(d * static_cast<double>(kScale))));
}

Money MulMoneyWide(Money a, Money b) {
  __int128 p = static_cast<__int128>(a.raw) * b.raw;
  __int128 q = p / Money::kScale;
  __int128 r = p % Money::kScale;
  if (r < 0) {
    r += Money::kScale;
    q -= 1;
  }
  if (2 * r > Money::kScale || (2 * r == Money::kScale && (q & 1))) q += 1;
  return Money::FromRaw(static_cast<int64_t>(q));
}

Money MulDivMoneyWide(Money a, Money x, Money y) {
  if (y.raw == 0) return Money{};
  __int128 n = static_cast<__int128>(a.raw) * x.raw;
  __int128 d = y.raw;
  __int128 q = n / d;
  if ((n % d != 0) && ((n < 0) != (d < 0))) q -= 1;
  return Money::FromRaw(static_cast<int64_t>(q));
}

namespace {

std::string Digits(uint64_t whole, bool grouped) {
  std::string s = std::to_string(whole);
  if (!grouped) return s;
  std::string out;
  int n = static_cast<int>(s.size());
  for (int i = 0; i < n; ++i) {
    if (i > 0 && (n - i) % 3 == 0) out += ',';
    out += s[i];
  }
  return out;
}

std::string Format(Money m, bool grouped) {
  bool neg = m.raw < 0;
  uint64_t mag = neg ? static_cast<uint64_t>(-(m.raw + 1)) + 1 : static_cast<uint64_t>(m.raw);
  uint64_t whole = mag / Money::kScale;
  uint64_t frac = mag % Money::kScale;
  std::string s = neg ? "-" : "";
  s += Digits(whole, grouped);
  if (frac == 0) return s;
  char buf[8];
  if (frac % 100 == 0) {
    buf[0] = '.';
    buf[1] = static_cast<char>('0' + frac / 1000);
    buf[2] = static_cast<char>('0' + frac / 100 % 10);
    buf[3] = 0;
  } else {
    buf[0] = '.';
    buf[1] = static_cast<char>('0' + frac / 1000);
    buf[2] = static_cast<char>('0' + frac / 100 % 10);
    buf[3] = static_cast<char>('0' + frac / 10 % 10);
    buf[4] = static_cast<char>('0' + frac % 10);
    buf[5] = 0;
  }
  return s + buf;
}

}  // namespace

std::string MoneyText(Money m) { return Format(m, false); }
std::string MoneyTextGrouped(Money m) { return Format(m, true); }
std::string DollarText(Money m) { return m.raw < 0 ? "-$" + MoneyText(-m) : "$" + MoneyText(m); }

bool ParseMoney(std::string_view text, Money& out, std::string& error) {
  std::string_view t = text;
  while (!t.empty() && (t.front() == ' ' || t.front() == '\t')) t.remove_prefix(1);
  while (!t.empty() && (t.back() == ' ' || t.back() == '\t')) t.remove_suffix(1);
  auto refuse = [&](const std::string& why) {
    error = "\"" + std::string(text) + "\" is not an amount of money: " + why;
    return false;
  };
  if (t.empty()) return refuse("it is empty.");
  bool neg = false;
  if (t.front() == '-' || t.front() == '+') {
    neg = t.front() == '-';
    t.remove_prefix(1);
  }
  if (!t.empty() && t.front() == '$') t.remove_prefix(1);
  if (!neg && !t.empty() && t.front() == '-') {
    neg = true;
    t.remove_prefix(1);
  }
  if (t.empty()) return refuse("it has no digits.");

  const uint64_t limit = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
  uint64_t whole = 0;
  int digits = 0;
  size_t i = 0;
  bool lastComma = false;
  int sinceComma = -1;
  for (; i < t.size() && t[i] != '.'; ++i) {
    char c = t[i];
    if (c == ',') {
      if (digits == 0 || lastComma || (sinceComma >= 0 && sinceComma != 3))
        return refuse("a thousands separator is out of place.");
      lastComma = true;
      sinceComma = 0;
      continue;
    }
    if (c < '0' || c > '9') return refuse(std::string("'") + c + "' is not a digit.");
    lastComma = false;
    if (sinceComma >= 0) ++sinceComma;
    whole = whole * 10 + static_cast<uint64_t>(c - '0');
    if (whole > limit / Money::kScale) return refuse("it is too large.");
    ++digits;
  }
  if (lastComma || (sinceComma >= 0 && sinceComma != 3)) return refuse("a thousands separator is out of place.");
  uint64_t frac = 0;
  int places = 0;
  if (i < t.size()) {
    ++i;  // the decimal point
    for (; i < t.size(); ++i) {
      char c = t[i];
      if (c < '0' || c > '9') return refuse(std::string("'") + c + "' is not a digit.");
      if (places == 4) {
        if (c != '0') return refuse("amounts are kept to the ten-thousandth of a dollar.");
        continue;
      }
      frac = frac * 10 + static_cast<uint64_t>(c - '0');
      ++places;
      ++digits;
    }
  }
  if (digits == 0) return refuse("it has no digits.");
  for (int p = places; p < 4; ++p) frac *= 10;
  uint64_t raw = whole * Money::kScale + frac;
  if (raw > limit) return refuse("it is too large.");
  out = Money::FromRaw(neg ? -static_cast<int64_t>(raw) : static_cast<int64_t>(raw));
  return true;
}
