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

// a × b, exact, rounded half to even at the last place.
Money MulMoney(Money a, Money b);
// a × x / y for a payoff row, exact in 128 bits, truncated toward minus infinity at the
// last place; y of 0 gives 0.
Money MulDivMoney(Money a, Money x, Money y);
// floor(a / unit) × unit, toward minus infinity; a unit of 0 leaves a as it is.
Money FloorToUnit(Money a, Money unit);
// The number of whole units in a (floor), and whether a is a whole multiple.
int64_t FloorDiv(Money a, Money unit);
bool IsMultipleOf(Money a, Money unit);
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
