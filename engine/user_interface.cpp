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
  reply.Input = request.Input;
  if (!replies.empty()) {
    MessageReply scripted = replies.front();
    replies.pop_front();
    bool offered = scripted.Button >= 0 && scripted.Button <= kButtonCancel &&
                   (request.Flags & (1 << scripted.Button));
    if (!offered) {
      faults.push_back("button " + std::to_string(scripted.Button) + " is not offered by \"" +
                       request.Title + "\"");
    } else {
      reply.Button = scripted.Button;
      if (request.Flags & (msg::kInput | msg::kList)) reply.Input = scripted.Input;
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
    bool offered = false;
    for (int a : request.Actions) offered = offered || a == wanted;
    if (offered) action = wanted;
    else faults.push_back("action " + std::to_string(wanted) + " is not offered by the settle dialog");
  }
  return action;
}
