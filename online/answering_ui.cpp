#include "online/answering_ui.h"

#include "engine/bets.h"

namespace {

// The offered seat to take: the wanted one when it is offered, else the first offered.
std::string ChooseSeat(const std::string& text, const std::string& wanted) {
  const size_t list = text.rfind('\n');
  std::string offered = list == std::string::npos ? text : text.substr(list + 1);
  std::string first;
  size_t at = 0;
  while (at < offered.size()) {
    size_t end = offered.find(',', at);
    if (end == std::string::npos) end = offered.size();
    std::string seat = offered.substr(at, end - at);
    while (!seat.empty() && seat.front() == ' ') seat.erase(seat.begin());
    if (first.empty()) first = seat;
    if (!wanted.empty() && (seat == wanted || (wanted.size() == 1 && SeatName(wanted[0] - '0') == seat))) return seat;
    at = end + 1;
  }
  return first;
}

}  // namespace

MessageReply AnsweringUi::ShowMessage(const MessageRequest& request) {
  MessageReply reply;
  const std::string& t = request.Title;
  if (t == "Password") {
    // A password the table refused is not given again.
    if (request.Text.rfind("Wrong password.", 0) == 0) reply.Button = kButtonCancel;
    reply.Input = Password;
  } else if (t == "Welcome!") {
    // The name is given once: asked again, it was refused, and the client gives up.
    if (++namesAsked_ > 1) reply.Button = kButtonCancel;
    reply.Input = Name;
  } else if (t == "Table position") {
    reply.Input = ChooseSeat(request.Text, Seat);
  } else if (t == "Buy-in") {
    reply.Input = MoneyText(BuyIn);
  } else if (t == "Join wait list") {
    reply.Button = JoinWaitList ? kButtonYes : kButtonNo;
  } else if (t == "Player spot open") {
    reply.Button = kButtonOk;
  } else {
    reply = HeadlessUi::ShowMessage(request);
    transcript.pop_back();
  }
  transcript.push_back({request, reply});
  Titles.push_back(t);
  while (transcript.size() > Keep) transcript.erase(transcript.begin());
  while (Titles.size() > Keep) Titles.pop_front();
  return reply;
}
