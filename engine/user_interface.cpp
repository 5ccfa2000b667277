#include "engine/user_interface.h"

namespace {

int FirstOfferedButton(int flags) {
  for (int b = kButtonOk; b <= kButtonCancel; ++b)
    if (flags & (1 << b)) return b;
  return kButtonOk;
}

}  // namespace

MessageReply HeadlessUi::ShowMessage(const MessageRequest& request) {
  MessageReply reply;
  reply.Button = FirstOfferedButton(request.Flags);
  reply.Input = (request.Flags & msg::kList) && !request.List.empty() ? request.List.front() : request.Input;
  if (!replies.empty()) {
    MessageReply scripted = replies.front();
    replies.pop_front();
    bool offered = scripted.Button >= 0 && scripted.Button <= kButtonCancel && (request.Flags & (1 << scripted.Button));
    if (!offered) {
      faults.push_back("button " + std::to_string(scripted.Button) + " is not offered by \"" + request.Title + "\"");
    } else {
      reply.Button = scripted.Button;
      if (request.Flags & msg::kInput) reply.Input = scripted.Input;
      if (request.Flags & msg::kList) {
        // Only an item of the list can be chosen.
        bool listed = false;
        for (const std::string& item : request.List) listed = listed || item == scripted.Input;
        if (listed) reply.Input = scripted.Input;
        else faults.push_back("\"" + scripted.Input + "\" is not in the list of \"" + request.Title + "\"");
      }
      reply.Hide = scripted.Hide && (request.Flags & msg::kClassMask);
    }
  }
  transcript.push_back({request, reply});
  return reply;
}

int HeadlessUi::AskSettle(const SettleRequest& request) {
  settles.push_back(request);
  int action = request.Actions.empty() ? 1 : request.Actions.front();
  if (!settleReplies.empty()) {
    int wanted = settleReplies.front();
    settleReplies.pop_front();
    bool offered = request.RuleRows && (wanted == 6 || wanted == 7);
    for (int a : request.Actions) offered = offered || a == wanted;
    if (offered) action = wanted;
    else faults.push_back("action " + std::to_string(wanted) + " is not offered by the settle dialog");
  }
  return action;
}
