#include "platform/posix/watched_names.h"

#include <dirent.h>
#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>
#include <set>
#include <string_view>
#include <unordered_map>

#include "platform/ascii.h"

namespace bv::platform {
namespace {

constexpr long kXfsMagic = 0x58465342; // <linux/magic.h> lacks it

// File systems in which nothing changes but through this system.
bool TellsOfChanges(const std::string& directory) {
    constexpr std::array<long, 5> kOwn = {EXT4_SUPER_MAGIC, kXfsMagic, BTRFS_SUPER_MAGIC, TMPFS_MAGIC,
                                          OVERLAYFS_SUPER_MAGIC};
    struct statfs system {};
    return statfs(directory.c_str(), &system) == 0 && std::ranges::find(kOwn, system.f_type) != kOwn.end();
}

class Watch {
  public:
    explicit Watch(const std::string& directory) : path_(directory), events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        constexpr std::uint32_t kChanges = IN_CREATE | IN_MOVED_TO | IN_DELETE | IN_MOVED_FROM | IN_MOVE_SELF;
        isWhole_ = stat((directory + "/").c_str(), &directory_) == 0 && events_ >= 0 &&
                   inotify_add_watch(events_, (directory + "/").c_str(), kChanges | IN_ONLYDIR) >= 0 && List();
    }
    ~Watch() {
        if (events_ >= 0) close(events_);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    // Whether the names of the directory at that path are known, with all that has happened to them.
    bool Knows(const std::string& directory) {
        struct stat now {};
        return isWhole_ && directory == path_ && stat((directory + "/").c_str(), &now) == 0 &&
               now.st_dev == directory_.st_dev && now.st_ino == directory_.st_ino && TakeEvents();
    }

    HostPath Find(const std::string& name) {
        const auto found = names_.find(UpperText(name));
        if (found == names_.end() || found->second.empty()) return {"", FileError::NotFound};
        return {*found->second.begin()};
    }

  private:
    bool List() {
        const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir((path_ + "/").c_str()), closedir);
        errno = 0;
        while (const dirent* entry = listing ? readdir(listing.get()) : nullptr) Add(entry->d_name);
        return listing != nullptr && errno == 0;
    }

    void Add(const std::string& name) { names_[UpperText(name)].insert(name); }

    // Changes that the listing has met already come once more, all in their order, and leave it as they end.
    bool TakeEvents() {
        alignas(inotify_event) std::array<char, 64 * 1024> bytes{};
        for (;;) {
            const ssize_t size = read(events_, bytes.data(), bytes.size());
            if (size < 0 && errno == EINTR) continue;
            if (size <= 0) return isWhole_ = isWhole_ && size < 0 && errno == EAGAIN;
            Take({bytes.data(), static_cast<std::size_t>(size)});
        }
    }

    void Take(std::string_view bytes) {
        while (!bytes.empty()) {
            inotify_event event{};
            std::memcpy(&event, bytes.data(), sizeof event);
            const std::string_view padded = bytes.substr(sizeof event, event.len);
            Take(event.mask, std::string(padded.substr(0, padded.find('\0'))));
            bytes.remove_prefix(sizeof event + event.len);
        }
    }

    void Take(std::uint32_t what, const std::string& name) {
        if ((what & (IN_CREATE | IN_MOVED_TO)) != 0)
            Add(name);
        else if ((what & (IN_DELETE | IN_MOVED_FROM)) != 0)
            names_[UpperText(name)].erase(name);
        else
            isWhole_ = false; // too many of them, or the directory itself is gone
    }

    std::string path_;
    int events_;
    struct stat directory_ {};
    std::unordered_map<std::string, std::set<std::string>> names_; // by name in upper case
    bool isWhole_ = false;
};

std::unique_ptr<Watch>& TheWatch() {
    static std::unique_ptr<Watch> watch;
    return watch;
}

} // namespace

void WatchNames(const std::string& directory) {
    TheWatch() = TellsOfChanges(directory + "/") ? std::make_unique<Watch>(directory) : nullptr;
}

std::optional<HostPath> FindWatchedName(const std::string& directory, const std::string& name) {
    const std::unique_ptr<Watch>& watch = TheWatch();
    if (!watch || !watch->Knows(directory)) return {};
    return watch->Find(name);
}

} // namespace bv::platform
