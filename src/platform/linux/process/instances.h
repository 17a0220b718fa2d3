// Finds other instances by a locked file and a local socket, in a folder that only the user can enter. For
// the thread of the logic.
//
//     NAME_APPLICATION_MUTEX    locked by the first instance for as long as it runs; the file itself stays
//     NAME_APPLICATION          the socket on which it takes command lines
//
// A delivery is eight bytes with the length of the line, the lowest first, then the line; the answer is one
// byte. The lock of a process ends with it, even if it is killed, and the socket that it leaves is replaced.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "platform/instances.h"
#include "platform/linux/process/descriptor.h"

namespace hl {

/// The places where the mark and the socket may be.
struct InstancePlaces {
    std::string
        runtimeFolder;  ///< $XDG_RUNTIME_DIR; may be empty, and is skipped if it does not belong to the user.
    std::string sharedFolder = "/tmp";  ///< A folder NAME-UID is made here if there is no runtime folder.
};

class LinuxInstances final : public Instances {
  public:
    using Milliseconds = std::chrono::milliseconds;
    static constexpr Milliseconds kDeliveryLimit{3000};

    /// `name` is that of the executable without an extension; instances with the same name are of the same
    /// program.
    LinuxInstances(const std::string& name, const InstancePlaces& places,
                   Milliseconds deliveryLimit = kDeliveryLimit);
    ~LinuxInstances() override;
    LinuxInstances(const LinuxInstances&) = delete;
    LinuxInstances& operator=(const LinuxInstances&) = delete;

    bool takeFirst() override;
    bool isHeld() override;
    bool deliver(const std::string& commandLine) override;
    long process() const override { return process_; }
    void letGo() override;
    int listen() override;
    void receive(const std::function<void(const std::string&)>& taken) override;

  private:
    std::string socketPath() const;
    Descriptor bindSocket() const;

    std::string name_;
    Milliseconds deliveryLimit_;
    long process_ = 0;   ///< The first instance's process, as the last delivery found it.
    Descriptor folder_;  ///< Not open if there is no safe place.
    Descriptor mark_;    ///< Open while this process is the first.
    Descriptor socket_;  ///< Open while it listens.
};

}  // namespace hl
