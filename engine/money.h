#pragma once
// Money: signed 64-bit fixed point in ten-thousandths of a dollar. Every amount of a
// bet, bankroll or payoff is one. Sums are exact; products of two amounts are formed
// exactly in 128 bits; ratios go through doubles and come back rounded half to even,
// as the table's arithmetic always has.

#include <cstdint>
#include <string>
#include <string_view>

struct Money {
  static constexpr int64_t kScale = 10000;
  int64_t raw = 0;

  constexpr Money() = default;
  static constexpr Money FromRaw(int64_t r) {
    Money m;
    m.raw = r;
    return m;
  }
  static constexpr Money Dollars(int64_t d) { return FromRaw(d * kScale); }
  // Nearest ten-thousandth, ties to even.
  static Money FromDouble(double d);

  double ToDouble() const { return static_cast<double>(raw) / kScale; }
  constexpr bool IsWhole() const { return raw % kScale == 0; }

  constexpr Money operator-() const { return FromRaw(-raw); }
  constexpr Money operator+(Money o) const { return FromRaw(raw + o.raw); }
  constexpr Money operator-(Money o) const { return FromRaw(raw - o.raw); }
  constexpr Money& operator+=(Money o) {
    raw += o.raw;
    return *this;
  }
  constexpr Money& operator-=(Money o) {
    raw -= o.raw;
    return *this;
  }
  constexpr Money operator*(int64_t k) const { return FromRaw(raw * k); }
  constexpr auto operator<=>(const Money&) const = default;
};

constexpr Money operator""_usd(unsigned long long d) { return Money::Dollars(static_cast<int64_t>(d)); }

// The same past 64 bits, in 128.
Money MulMoneyWide(Money a, Money b);
Money MulDivMoneyWide(Money a, Money x, Money y);

// a × b, exact, rounded half to even at the last place. In 64 bits when the product fits,
// as it does for every amount of a table; the same quotient and remainder as in 128.
inline Money MulMoney(Money a, Money b) {
  int64_t p;
  if (__builtin_mul_overflow(a.raw, b.raw, &p)) return MulMoneyWide(a, b);
  int64_t q = p / Money::kScale;
  int64_t r = p % Money::kScale;
  if (r < 0) {
    r += Money::kScale;
    q -= 1;
  }
  if (2 * r > Money::kScale || (2 * r == Money::kScale && (q & 1))) q += 1;
  return Money::FromRaw(q);
}
// a × x / y for a payoff row, exact in 128 bits, truncated toward minus infinity at the
// last place; y of 0 gives 0.
inline Money MulDivMoney(Money a, Money x, Money y) {
  if (y.raw == 0) return Money{};
  int64_t n;
  // 64 bits when the product fits (and the quotient can't overflow): the same result.
  if (__builtin_mul_overflow(a.raw, x.raw, &n) || y.raw == -1) return MulDivMoneyWide(a, x, y);
  int64_t q = n / y.raw;
  if ((n % y.raw != 0) && ((n < 0) != (y.raw < 0))) q -= 1;
  return Money::FromRaw(q);
}
// The number of whole units in a (floor), and whether a is a whole multiple.
inline int64_t FloorDiv(Money a, Money unit) {
  if (unit.raw == 0) return 0;
  int64_t q = a.raw / unit.raw;
  if ((a.raw % unit.raw != 0) && ((a.raw < 0) != (unit.raw < 0))) q -= 1;
  return q;
}
// floor(a / unit) × unit, toward minus infinity; a unit of 0 leaves a as it is.
inline Money FloorToUnit(Money a, Money unit) {
  if (unit.raw == 0) return a;
  return Money::FromRaw(FloorDiv(a, unit) * unit.raw);
}
inline bool IsMultipleOf(Money a, Money unit) { return unit.raw != 0 && a.raw % unit.raw == 0; }
constexpr Money Abs(Money a) { return a.raw < 0 ? -a : a; }
constexpr Money Min(Money a, Money b) { return a < b ? a : b; }
constexpr Money Max(Money a, Money b) { return a < b ? b : a; }

// The text form: whole dollars without decimals ("10"), otherwise two decimals
// ("12.50"), four where two would show a sub-cent amount wrongly ("0.0125").
// A negative amount leads with "-". No "$": the texts that show one put it.
std::string MoneyText(Money m);
// The same with thousands separators ("9,999,999"), for the texts that show them.
std::string MoneyTextGrouped(Money m);
// "$12.50", or "-$12.50" for a negative amount.
std::string DollarText(Money m);

// Parses an amount as a person types it: "10", "12.5", "$1,000.25", "-3", "0.0125".
// Returns false and a message in `error` for anything else; `out` is then untouched.
bool ParseMoney(std::string_view text, Money& out, std::string& error);
