#include "agents/guard/Descendants.h"

#include <unistd.h>

#if defined(__linux__)
#include <dirent.h>
#include <sys/prctl.h>

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#elif defined(__APPLE__)
#include <libproc.h>
#endif

namespace vorle::guard {

#if defined(__linux__)

namespace {

/// The parent of the process that /proc knows under `name`; 0 when it is gone.
pid_t parentOf(const char *name) {
    std::ifstream file(std::string("/proc/") + name + "/stat");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    // "12 (its name) S 1 …", and the name may hold anything.
    const std::size_t end = text.rfind(')');
    return end == std::string::npos || end + 4 > text.size()
               ? 0
               : static_cast<pid_t>(std::atol(text.c_str() + end + 4));
}

} // namespace

void adoptOrphans() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }

// A child's child becomes ours as soon as its parent is gone: the next look finds it.
std::vector<pid_t> descendants() {
    std::vector<pid_t> found;
    DIR *processes = ::opendir("/proc");
    while (const dirent *entry = processes != nullptr ? ::readdir(processes) : nullptr) {
        const bool process = std::isdigit(static_cast<unsigned char>(entry->d_name[0])) != 0;
        if (process && parentOf(entry->d_name) == ::getpid()) {
            found.push_back(static_cast<pid_t>(std::atol(entry->d_name)));
        }
    }
    if (processes != nullptr) {
        ::closedir(processes);
    }
    return found;
}

#else

void adoptOrphans() {}

std::vector<pid_t> descendants() {
    std::vector<pid_t> found;
#if defined(__APPLE__)
    constexpr std::size_t most = 4'096;
    std::vector<pid_t> children(most);
    pid_t parent = ::getpid();
    for (std::size_t next = 0;; parent = found[next++]) {
        const int count =
            ::proc_listchildpids(parent, children.data(), static_cast<int>(most * sizeof(pid_t)));
        for (int i = 0; i < count && found.size() < most; ++i) {
            found.push_back(children[static_cast<std::size_t>(i)]);
        }
        if (next == found.size()) {
            break;
        }
    }
#endif
    return found;
}

#endif

} // namespace vorle::guard
