#pragma once
// What the compiler tests share: compiled records written the short way they are
// compared (M(line, column) a statement marker, V/F/P/H/X/Y/N the reference words and
// numbers, Op an operator), and the script and fault range of a table case.

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "autobet/compiler.h"
#include "autobet/tokens.h"

// Readable failures: a record as its code and value.
inline void PrintTo(const TokenRecord& r, std::ostream* os) { *os << "{" << r.code << "," << r.value << "}"; }

namespace records {

inline TokenRecord M(int line, int column) { return {kCodeStatement + line, static_cast<double>(column)}; }
inline TokenRecord V(int n) { return {kCodeVariable, static_cast<double>(n)}; }
inline TokenRecord F(int n) { return {kCodeFunction, static_cast<double>(n)}; }
inline TokenRecord P(int n) { return {kCodePlayer, static_cast<double>(n)}; }
inline TokenRecord H(int n) { return {kCodeTime, static_cast<double>(n)}; }
inline TokenRecord X(int n) { return {kCodeCounted, static_cast<double>(n)}; }
inline TokenRecord Y(int n) { return {kCodeModifier, static_cast<double>(n)}; }
inline TokenRecord N(double n) { return {kCodeNumber, n}; }
inline TokenRecord Vt(int n) { return {kCodeVariableTarget, static_cast<double>(n)}; }
inline TokenRecord Ft(int n) { return {kCodeFunctionTarget, static_cast<double>(n)}; }
inline TokenRecord Head(int seat) { return {kCodeScriptHeader, static_cast<double>(seat)}; }
inline TokenRecord S(int n) { return {kCodeString, static_cast<double>(n)}; }
inline TokenRecord L(int n) { return {kCodeLabel, static_cast<double>(n)}; }
inline TokenRecord A(int n) { return {kCodeAction, static_cast<double>(n)}; }
inline TokenRecord Jump(int code, int target) { return {code, static_cast<double>(target)}; }
inline TokenRecord Op(int code) { return {code, 0}; }
inline const TokenRecord kOpen = Op(kCodeOpenBracket), kClose = Op(kCodeCloseBracket), kEq = Op(kCodeEquals),
                         kComma = Op(kCodeListSeparator), kEnd = Op(kCodeEndOfList), kOn = Op(kCodeOnTo);

using Records = std::vector<TokenRecord>;

inline Records operator+(Records a, const Records& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// A table case's script on one line, for the name of a failing case.
inline std::ostream& PrintScript(std::ostream& os, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) os << line << " | ";
  return os;
}

// The fault covers the case's range (its firstLine, firstColumn, lastLine, lastColumn).
template <class Case>
void ExpectRange(const CompileFault& fault, const Case& c) {
  EXPECT_EQ(fault.firstLine, c.firstLine);
  EXPECT_EQ(fault.firstColumn, c.firstColumn);
  EXPECT_EQ(fault.lastLine, c.lastLine);
  EXPECT_EQ(fault.lastColumn, c.lastColumn);
}

// A script compiled for a seat: the message of its first fault and the range shown, or
// "" when it compiles. The test of the table is in compile_messages_test.cpp; the passes'
// files add rows of their own.
struct ScriptCase {
  std::vector<std::string> lines;
  const char* message;
  int firstLine = 0, firstColumn = 0, lastLine = 0, lastColumn = 0;
  int seat = 1;  // 0: the scratch script of the editor, with no seat selected
};

inline std::ostream& operator<<(std::ostream& os, const ScriptCase& c) { return PrintScript(os, c.lines); }

inline ScriptCase Ok(std::vector<std::string> lines) { return {std::move(lines), ""}; }

inline ScriptCase Faulty(std::vector<std::string> lines, const char* message, int firstLine, int firstColumn,
                         int lastLine, int lastColumn) {
  return {std::move(lines), message, firstLine, firstColumn, lastLine, lastColumn};
}

// A fault on a one-line script, between these columns of its line.
inline ScriptCase Faulty(std::string line, const char* message, int firstColumn, int lastColumn) {
  return {{std::move(line)}, message, 1, firstColumn, 1, lastColumn};
}

// A fault over the whole of a one-line script.
inline ScriptCase Refused(std::string line, const char* message) {
  const int end = static_cast<int>(line.size());
  return {{std::move(line)}, message, 1, 0, 1, end};
}

class CompileScriptTest : public testing::TestWithParam<ScriptCase> {};

}  // namespace records
