#include "online/internet_time.h"

namespace {

// 1 January 1990 in the service's count from 1900.
constexpr int64_t kSeconds1900To1990 = 2840140800;

// More than the four bytes of an answer is no answer.
constexpr size_t kAnswerBytes = 4;

}  // namespace

std::optional<int64_t> NetworkDate(std::string_view answer) {
  if (answer.size() != kAnswerBytes) return std::nullopt;
  uint32_t seconds = 0;
  for (const char c : answer) seconds = (seconds << 8) | static_cast<unsigned char>(c);
  return static_cast<int64_t>(seconds) - kSeconds1900To1990;
}

void InternetTime::Ask(const std::string& host, int port) {
  if (socket_) socket_->Close();
  answer_.clear();
  socket_ = net_.NewSocket(*this, 0);
  socket_->Connect(host, port);
}

void InternetTime::OnData(int, std::string_view bytes) {
  if (answer_.size() + bytes.size() > kAnswerBytes) {
    Finish();  // a service that says more is not one
    return;
  }
  answer_.append(bytes);
  if (answer_.size() == kAnswerBytes) {
    date_ = NetworkDate(answer_);
    Finish();
  }
}

void InternetTime::OnClose(int) {
  // The socket is gone: drop it without closing it again.
  socket_.reset();
  answer_.clear();
}

void InternetTime::Finish() {
  if (socket_) socket_->Close();
  socket_.reset();
  answer_.clear();
}
