#include "platform/linux/process/instances.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>

namespace hl {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr std::uint64_t kLongestLine = 64 << 20;  // More than the system accepts as arguments.
constexpr milliseconds kReceiveLimit{1000};
// A sender sends at once. If it connects and says nothing, it delays the window only this long.
constexpr milliseconds kFirstByteLimit{100};
constexpr milliseconds kRetry{10};
constexpr int kMarkTries = 4;
constexpr int kWaitingSenders = 64;
// The longest name that fits into a socket's address (108 bytes) between "/proc/self/fd/NUMBER/" and the
// ending.
constexpr std::size_t kLongestName = 48;
constexpr char kTaken = 1;

// --- the folder

bool isOwnAlone(int folder) {
    struct stat status {};
    if (fstat(folder, &status) != 0) return false;
    return S_ISDIR(status.st_mode) && status.st_uid == geteuid() && (status.st_mode & 077) == 0;
}

Descriptor ownFolder(const std::string& path, int flags) {
    Descriptor folder = openAt(AT_FDCWD, path, O_PATH | O_DIRECTORY | flags);
    return folder.isOpen() && isOwnAlone(folder.number()) ? std::move(folder) : Descriptor();
}

// If somebody else made a folder, or a link, of this name before us, there is no place.
Descriptor chooseFolder(const std::string& name, const InstancePlaces& places) {
    if (places.runtimeFolder.starts_with('/')) {
        Descriptor folder = ownFolder(places.runtimeFolder, 0);
        if (folder.isOpen()) return folder;
    }
    const std::string own = places.sharedFolder + "/" + name + "-" + std::to_string(geteuid());
    mkdir(own.c_str(), 0700);
    return ownFolder(own, O_NOFOLLOW);
}

// A long name is cut, and a hash of the whole name (FNV-1a) distinguishes it from others.
std::string shortName(const std::string& name) {
    if (name.size() <= kLongestName) return name;
    std::uint32_t hash = 2166136261;
    for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619;
    return name.substr(0, kLongestName - 9) + "-" + std::to_string(hash % 100'000'000);
}

// --- time

void pause(milliseconds time) {
    const timespec span{0, static_cast<long>(time.count()) * 1'000'000};
    nanosleep(&span, nullptr);
}

class Deadline {
  public:
    explicit Deadline(milliseconds limit) : end_(Clock::now() + limit) {}
    milliseconds left() const {
        return std::max(milliseconds(0), std::chrono::ceil<milliseconds>(end_ - Clock::now()));
    }
    bool passed() const { return left().count() == 0; }
    /// Waits until the socket can be read or written (`events`); returns whether it can.
    bool ready(int socket, short events) const {
        pollfd wait{socket, events, 0};
        int answer = 0;
        do {
            answer = poll(&wait, 1, static_cast<int>(left().count()));
        } while (answer < 0 && errno == EINTR);
        return answer > 0;
    }

  private:
    Clock::time_point end_;
};

// --- bytes over a socket that never blocks

// Moves the whole block with `move(bytes)`, which returns what send and recv do. Returns false if the other
// end is gone or time is up.
template <class Byte, class Move>
bool moveAll(int socket, std::span<Byte> bytes, short events, const Deadline& deadline, Move move) {
    while (!bytes.empty()) {
        const ssize_t moved = move(bytes);
        if (moved > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(moved));
            continue;
        }
        const bool again =
            moved < 0 && (errno == EINTR || (errno == EAGAIN && deadline.ready(socket, events)));
        if (!again) return false;
    }
    return true;
}

bool sendAll(int socket, std::span<const char> bytes, const Deadline& deadline) {
    return moveAll(socket, bytes, POLLOUT, deadline, [socket](std::span<const char> rest) {
        return send(socket, rest.data(), rest.size(), MSG_NOSIGNAL);
    });
}

bool receiveAll(int socket, std::span<char> bytes, const Deadline& deadline) {
    return moveAll(socket, bytes, POLLIN, deadline,
                   [socket](std::span<char> rest) { return recv(socket, rest.data(), rest.size(), 0); });
}

// Returns the process at the other end if it belongs to the same user; else 0.
pid_t ownPeer(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    const bool known = getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
    return known && peer.uid == geteuid() ? peer.pid : 0;
}

std::array<char, 8> lengthBytes(std::uint64_t length) {
    std::array<char, 8> bytes;
    for (char& byte : bytes) {
        byte = static_cast<char>(length & 0xff);
        length >>= 8;
    }
    return bytes;
}

std::uint64_t lengthOf(const std::array<char, 8>& bytes) {
    std::uint64_t length = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) length = length << 8 | static_cast<unsigned char>(bytes[i]);
    return length;
}

std::optional<std::string> receiveLine(int socket, const Deadline& deadline) {
    std::array<char, 8> head;
    if (!receiveAll(socket, head, deadline) || lengthOf(head) > kLongestLine) return std::nullopt;
    std::string line(lengthOf(head), '\0');
    if (!receiveAll(socket, line, deadline)) return std::nullopt;
    return line;
}

// --- sockets by their path

Descriptor newSocket() {
    return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

// `call` is bind or connect. Returns a system error code.
template <class Call>
int atPath(Call call, int socket, const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return ENAMETOOLONG;
    std::memcpy(address.sun_path, path.data(), path.size());
    // The interface of sockets requires this cast.
    return call(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 ? 0 : errno;
}

// Returns false if nobody took the line. `process` receives who might have.
bool deliverTo(const std::string& socketPath, const std::string& commandLine, const Deadline& deadline,
               long& process) {
    const Descriptor peer = newSocket();
    if (atPath(::connect, peer.number(), socketPath) != 0) return false;
    const pid_t listener = ownPeer(peer.number());
    if (listener == 0) return false;
    process = listener;
    std::array<char, 1> answer{};
    return sendAll(peer.number(), lengthBytes(commandLine.size()), deadline) &&
           sendAll(peer.number(), commandLine, deadline) && receiveAll(peer.number(), answer, deadline) &&
           answer[0] == kTaken;
}

}  // namespace

LinuxInstances::LinuxInstances(const std::string& name, const InstancePlaces& places,
                               Milliseconds deliveryLimit)
    : name_(shortName(name)), deliveryLimit_(deliveryLimit), folder_(chooseFolder(name_, places)) {}

LinuxInstances::~LinuxInstances() {
    letGo();
}

// The socket is removed before the mark is given up, because the next holder of the mark makes a socket of
// its own. A lock belongs to everybody who has the open file, so closing it here is not enough.
void LinuxInstances::letGo() {
    if (socket_.isOpen()) {
        unlinkat(folder_.number(), (name_ + "_APPLICATION").c_str(), 0);
        shutdown(socket_.number(), SHUT_RDWR);
        socket_.close();
    }
    if (mark_.isOpen()) flock(mark_.number(), LOCK_UN);
    mark_.close();
}

// --- the mark

// The sticky bit keeps the file from programs that tidy up folders for files of the run.
bool LinuxInstances::takeFirst() {
    if (mark_.isOpen() || !folder_.isOpen()) return true;
    const std::string mark = name_ + "_APPLICATION_MUTEX";
    Descriptor file = openAt(folder_.number(), mark, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
    if (!file.isOpen()) return true;
    // Whoever asks whether the mark is held has it for a moment, so after a refusal it is tried again.
    for (int i = 0; i < kMarkTries; ++i) {
        if (i > 0) pause(kRetry);
        if (flock(file.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) continue;
        fchmod(file.number(), S_ISVTX | S_IRUSR | S_IWUSR);
        mark_ = std::move(file);
        return true;
    }
    return false;
}

bool LinuxInstances::isHeld() {
    if (mark_.isOpen()) return true;
    if (!folder_.isOpen()) return false;
    const Descriptor file = openAt(folder_.number(), name_ + "_APPLICATION_MUTEX", O_RDONLY | O_NOFOLLOW);
    if (!file.isOpen()) return false;
    return flock(file.number(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

// --- the sender

// The path goes through the open folder, because the folder's own path may be too long for an address.
std::string LinuxInstances::socketPath() const {
    return "/proc/self/fd/" + std::to_string(folder_.number()) + "/" + name_ + "_APPLICATION";
}

bool LinuxInstances::deliver(const std::string& commandLine) {
    if (!folder_.isOpen()) return false;
    const Deadline deadline(deliveryLimit_);
    // It is tried again, because the first instance may have taken its mark only just now and not listen yet,
    // or have many senders waiting; and a sender delayed between connecting and sending may have been
    // dropped.
    process_ = 0;
    while (!deliverTo(socketPath(), commandLine, deadline, process_)) {
        if (deadline.passed() || !isHeld()) return false;
        pause(kRetry);
    }
    return true;
}

// --- the receiver

Descriptor LinuxInstances::bindSocket() const {
    const std::string file = name_ + "_APPLICATION";
    Descriptor made = newSocket();
    unlinkat(folder_.number(), file.c_str(), 0);
    if (!made.isOpen() || atPath(::bind, made.number(), socketPath()) != 0) return Descriptor();
    [[maybe_unused]] const int hint =
        fchmodat(folder_.number(), file.c_str(), S_ISVTX | S_IRUSR | S_IWUSR, 0);
    return ::listen(made.number(), kWaitingSenders) == 0 ? std::move(made) : Descriptor();
}

// Only the holder of the mark gets here, so an existing socket is left over from a process that is gone.
int LinuxInstances::listen() {
    if (!mark_.isOpen()) return -1;
    if (!socket_.isOpen()) socket_ = bindSocket();
    return socket_.number();
}

void LinuxInstances::receive(const std::function<void(const std::string&)>& taken) {
    if (!socket_.isOpen()) return;
    Descriptor peer(accept4(socket_.number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!peer.isOpen() || ownPeer(peer.number()) == 0) return;
    if (!Deadline(kFirstByteLimit).ready(peer.number(), POLLIN)) return;
    const Deadline deadline(kReceiveLimit);
    const auto line = receiveLine(peer.number(), deadline);
    if (!line || !sendAll(peer.number(), std::array<char, 1>{kTaken}, deadline)) return;
    peer.close();
    taken(*line);
}

}  // namespace hl
