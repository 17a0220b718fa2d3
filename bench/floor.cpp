// The least that a walk costs: reads every folder below the given one and looks once at each entry that is no
// folder. It has one thread, keeps no names but those of folders still to be read, and makes no report.
// Whatever a disk-usage program takes beyond this is due to the program.
#include "floor.h"

#include <unistd.h>

#include <string>
#include <vector>

namespace {

/// A folder that has been read, with its subfolders that have not; each of their names ends in a NUL.
struct Level {
    int fd;
    std::string names;
    std::size_t next = 0;
    bool done() const { return next == names.size(); }
};

alignas(dirent64) char buffer[kBufferBytes];

/// Reads the open folder to its end.
Level readFolder(int fd, Totals& totals) {
    Level level{fd, {}};
    ssize_t got = 0;
    while ((got = getdents64(fd, buffer, kBufferBytes)) > 0)
        lookAtAll(fd, buffer, got, totals,
                  [&](const char* name) { level.names.append(name, strlen(name) + 1); });
    if (got < 0) ++totals.errors;
    return level;
}

/// A folder whose last subfolder has been opened is closed before that one is read, so a chain of any length
/// needs two open folders. A bushy tree needs one for each level.
void walk(int source, Totals& totals) {
    std::vector<Level> open;
    open.push_back(readFolder(source, totals));
    while (!open.empty()) {
        Level& top = open.back();
        int fd = -1;
        if (!top.done()) {
            const char* name = top.names.c_str() + top.next;
            top.next += strlen(name) + 1;
            fd = openFolder(top.fd, name);
            if (fd < 0) ++totals.errors;
        }
        if (top.done()) {
            close(top.fd);
            open.pop_back();
        }
        if (fd >= 0) open.push_back(readFolder(fd, totals));
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "Usage: floor FOLDER\n");
        return 2;
    }
    const int source = openSource(argv[1]);
    if (source < 0) return 1;
    Totals totals;
    walk(source, totals);
    return printTotals(totals);
}
