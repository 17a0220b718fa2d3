// The least that a walk by several threads costs: they take folders from one stack, in whatever order they
// come. Nobody waits for the next folder of an order, and no listing is handed from one thread to another. A
// program that keeps the order can come near to this and no nearer.
#include "floor.h"

#include <unistd.h>

#include <condition_variable>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

/// An open folder; the last user closes it.
struct Folder {
    explicit Folder(int descriptor) : fd(descriptor) {}
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { close(fd); }
    const int fd;
};
using FolderPointer = std::shared_ptr<Folder>;

/// What is still to be done in a folder: some of its subfolders, each name with a NUL at its end, or, without
/// names, the listing itself, whose entries so far have been read.
struct Work {
    FolderPointer folder;
    std::string names;
    std::size_t next = 0;
};

/// One step: `name` is a subfolder to be opened; if it is empty, the folder is to be read on.
struct Step {
    FolderPointer folder;
    std::string name;
};

/// The list of what is to be done. All threads use it.
class Stack {
  public:
    void push(Work work) {
        {
            const std::lock_guard lock(mutex_);
            works_.push_back(std::move(work));
        }
        changed_.notify_one();
    }

    /// Waits for a step. Returns false at the end, when nothing is left and no thread may add anything. A
    /// thread that has taken a step calls this again when the step is done; `first` is for its first call.
    bool take(Step& step, bool first) {
        std::unique_lock lock(mutex_);
        if (!first) --busy_;
        if (works_.empty() && busy_ == 0) changed_.notify_all();
        changed_.wait(lock, [&] { return !works_.empty() || busy_ == 0; });
        if (works_.empty()) return false;
        ++busy_;
        step = next();
        return true;
    }

  private:
    Step next() {
        Work& top = works_.back();
        Step step{top.folder, top.names.c_str() + top.next};
        top.next += step.name.size() + 1;
        if (top.next >= top.names.size()) works_.pop_back();
        return step;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Work> works_;
    int busy_ = 0;
};

/// Reads the folder to its end. While a buffer of a long one is looked at, another thread may read on.
void readFolder(const FolderPointer& folder, char* buffer, Stack& stack, Totals& totals) {
    ssize_t got = 0;
    bool handedOn = false;
    while (!handedOn && (got = getdents64(folder->fd, buffer, kBufferBytes)) > 0) {
        handedOn = got > static_cast<ssize_t>(kBufferBytes / 2);
        if (handedOn) stack.push({folder, {}});
        std::string names;
        lookAtAll(folder->fd, buffer, got, totals,
                  [&](const char* name) { names.append(name, strlen(name) + 1); });
        if (!names.empty()) stack.push({folder, std::move(names)});
    }
    if (got < 0) ++totals.errors;
}

Totals walk(Stack& stack) {
    Totals totals;
    const auto buffer = std::make_unique<char[]>(kBufferBytes);
    Step step;
    for (bool first = true; stack.take(step, first); first = false) {
        if (!step.name.empty()) {
            const int fd = openFolder(step.folder->fd, step.name.c_str());
            if (fd < 0) {
                ++totals.errors;
                continue;
            }
            step.folder = std::make_shared<Folder>(fd);
        }
        readFolder(step.folder, buffer.get(), stack, totals);
        step.folder.reset();
    }
    return totals;
}

}  // namespace

int main(int argc, char** argv) {
    const int count = argc == 3 ? atoi(argv[2]) : 0;
    if (count < 1) {
        fprintf(stderr, "Usage: floor_threads FOLDER THREADS\n");
        return 2;
    }
    const int source = openSource(argv[1]);
    if (source < 0) return 1;
    Stack stack;
    stack.push({std::make_shared<Folder>(source), {}});
    std::vector<Totals> parts(static_cast<std::size_t>(count));
    {
        std::vector<std::jthread> threads;
        for (Totals& part : parts) threads.emplace_back([&stack, &part] { part = walk(stack); });
    }
    Totals totals;
    for (const Totals& part : parts) {
        totals.files += part.files;
        totals.folders += part.folders;
        totals.bytes += part.bytes;
        totals.errors += part.errors;
    }
    return printTotals(totals);
}
