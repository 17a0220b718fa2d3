// A process of the preview: started with its limits set, and ended with all that it has started. For the
// thread of the logic.
#pragma once

#include <sys/types.h>

#include <vector>

#include "platform/linux/process/descriptor.h"
#include "platform/preview_tools.h"

namespace hl {

class LinuxHelperProcess final : public HelperProcess {
  public:
    /// Returns null, with errno set, if no process can be made. A process that is killed and does not end at
    /// once is added to `ending`, which must outlive this object.
    static std::unique_ptr<HelperProcess> start(const ProcessOrder& order, std::vector<pid_t>& ending);
    ~LinuxHelperProcess() override;
    LinuxHelperProcess(const LinuxHelperProcess&) = delete;
    LinuxHelperProcess& operator=(const LinuxHelperProcess&) = delete;

    int outputDescriptor() const override { return output_.number(); }
    bool readOutput(std::string& to, std::size_t limit) override;
    bool send(std::string_view text) override;
    bool endedWell() override;

  private:
    LinuxHelperProcess(pid_t process, Descriptor input, Descriptor output, std::vector<pid_t>& ending)
        : process_(process), input_(std::move(input)), output_(std::move(output)), ending_(ending) {}

    pid_t process_;  ///< -1 once it has been waited for.
    Descriptor input_, output_;
    std::vector<pid_t>& ending_;
};

}  // namespace hl
