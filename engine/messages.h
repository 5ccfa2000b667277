#pragma once
// The engine's side of the message box: notice classes that the user has hidden stay
// hidden, a reply is only one the box offered, and "Hide" clears the class.

#include <string>

#include "engine/game_state.h"

// Whether a message with these flags would be shown (its notice class is on).
bool NoticeClassOn(const Game& g, int flags);

// Shows the message record unless SilentMode is on or its class is hidden; then, and
// for a reply naming a button the box doesn't offer, the first offered button answers.
// A ticked "Hide" clears the message's class in Notices.
MessageReply ShowMessage(Game& g, MessageRequest request);
// ShowMessage with the record filled from the arguments.
MessageReply Tell(Game& g, std::string text, std::string title, int helpId, int flags, std::string input = {});

// Under SilentMode the text of a stop becomes the stop reason; otherwise it is shown.
void TellOrStop(Game& g, const std::string& stopText, std::string text, std::string title, int helpId, int flags);
