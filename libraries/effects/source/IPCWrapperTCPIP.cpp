#include "TolenEffects/IPCWrapperTCPIP.h"

#include <arpa/inet.h>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <mutex>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

// The unit of this library that is written for one family of operating systems: POSIX sockets.

namespace {

/// The error of bind() at which the next port is tried. No system here gives it for a port in use,
/// so the first failure ends the search.
constexpr int kErrorNextPort = 100;
constexpr int kBacklog = 1;
constexpr int kNoSocket = -1;
/// How long who ends a listener waits for its own connection, and between two of them.
constexpr int kMillisecondsToWake = 2;

const char* TakeLogPrefix() {
    static constexpr const char* kPrefixes[] = {"A: ", "B: "};
    static std::atomic<unsigned int> count{0};
    return kPrefixes[count.fetch_add(1) % 2];
}

/// Port 0 would stand for any, which nobody could find.
bool IsPort(int port) {
    return port > 0 && port <= 65535;
}

bool IsPending(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINPROGRESS;
}

bool SetOption(int socket, int level, int option) {
    const int on = 1;
    return ::setsockopt(socket, level, option, &on, sizeof on) == 0;
}

/// The last IPv4 address of a machine. "localhost" is known also where a bare system has no file of
/// hosts that says so.
bool Resolve(const char* name, in_addr& address) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    if (::getaddrinfo(name, nullptr, &hints, &list) != 0) {
        const bool isLocal = std::string_view(name) == "localhost";
        address.s_addr = isLocal ? htonl(INADDR_LOOPBACK) : address.s_addr;
        return isLocal;
    }
    bool isFound = false;
    for (const addrinfo* entry = list; entry != nullptr; entry = entry->ai_next) {
        if (entry->ai_family == AF_INET) {
            address = reinterpret_cast<const sockaddr_in*>(entry->ai_addr)->sin_addr;
            isFound = true;
        }
    }
    ::freeaddrinfo(list);
    return isFound;
}

sockaddr_in MakeAddress(in_addr machine, int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr = machine;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

template <class Address>
auto* AsGeneral(Address& address) {
    return reinterpret_cast<sockaddr*>(&address);
}

int AcceptOne(int listener) {
    int socket = kNoSocket;
    do {
        socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    } while (socket == kNoSocket && (errno == EINTR || errno == ECONNABORTED));
    return socket;
}

bool WaitFor(int socket, short events, int milliseconds) {
    pollfd waited{socket, events, 0};
    int ready = 0;
    do {
        ready = ::poll(&waited, 1, milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

/// Calls @p move(offset) until @p count bytes are through, as Read() and Write() answer.
template <class Move>
int MoveAll(int socket, short events, int count, Move move) {
    int done = 0;
    while (done < count) {
        const ssize_t moved = move(done);
        if (moved > 0) {
            done += static_cast<int>(moved);
        } else if (moved == 0) {
            return done > 0 ? done : -1;
        } else if (IsPending(errno)) {
            WaitFor(socket, events, -1);
        } else if (errno != EINTR) {
            return -1;
        }
    }
    return done;
}

} // namespace

struct IPCWrapperTCPIP::Connection {
    const char* logPrefix = TakeLogPrefix();
    int socket = kNoSocket;
    bool isConnected = false;
    sockaddr_in address = MakeAddress({INADDR_ANY}, 0);
    /// Guards all fields of both objects that Stop() looks at from another thread.
    std::mutex mutex;
};

IPCWrapperTCPIP::IPCWrapperTCPIP(const std::string& name, int firstPort, int lastPort)
    : _pConnection(std::make_unique<Connection>()), _name(name), _portFirst(firstPort),
      _portLast(lastPort) {}

IPCWrapperTCPIP::~IPCWrapperTCPIP() {
    Close();
}

void IPCWrapperTCPIP::Stop() {
    {
        const std::lock_guard lock(_pConnection->mutex);
        _isStopping = true;
        if (_pConnection->socket != kNoSocket) {
            // Wakes who waits for bytes, and who then closes it.
            ::shutdown(_pConnection->socket, SHUT_RDWR);
            return;
        }
    }
    _WakeListener();
}

/// Closing a socket doesn't wake who waits for its clients, but a client does.
void IPCWrapperTCPIP::_WakeListener() {
    in_addr machine{htonl(INADDR_LOOPBACK)};
    Resolve("localhost", machine);
    for (int port = GetPortFound(); port != -1; port = GetPortFound()) {
        const int socket =
            ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_TCP);
        if (socket != kNoSocket) {
            sockaddr_in address = MakeAddress(machine, port);
            // A queue that is full lets nobody in, but then nobody waits for clients either.
            if (::connect(socket, AsGeneral(address), sizeof address) != 0 && IsPending(errno)) {
                WaitFor(socket, POLLOUT, kMillisecondsToWake);
            }
            ::close(socket);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(kMillisecondsToWake));
    }
}

void IPCWrapperTCPIP::Listen() {
    Close();
    const int listener = _OpenListener();
    if (listener == kNoSocket) {
        return;
    }
    const bool isAccepted = _AcceptClient(listener);
    ::close(listener);
    if (!isAccepted) {
        Close();
    }
}

/// @return a socket that holds the port which is noted; kNoSocket when there is none or it is ended
int IPCWrapperTCPIP::_OpenListener() {
    for (int port = _portFirst; IsPort(port); ++port) {
        const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
        if (listener == kNoSocket) {
            return kNoSocket;
        }
        // Connections that ended a moment ago would keep the port otherwise.
        SetOption(listener, SOL_SOCKET, SO_REUSEADDR);
        _pConnection->address = MakeAddress({INADDR_ANY}, port);
        const bool isBound =
            ::bind(listener, AsGeneral(_pConnection->address), sizeof _pConnection->address) == 0;
        const int error = errno;
        // Two that are bound for reuse meet only here.
        const bool isListening = isBound && ::listen(listener, kBacklog) == 0;
        const std::lock_guard lock(_pConnection->mutex);
        if (isListening && !_isStopping) {
            _portFound = port;
            _isPortTaken = false;
            return listener;
        }
        ::close(listener);
        if (isBound || error != kErrorNextPort || port >= _portLast) {
            _isPortTaken = !isListening;
            return kNoSocket;
        }
    }
    return kNoSocket;
}

bool IPCWrapperTCPIP::_AcceptClient(int listener) {
    const int client = AcceptOne(listener);
    if (client == kNoSocket) {
        return false;
    }
    {
        const std::lock_guard lock(_pConnection->mutex);
        if (_isStopping) {
            ::close(client);
            return false;
        }
        _pConnection->socket = client;
    }
    if (!SetOption(client, IPPROTO_TCP, TCP_NODELAY)) {
        return false;
    }
    const std::lock_guard lock(_pConnection->mutex);
    _pConnection->isConnected = true;
    return true;
}

void IPCWrapperTCPIP::Connect() {
    Close();
    in_addr machine{};
    const int socket =
        IsPort(_portFirst) && Resolve(_name.c_str(), machine)
            ? ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_TCP)
            : kNoSocket;
    {
        const std::lock_guard lock(_pConnection->mutex);
        if (socket == kNoSocket || _isStopping) {
            if (socket != kNoSocket) {
                ::close(socket);
            }
            return;
        }
        _pConnection->socket = socket;
        _pConnection->address = MakeAddress(machine, _portFirst);
    }
    if (!SetOption(socket, IPPROTO_TCP, TCP_NODELAY) ||
        !SetOption(socket, SOL_SOCKET, SO_REUSEADDR)) {
        Close();
        return;
    }
    if (::connect(socket, AsGeneral(_pConnection->address), sizeof _pConnection->address) == 0) {
        const std::lock_guard lock(_pConnection->mutex);
        _pConnection->isConnected = true;
    } else if (!IsPending(errno) && errno != EINTR) {
        Close();
    }
}

void IPCWrapperTCPIP::Poll() {
    const int socket = GetSocket();
    if (socket == kNoSocket || IsConnected() || !WaitFor(socket, POLLOUT, 0)) {
        return;
    }
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) != 0 || error != 0) {
        Close();
        return;
    }
    const std::lock_guard lock(_pConnection->mutex);
    _pConnection->isConnected = true;
}

int IPCWrapperTCPIP::BytesAvailable() {
    const int socket = GetSocket();
    int count = 0;
    if (socket == kNoSocket) {
        return 0;
    }
    if (::ioctl(socket, FIONREAD, &count) != 0) {
        Close();
        return 0;
    }
    return count;
}

void IPCWrapperTCPIP::Close() {
    const std::lock_guard lock(_pConnection->mutex);
    if (_pConnection->socket != kNoSocket) {
        ::close(_pConnection->socket);
    }
    _pConnection->socket = kNoSocket;
    _pConnection->isConnected = false;
    _portFound = -1;
}

int IPCWrapperTCPIP::Read(void* buffer, int count) {
    const int socket = GetSocket();
    return MoveAll(socket, POLLIN, count, [&](int done) {
        return ::recv(socket, static_cast<char*>(buffer) + done,
                      static_cast<std::size_t>(count - done), 0);
    });
}

int IPCWrapperTCPIP::Write(const void* buffer, int count) {
    const int socket = GetSocket();
    return MoveAll(socket, POLLOUT, count, [&](int done) {
        return ::send(socket, static_cast<const char*>(buffer) + done,
                      static_cast<std::size_t>(count - done), MSG_NOSIGNAL);
    });
}

int IPCWrapperTCPIP::GetSocket() {
    const std::lock_guard lock(_pConnection->mutex);
    return _pConnection->socket;
}

bool IPCWrapperTCPIP::IsPortTaken() const {
    const std::lock_guard lock(_pConnection->mutex);
    return _isPortTaken;
}

bool IPCWrapperTCPIP::IsConnected() const {
    const std::lock_guard lock(_pConnection->mutex);
    return _pConnection->isConnected;
}

int IPCWrapperTCPIP::GetPortFound() const {
    const std::lock_guard lock(_pConnection->mutex);
    return _portFound;
}
