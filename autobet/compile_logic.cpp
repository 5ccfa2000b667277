#include <algorithm>
#include <charconv>
#include <map>

#include "autobet/compiler.h"

namespace {

// Block keywords that tokens.h does not name; their codes are their L numbers.

constexpr int kIndentWidth = 3;

// What the walk learns of one source line for the editor's indentation.
struct LineShape {
  bool hasStatements = false;
  int startDepth = 0;  // block depth before the line's first record
  int endDepth = 0;    // block depth after its last record
  int firstCode = 0;   // the code of its first record
};

// One walk over the records. Each stack holds record indices, oldest first; a record is
// "younger" than another when its index is higher.
class BlockLinker {
 public:
  BlockLinker(std::vector<TokenRecord>& records, const std::vector<StringEntry>& strings,
              std::span<const std::string> lines)
      : records_(records), strings_(strings), lines_(lines) {}

  CompileFault Walk() {
    for (std::size_t i = 0; i < records_.size(); ++i) {
      const TokenRecord& r = records_[i];
      if (IsStatementMarker(r)) {
        NoteLine(i);
      } else if (CompileFault fault = Visit(i); fault.Failed()) {
        return fault;
      }
      if (line_ > 0) shapes_[line_].endDepth = Depth();
    }
    return Finish();
  }

  // The depth each line is written at: a line that begins by closing or continuing a block
  // (THEN, ELSE, ELSEIF, ENDIF, LOOP) stands one level out, as does a line that ends a block;
  // a line that opens one stands at the depth it opens from. Lines without statements
  // (blank or comment) keep the depth around them.
  std::vector<int> LineDepths(std::size_t lineCount) const {
    std::vector<int> depths(lineCount, 0);
    int carried = 0;
    for (std::size_t n = 1; n <= lineCount; ++n) {
      const auto it = shapes_.find(static_cast<int>(n));
      if (it == shapes_.end() || !it->second.hasStatements) {
        depths[n - 1] = carried;
        continue;
      }
      const LineShape& shape = it->second;
      const int code = shape.firstCode;
      const bool stepsOut =
          code == kCodeThen || code == kCodeElse || code == kCodeElseIf || code == kCodeEndIf || code == kCodeLoop;
      depths[n - 1] = std::max(0, std::min(shape.startDepth - (stepsOut ? 1 : 0), shape.endDepth));
      carried = shape.endDepth;
    }
    return depths;
  }

 private:
  int Depth() const { return static_cast<int>(ifs_.size() + dos_.size()); }
  std::size_t NewestIf() const { return ifs_.empty() ? 0 : ifs_.back(); }
  std::size_t NewestDo() const { return dos_.empty() ? 0 : dos_.back(); }
  bool ThenPending() const { return !thens_.empty() && thens_.back() > NewestIf(); }

  CompileFault Fault(std::string message, std::size_t index) const {
    return StatementFault(std::move(message), records_, index, lines_);
  }

  void NoteLine(std::size_t marker) {
    const int line = records_[marker].code - kCodeStatement;
    if (line == line_) return;
    line_ = line;
    LineShape& shape = shapes_[line];
    shape.hasStatements = true;
    shape.startDepth = Depth();
    shape.firstCode = marker + 1 < records_.size() ? records_[marker + 1].code : 0;
  }

  // Gives every entry of `stack` younger than `after` the target `index`, and drops it.
  void Resolve(std::vector<std::size_t>& stack, std::size_t after, std::size_t index) {
    while (!stack.empty() && stack.back() > after) {
      records_[stack.back()].value = static_cast<double>(index);
      stack.pop_back();
    }
  }

  CompileFault Visit(std::size_t i) {
    switch (records_[i].code) {
      case kCodeIf:
        if (inCondition_) return Fault("IF out of position.", i);
        ifs_.push_back(i);
        OpenCondition(i);
        return {};
      case kCodeThen:
        if (!inCondition_) return Fault("THEN out of position.", i);
        inCondition_ = false;
        thens_.push_back(i);
        return {};
      case kCodeElse:
        if (!ThenPending() || inCondition_) return Fault("Expected THEN before ELSE.", i);
        records_[thens_.back()].value = static_cast<double>(i);
        thens_.pop_back();
        elses_.push_back(i);
        return {};
      case kCodeElseIf: return ElseIf(i);
      case kCodeEndIf: return EndIf(i);
      case kCodeDo:
        if (inCondition_) return Fault("DO statement out of position.", i);
        dos_.push_back(i);
        return {};
      case kCodeLoop: return Loop(i);
      case kCodeExitDo:
        if (dos_.empty()) return Fault("EXIT DO statement outside of DO/LOOP.", i);
        if (inCondition_) return Fault("EXIT DO statement out of position.", i);
        exitDos_.push_back(i);
        return {};
      case kCodeGoto:
      case kCodeGosub: return Jump(i);
      default: return {};
    }
  }

  void OpenCondition(std::size_t i) {
    inCondition_ = true;
    condition_ = i;
  }

  CompileFault ElseIf(std::size_t i) {
    if (inCondition_ || ifs_.empty()) return Fault("ELSEIF out of position.", i);
    if (!ThenPending()) {
      // Behind an ELSE of the same IF the THEN has already been taken.
      const bool afterElse = !elses_.empty() && elses_.back() > NewestIf() && records_[elses_.back()].code == kCodeElse;
      return Fault(afterElse ? "ELSEIF out of position.\nCannot be placed after ELSE within the same IF/THEN statement."
                             : "ELSEIF out of position.",
                   i);
    }
    records_[thens_.back()].value = static_cast<double>(i);
    thens_.pop_back();
    elses_.push_back(i);
    OpenCondition(i);
    return {};
  }

  CompileFault EndIf(std::size_t i) {
    if (inCondition_) return Fault("Missing THEN between IF and ENDIF.", i);
    if (NewestDo() > NewestIf()) return Fault("Missing or out of position LOOP statement.", i);
    const bool elsePending = !elses_.empty() && elses_.back() > NewestIf();
    if (ifs_.empty() || (!ThenPending() && !elsePending)) return Fault("Unassociated ENDIF.", i);
    Resolve(thens_, NewestIf(), i);
    Resolve(elses_, NewestIf(), i);
    ifs_.pop_back();
    return {};
  }

  CompileFault Loop(std::size_t i) {
    if (dos_.empty() || inCondition_) return Fault("Missing DO statement or LOOP statement out of position.", i);
    if (NewestIf() > NewestDo())
      return Fault("ENDIF missing or out of position, or \nLOOP statement out of position.", i);
    const std::size_t doIndex = dos_.back();
    records_[i].value = static_cast<double>(doIndex);
    records_[doIndex].value = static_cast<double>(i);
    Resolve(exitDos_, doIndex, i);
    dos_.pop_back();
    return {};
  }

  CompileFault Jump(std::size_t i) {
    const std::string keyword = records_[i].code == kCodeGoto ? "GOTO" : "GOSUB";
    if (inCondition_) return Fault(keyword + " out of position.", i);
    if (i + 1 >= records_.size() || IsStatementMarker(records_[i + 1]))
      return Fault(keyword + " missing reference.", i);
    TokenRecord& reference = records_[i + 1];
    if (reference.code != kCodeString && reference.code != kCodeNumber)
      return Fault("Improper reference after " + keyword, i);
    const TokenRecord* before = i > 0 ? &records_[i - 1] : nullptr;
    if (before && !IsStatementMarker(*before) && !(before->code >= 1 && before->code < kCodeEndIf))
      return Fault(keyword + " here should be preceded with a colon :", i);

    std::string name;
    if (reference.code == kCodeNumber) {
      name = GeneralNumber(reference.value);
    } else if (reference.value > 0 && reference.value <= static_cast<double>(strings_.size())) {
      name = strings_[static_cast<std::size_t>(reference.value) - 1].text;
    }
    const std::string wanted = LowerTrimmed(name);
    for (const StringEntry& entry : strings_) {
      if (entry.value > 0 && LowerTrimmed(entry.text) == wanted) {
        reference.value = entry.value;
        return {};
      }
    }
    return Fault("Label \"" + name + "\" not found.", i);
  }

  // What is still open when the records end, reported at the keyword that opened it.
  CompileFault Finish() const {
    if (inCondition_) return Fault("Missing THEN statement.", condition_);
    if (!ifs_.empty()) return Fault("Missing ENDIF statement.", ifs_.back());
    if (!dos_.empty()) return Fault("Missing LOOP statement.", dos_.back());
    return {};
  }

  std::vector<TokenRecord>& records_;
  const std::vector<StringEntry>& strings_;
  std::span<const std::string> lines_;
  std::vector<std::size_t> ifs_, thens_, elses_, dos_, exitDos_;
  bool inCondition_ = false;
  std::size_t condition_ = 0;  // the IF or ELSEIF whose condition is open
  int line_ = 0;
  std::map<int, LineShape> shapes_;
};

std::size_t LeadingBlanks(const std::string& line) {
  std::size_t n = 0;
  while (n < line.size() && (line[n] == ' ' || line[n] == '\t')) ++n;
  return n;
}

}  // namespace

CompileFault CompileLogic(std::vector<TokenRecord>& records, std::vector<StringEntry>& strings,
                          std::span<const std::string> lines, std::vector<std::string>* indentLines,
                          std::vector<int>* lineDepths) {
  // Passes after CompileMisc insert records, so a label's entry is set again to where its
  // record stands now; from here on indices do not move.
  for (std::size_t i = 0; i < records.size(); ++i) {
    const double entry = records[i].value;
    if (records[i].code == kCodeLabel && entry >= 1 && entry <= static_cast<double>(strings.size()))
      strings[static_cast<std::size_t>(entry) - 1].value = static_cast<double>(i);
  }
  BlockLinker linker(records, strings, lines);
  if (CompileFault fault = linker.Walk(); fault.Failed()) return fault;
  if (indentLines == nullptr) return {};

  // Only a script that linked cleanly is re-indented, so that a fault's columns still
  // match the text the user sees.
  const std::vector<int> depths = linker.LineDepths(indentLines->size());
  std::vector<int> shift(indentLines->size(), 0);
  for (std::size_t n = 0; n < indentLines->size(); ++n) {
    std::string& line = (*indentLines)[n];
    const std::size_t lead = LeadingBlanks(line);
    if (lead == line.size()) {
      line.clear();
      continue;
    }
    const std::size_t width = static_cast<std::size_t>(depths[n] * kIndentWidth);
    shift[n] = static_cast<int>(width) - static_cast<int>(lead);
    line = std::string(width, ' ') + line.substr(lead);
  }
  // Statement columns follow their text, so faults of later passes and the step display
  // still point at the right words. A line's first statement keeps column 0.
  for (TokenRecord& r : records) {
    if (!IsStatementMarker(r) || r.value <= 0) continue;
    const std::size_t n = static_cast<std::size_t>(r.code - kCodeStatement);
    if (n >= 1 && n <= shift.size()) r.value = std::max(0.0, r.value + shift[n - 1]);
  }
  if (lineDepths != nullptr) *lineDepths = depths;
  return {};
}
