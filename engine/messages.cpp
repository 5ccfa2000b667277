#include "engine/messages.h"

namespace {

// The class bit 65536 × 2^k belongs to the Notices bit 2^k.
int NoticeBits(int flags) { return (flags & msg::kClassMask) >> 16; }

int FirstOffered(int flags) {
  for (int b = kButtonOk; b <= kButtonCancel; ++b)
    if (flags & (1 << b)) return b;
  return kButtonOk;
}

}  // namespace

bool NoticeClassOn(const Game& g, int flags) {
  int bits = NoticeBits(flags);
  return bits == 0 || (g.Rules.Notices & bits) == bits;
}

MessageReply ShowMessage(Game& g, MessageRequest request) {
  const int flags = request.Flags;
  MessageReply reply;
  reply.Button = FirstOffered(flags);
  reply.Input = (flags & msg::kList) && !request.List.empty() ? request.List.front() : request.Input;
  if (g.SilentMode || g.Ui == nullptr || !NoticeClassOn(g, flags)) return reply;
  reply = g.Ui->ShowMessage(request);
  if (reply.Button < kButtonOk || reply.Button > kButtonCancel || !(flags & (1 << reply.Button)))
    reply.Button = FirstOffered(flags);
  if (reply.Hide && NoticeBits(flags)) g.Rules.Notices &= ~NoticeBits(flags);
  return reply;
}

MessageReply Tell(Game& g, std::string text, std::string title, int helpId, int flags, std::string input) {
  MessageRequest request;
  request.Text = std::move(text);
  request.Title = std::move(title);
  request.HelpId = helpId;
  request.Flags = flags;
  request.Input = std::move(input);
  return ShowMessage(g, std::move(request));
}

void TellOrStop(Game& g, const std::string& stopText, std::string text, std::string title, int helpId, int flags) {
  if (g.SilentMode) {
    g.StopReason = stopText;
    return;
  }
  Tell(g, std::move(text), std::move(title), helpId, flags);
}
