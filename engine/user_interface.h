#pragma once
// The only way the engine speaks to a person. The desktop implements it with its own
// windows; HeadlessUi answers from scripted replies and keeps a transcript.

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "engine/clock.h"
#include "engine/money.h"

// Bits of the message flags.
namespace msg {
constexpr int kOk = 1, kYes = 2, kNo = 4, kCancel = 8, kHelp = 16;
constexpr int kPicture1 = 256, kPicture2 = 512, kPicture3 = 1024, kPicture4 = 2048;
constexpr int kClass1 = 65536, kClass2 = 131072, kClass4 = 262144, kClass8 = 524288;
constexpr int kClassMask = kClass1 | kClass2 | kClass4 | kClass8;
constexpr int kInput = 16777216, kList = 33554432, kCentre = 67108864;
constexpr int kPlainOk = 1, kAlertOk = 513, kAlertOkHelp = 529, kYesNoQuestion = 9222;
}  // namespace msg

// Button numbers: bit 2^n of the flags shows button n.
enum MsgButton { kButtonOk = 0, kButtonYes = 1, kButtonNo = 2, kButtonCancel = 3, kButtonHelp = 4 };

struct MessageRequest {
  std::string Text;
  std::string Title;
  int HelpId = 0;
  int Flags = msg::kPlainOk;
  double Scale = 1.0;             // the text width factor
  int Width = 0;                  // a fixed width in pixels, where a box has one
  std::string Input;              // the input field's starting text
  std::vector<std::string> List;  // the items of the list
};

struct MessageReply {
  int Button = kButtonOk;
  std::string Input;  // the typed text, or the chosen list item
  bool Hide = false;  // the "Hide" tick of a notice class
};

// The settle dialog: every label and button of frmSettleBet, and the chosen action.
struct SettleRequest {
  std::string Title;                 // "WINNER", ...
  std::vector<std::string> Labels;   // in order from the top
  std::vector<std::string> Buttons;  // cmdHandle captions, in order
  std::vector<int> Actions;          // the action each button stands for
  // The two rows of fields, "Modify" (action 6) and "&Bet" (action 7), with the values
  // the seat last used; offered unless the bet must come down.
  bool RuleRows = false;
  int Seat = 0;     // whose bet it is
  int RuleRow = 0;  // the seat's settle-rule row of "Modify"; "&Bet" is the next one
  int ModifyOperator = 0, ModifyUnits = 0, BetUnits = 0;
  Money ModifyAmount, BetAmount;
};

// One step of Auto-Bet's step mode: the text for the Steps window, its title, and the
// source range of the statement in progress (lines from 1, columns from 0; a last column
// of -1 runs to the end of the line) in the script of `Seat`.
struct StepRequest {
  std::string Text;
  std::string Title;
  int Seat = 0;
  int FirstLine = 0, FirstColumn = 0, LastLine = 0, LastColumn = -1;
};

class UserInterface {
 public:
  virtual ~UserInterface() = default;
  virtual MessageReply ShowMessage(const MessageRequest& request) = 0;
  // Returns the action of the chosen button.
  virtual int AskSettle(const SettleRequest& request) = 0;
  // A full path, or "" for Cancel.
  virtual std::string ChooseFile(const std::string& title, const std::string& filter) = 0;
  virtual void PlaySound(const std::string& file, bool wait) = 0;
  // Redraw the table, the status and the open windows named.
  virtual void Refresh(const std::vector<std::string>& windows) = 0;
  // Auto-Bet step mode: blocks until Next (true) or Stop (false).
  virtual bool ShowStep(const StepRequest& request) = 0;
  // One turn of the event loop.
  virtual void Yield() = 0;
};

// Answers from a queue of scripted replies, else by the first button offered; keeps a
// transcript of everything asked. A scripted reply naming a button that the message
// doesn't offer is not taken: the default answers and the fault is in `faults`.
class HeadlessUi : public UserInterface {
 public:
  struct Entry {
    MessageRequest request;
    MessageReply reply;
  };
  std::deque<MessageReply> replies;
  std::deque<int> settleReplies;
  std::vector<Entry> transcript;
  std::vector<SettleRequest> settles;
  std::vector<std::string> sounds;
  std::vector<std::string> faults;
  int yields = 0;
  int refreshes = 0;

  MessageReply ShowMessage(const MessageRequest& request) override;
  int AskSettle(const SettleRequest& request) override;
  std::string ChooseFile(const std::string&, const std::string&) override { return ""; }
  void PlaySound(const std::string& file, bool) override { sounds.push_back(file); }
  void Refresh(const std::vector<std::string>&) override { ++refreshes; }
  // Step mode: every step shown, answered by `stepReplies` (true Next, false Stop) or Next.
  std::vector<StepRequest> steps;
  std::deque<bool> stepReplies;
  bool ShowStep(const StepRequest& request) override {
    steps.push_back(request);
    if (stepReplies.empty()) return true;
    const bool next = stepReplies.front();
    stepReplies.pop_front();
    return next;
  }
  // A fake clock that each turn of the event loop moves on by 10 ms, so that waits end.
  FakeClock* advance = nullptr;
  void Yield() override {
    ++yields;
    if (advance) advance->tick += 10;
  }

  // The text of the last message, "" when none.
  std::string LastText() const { return transcript.empty() ? "" : transcript.back().request.Text; }
};
