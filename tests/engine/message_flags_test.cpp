// The engine's side of the message box: hidden notice classes, replies the box didn't
// offer, and silence.

#include <gtest/gtest.h>

#include "engine/messages.h"
#include "tests/engine/line_table.h"

namespace {

MessageReply Clicked(int button, bool hide = false) { return {button, "", hide}; }

TEST(MessageFlags, HidingAClassClearsItsNoticeBitAndSilencesIt) {
  LineTable t;
  t.ui.replies.push_back(Clicked(kButtonOk, true));
  Tell(t.g, "first", "Ann", 510, msg::kOk | msg::kHelp | msg::kClass1);
  EXPECT_EQ(t.g.Rules.Notices, 15 & ~1);
  ASSERT_EQ(t.Messages(), 1);

  MessageReply r = Tell(t.g, "second", "Ann", 510, msg::kOk | msg::kHelp | msg::kClass1);
  EXPECT_EQ(t.Messages(), 1);
  EXPECT_EQ(r.Button, kButtonOk);

  // Other classes, and messages of no class, still speak.
  Tell(t.g, "a limit", "Ann", 510, msg::kOk | msg::kClass2);
  Tell(t.g, "plain", "Ann", 0, msg::kOk);
  EXPECT_EQ(t.Messages(), 3);
  EXPECT_EQ(t.g.Rules.Notices, 14);
}

// Hide on a message of no class changes nothing.
TEST(MessageFlags, EachClassOwnsItsNoticeBit) {
  const int classes[5] = {msg::kClass1, msg::kClass2, msg::kClass4, msg::kClass8, msg::kHelp};
  for (int k = 0; k < 5; ++k) {
    LineTable t;
    t.ui.replies.push_back(Clicked(kButtonOk, true));
    Tell(t.g, "text", "title", 0, msg::kOk | classes[k]);
    EXPECT_EQ(t.g.Rules.Notices, 15 & ~(1 << k)) << "class " << classes[k];
  }
}

TEST(MessageFlags, AHiddenPutRefusalStillRefuses) {
  AnnTable t;
  t.g.Rules.AllowPutBets = false;
  t.PassLineThen(4);
  t.ui.replies.push_back(Clicked(kButtonOk, true));
  EXPECT_EQ(t.Bet(1, bet::PassLine, 5_usd), Money{});
  ASSERT_EQ(t.Messages(), 1);
  EXPECT_FALSE(t.g.Rules.Notices & kNoticeRules);

  EXPECT_EQ(t.Bet(1, bet::PassLine, 5_usd), Money{});
  EXPECT_EQ(t.Messages(), 1);
  EXPECT_EQ(t.Amount(1, bet::PassLine), 10_usd);
}

TEST(MessageFlags, AReplyTheBoxDidNotOfferIsRefused) {
  LineTable t;
  t.ui.replies.push_back(Clicked(kButtonYes, true));
  MessageReply r = Tell(t.g, "text", "Ann", 0, msg::kOk | msg::kHelp | msg::kClass1);
  EXPECT_EQ(r.Button, kButtonOk);
  EXPECT_EQ(t.ui.faults.size(), 1u);
  EXPECT_EQ(t.g.Rules.Notices, 15);  // the refused reply's tick doesn't count either

  // A question answers Yes by default.
  t.ui.replies.push_back(Clicked(kButtonOk));
  r = Tell(t.g, "Go on?", "Question", 0, msg::kYesNoQuestion);
  EXPECT_EQ(r.Button, kButtonYes);
  EXPECT_EQ(t.ui.faults.size(), 2u);

  t.ui.replies.push_back(Clicked(kButtonNo));
  r = Tell(t.g, "Go on?", "Question", 0, msg::kYesNoQuestion);
  EXPECT_EQ(r.Button, kButtonNo);
  EXPECT_EQ(t.ui.faults.size(), 2u);
}

TEST(MessageFlags, SilentModeShowsNothing) {
  LineTable t;
  t.g.SilentMode = true;
  MessageReply r = Tell(t.g, "text", "title", 0, msg::kYesNoQuestion);
  EXPECT_EQ(r.Button, kButtonYes);
  TellOrStop(t.g, "Stopped.", "text", "title", 0, msg::kOk);
  EXPECT_EQ(t.g.StopReason, "Stopped.");

  t.Seat(1, "Ann", 1000_usd);
  t.g.Rules.AllowPutBets = false;
  t.PassLineThen(4);
  EXPECT_EQ(t.Bet(1, bet::PassLine, 5_usd), Money{});
  EXPECT_EQ(t.Messages(), 0);
}

}  // namespace
