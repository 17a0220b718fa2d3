// A mount that a process of the test serves, and what may happen to it: the process stops answering, answers
// again, or dies.
#pragma once

#include <signal.h>
#include <sys/mount.h>

#include "support/patience.h"

namespace hl::test {

class FuseMount {
  public:
    /// Shows the folder `of` at the folder `at`, which is made if missing. Questions for what lies below
    /// "hangs", and for its entries, are never answered: see tests/support/fuse_server.cpp.
    FuseMount(const std::string& of, const std::string& at) : at_(at) {
        fs::create_directories(at);
        if (!missing_.empty()) return;
        const dev_t before = factsOf(at).st_dev;
        server_ = must(::fork());
        if (server_ == 0) {
            ::dup2(must(::open("/dev/null", O_RDWR)), STDERR_FILENO);  // The library would advise.
            ::execl(server().c_str(), "fuse_server", of.c_str(), at.c_str(), nullptr);
            ::_exit(127);
        }
        mounted_ = comes([&] { return factsOf(at).st_dev != before || ended(); }) && server_ > 0;
        if (!mounted_) missing_ = "the test may not mount";
    }
    ~FuseMount() {
        die();
        if (mounted_) ::umount2(at_.c_str(), MNT_DETACH);
    }
    FuseMount(const FuseMount&) = delete;
    FuseMount& operator=(const FuseMount&) = delete;

    /// Returns why there is no mount, for GTEST_SKIP; empty if there is one.
    const std::string& missing() const { return missing_; }

    /// Makes each further call on the mount hang.
    void stopAnswering() const {
        ::kill(server_, SIGSTOP);
        ::waitpid(server_, nullptr, WUNTRACED);  // Waits until the last of its threads has stopped.
    }
    /// Answers the hanging calls and all further ones.
    void answerAgain() const { ::kill(server_, SIGCONT); }
    /// Ends the hanging calls and all further ones with an error (ENOTCONN, ECONNABORTED).
    void die() {
        if (server_ <= 0) return;
        ::kill(server_, SIGKILL);
        ::waitpid(server_, nullptr, 0);
        server_ = -1;
    }

  private:
    // The server is beside the tests.
    static std::string server() { return fs::read_symlink("/proc/self/exe").parent_path() / "fuse_server"; }
    static std::string whyNot() {
        if (::access(server().c_str(), X_OK) != 0) return "libfuse3 was not there when the tests were built";
        if (::geteuid() != 0) return "only root mounts without a helper";
        return ::access("/dev/fuse", R_OK | W_OK) != 0 ? "there is no /dev/fuse" : "";
    }
    bool ended() {
        if (::waitpid(server_, nullptr, WNOHANG) != server_) return false;
        server_ = -1;
        return true;
    }

    std::string at_, missing_ = whyNot();
    pid_t server_ = -1;
    bool mounted_ = false;
};

}  // namespace hl::test
