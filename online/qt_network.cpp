#include "online/qt_network.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QPointer>
#include <QSocketNotifier>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <csignal>
#include <vector>

struct QtNetwork::Impl {
  std::map<int, QPointer<QTcpSocket>> pending;  // connections waiting for Accept
  int nextRequest = 1;
  // Connections closed with data still to go out; it goes before they end.
  std::shared_ptr<int> closing = std::make_shared<int>(0);
  // The same connections, ended at once when the network goes first.
  std::vector<QPointer<QTcpSocket>> closingSockets;
};

namespace {

// A peer that has taken nothing of this much is not waited for.
constexpr qint64 kGracefulLimit = 1 << 20;
constexpr int kGraceMs = 5000;

}  // namespace

class QtSocket : public SocketControl {
 public:
  QtSocket(QtNetwork& net, SocketEvents& events, int index) : net_(net), events_(events), index_(index) {
    ++net_.live_;
  }
  ~QtSocket() override {
    Close();
    --net_.live_;
  }

  int State() const override {
    if (server_) return kSocketListening;
    if (!socket_) return kSocketClosed;
    switch (socket_->state()) {
      case QAbstractSocket::ConnectedState: return kSocketConnected;
      case QAbstractSocket::HostLookupState:
      case QAbstractSocket::ConnectingState: return kSocketConnecting;
      default: return kSocketClosed;
    }
  }

  bool Listen(const std::string& address, int port) override {
    Close();
    server_ = new QTcpServer();
    const QHostAddress at(QString::fromStdString(address.empty() ? "127.0.0.1" : address));
    if (at.isNull() || !server_->listen(at, static_cast<quint16>(port))) {
      delete server_;
      server_ = nullptr;
      return false;
    }
    QObject::connect(server_, &QTcpServer::newConnection, server_, [this] { TakeRequests(); });
    return true;
  }

  int LocalPort() const override {
    if (server_) return server_->serverPort();
    return socket_ ? socket_->localPort() : 0;
  }

  std::string RemoteAddress() const override {
    if (!socket_) return "";
    QHostAddress a = socket_->peerAddress();
    bool v4 = false;
    const quint32 ip = a.toIPv4Address(&v4);
    return v4 ? QHostAddress(ip).toString().toStdString() : a.toString().toStdString();
  }

  void Connect(const std::string& host, int port) override {
    Close();
    socket_ = new QTcpSocket();
    Wire();
    socket_->connectToHost(QString::fromStdString(host), static_cast<quint16>(port));
  }

  bool Accept(int request) override {
    auto found = net_.impl_->pending.find(request);
    if (found == net_.impl_->pending.end()) return false;
    QPointer<QTcpSocket> taken = found->second;
    net_.impl_->pending.erase(found);
    if (!taken) return false;
    Close();
    socket_ = taken.data();
    Wire();
    return true;
  }

  void Send(std::string_view bytes) override {
    if (socket_ && socket_->state() == QAbstractSocket::ConnectedState)
      socket_->write(bytes.data(), static_cast<qint64>(bytes.size()));
  }

  size_t PendingOutput() const override { return socket_ ? static_cast<size_t>(socket_->bytesToWrite()) : 0; }

  void Close() override {
    if (server_) {
      server_->disconnect();
      server_->close();
      server_->deleteLater();
      server_ = nullptr;
    }
    if (socket_) {
      QTcpSocket* s = socket_;
      socket_ = nullptr;
      s->disconnect();  // the owner hears nothing more of it
      // What was sent goes out before the connection ends, unless the peer took nothing.
      const qint64 unsent = s->bytesToWrite();
      if (s->state() != QAbstractSocket::ConnectedState || unsent == 0 || unsent > kGracefulLimit) {
        s->abort();
        s->deleteLater();
        return;
      }
      std::shared_ptr<int> closing = net_.impl_->closing;
      ++*closing;
      auto& sockets = net_.impl_->closingSockets;
      std::erase_if(sockets, [](const QPointer<QTcpSocket>& gone) { return gone.isNull(); });
      sockets.emplace_back(s);
      auto done = std::make_shared<bool>(false);
      auto end = [s, closing, done] {
        if (*done) return;
        *done = true;
        --*closing;
        s->abort();
        s->deleteLater();
      };
      QObject::connect(s, &QTcpSocket::disconnected, s, end);
      QTimer::singleShot(kGraceMs, s, end);
      s->disconnectFromHost();
    }
  }

 private:
  // The handlers may close this socket or replace it: each reads what it needs first
  // and tells the owner last.
  void Wire() {
    QTcpSocket* s = socket_;
    // Frames are small and answered at once: Nagle's wait would add its delay to every roll.
    s->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    QObject::connect(s, &QTcpSocket::connected, s, [this, s] {
      s->setSocketOption(QAbstractSocket::LowDelayOption, 1);
      events_.OnConnect(index_);
    });
    QObject::connect(s, &QTcpSocket::readyRead, s, [this, s] {
      const QByteArray bytes = s->readAll();
      if (!bytes.isEmpty()) events_.OnData(index_, std::string_view(bytes.constData(), bytes.size()));
    });
    QObject::connect(s, &QTcpSocket::disconnected, s, [this] { Lost(); });
    QObject::connect(s, &QAbstractSocket::errorOccurred, s, [this, s](QAbstractSocket::SocketError) {
      if (s->state() != QAbstractSocket::ConnectedState) Lost();
    });
  }

  void Lost() {
    if (!socket_) return;
    socket_->disconnect();
    socket_->deleteLater();
    socket_ = nullptr;
    events_.OnClose(index_);
  }

  void TakeRequests() {
    while (server_ && server_->hasPendingConnections()) {
      QTcpSocket* s = server_->nextPendingConnection();
      s->setParent(nullptr);
      const int request = net_.impl_->nextRequest++;
      net_.impl_->pending[request] = s;
      events_.OnConnectionRequest(index_, request);
      // A request the owner didn't take is refused.
      auto left = net_.impl_->pending.find(request);
      if (left != net_.impl_->pending.end()) {
        if (left->second) {
          left->second->abort();
          left->second->deleteLater();
        }
        net_.impl_->pending.erase(left);
      }
    }
  }

  QtNetwork& net_;
  SocketEvents& events_;
  int index_;
  QTcpServer* server_ = nullptr;
  QTcpSocket* socket_ = nullptr;
};

QtNetwork::QtNetwork() : impl_(std::make_unique<Impl>()) {}

int QtNetwork::Closing() const { return *impl_->closing; }
QtNetwork::~QtNetwork() {
  for (auto& [request, s] : impl_->pending)
    if (s) s->deleteLater();
  // A connection still sending its last words when the program ends ends with it.
  for (QPointer<QTcpSocket>& s : impl_->closingSockets) {
    if (!s) continue;
    s->disconnect();
    s->abort();
    s->deleteLater();
  }
}

std::unique_ptr<SocketControl> QtNetwork::NewSocket(SocketEvents& events, int index) {
  return std::make_unique<QtSocket>(*this, events, index);
}

namespace {

int gSignalPipe[2] = {-1, -1};

void OnSignal(int) {
  const char c = 1;
  [[maybe_unused]] ssize_t n = write(gSignalPipe[1], &c, 1);
}

}  // namespace

struct QtLoop::Impl {
  std::unique_ptr<QCoreApplication> app;
  std::vector<std::unique_ptr<QTimer>> timers;
  std::unique_ptr<QSocketNotifier> notifier;
  std::function<void()> stop;
};

QtLoop::QtLoop() : impl_(std::make_unique<Impl>()) {
  static int argc = 1;
  static char name[] = "dicehall";
  static char* argv[] = {name, nullptr};
  if (QCoreApplication::instance() == nullptr) impl_->app = std::make_unique<QCoreApplication>(argc, argv);
}

QtLoop::~QtLoop() {
  impl_->timers.clear();
  impl_->notifier.reset();
  // Sockets closed by the program are deleted by the loop: give it that last turn.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void QtLoop::Every(int ms, std::function<void()> tick) {
  auto timer = std::make_unique<QTimer>();
  timer->setInterval(ms);
  QObject::connect(timer.get(), &QTimer::timeout, timer.get(), std::move(tick));
  timer->start();
  impl_->timers.push_back(std::move(timer));
}

void QtLoop::OnStopSignal(std::function<void()> stop) {
  impl_->stop = std::move(stop);
  if (gSignalPipe[0] < 0) {
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, gSignalPipe) != 0) return;
    fcntl(gSignalPipe[1], F_SETFL, O_NONBLOCK);
    struct sigaction sa = {};
    sa.sa_handler = OnSignal;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &sa, nullptr);
    sigaction(SIGINT, &sa, nullptr);
  }
  impl_->notifier = std::make_unique<QSocketNotifier>(gSignalPipe[0], QSocketNotifier::Read);
  QObject::connect(impl_->notifier.get(), &QSocketNotifier::activated, impl_->notifier.get(), [this] {
    char c;
    [[maybe_unused]] ssize_t n = read(gSignalPipe[0], &c, 1);
    if (impl_->stop) impl_->stop();
    else Quit(0);
  });
}

int QtLoop::Run() { return QCoreApplication::exec(); }

void QtLoop::Quit(int code) { QCoreApplication::exit(code); }

void QtLoop::Turn(int ms, const std::function<bool()>& done) {
  QElapsedTimer clock;
  clock.start();
  while (clock.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (done && done()) return;
  }
}
