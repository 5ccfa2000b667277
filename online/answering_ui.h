#pragma once
// A client's answers without a person: the questions of joining a table are answered
// from settings by their titles (the password, the name, the seat, the buy-in, the wait
// list and a free spot), every other box by its first button. What was asked is kept,
// the last few boxes only, for a headless client that runs for hours.

#include <deque>
#include <string>

#include "engine/money.h"
#include "engine/user_interface.h"

class AnsweringUi : public HeadlessUi {
 public:
  std::string Password;
  std::string Name;
  std::string Seat;  // a seat name ("1R") or number; "" the first one offered
  Money BuyIn = Money::Dollars(1000);
  bool JoinWaitList = true;
  size_t Keep = 50;  // boxes kept in the transcript

  MessageReply ShowMessage(const MessageRequest& request) override;
  // The titles asked, in order (kept like the transcript).
  std::deque<std::string> Titles;

 private:
  int namesAsked_ = 0;
};
