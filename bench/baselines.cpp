#include "baselines.h"

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace bv::bench {
namespace {

struct Text {
    std::unique_ptr<char[]> Bytes;
    std::size_t Size;
};

Text ReadAll(int file) {
    struct stat info {};
    if (fstat(file, &info) != 0) std::abort();
    const auto size = static_cast<std::size_t>(info.st_size);
    Text text{std::unique_ptr<char[]>(new char[size]), size};
    if (pread(file, text.Bytes.get(), size, 0) != info.st_size) std::abort();
    return text;
}

void WriteAll(int file, const Text& text) {
    if (pwrite(file, text.Bytes.get(), text.Size, 0) != static_cast<ssize_t>(text.Size)) std::abort();
}

} // namespace

void Floor(const std::string& hostPath) {
    const std::string temporary = hostPath + ".floor";
    const int live = open(hostPath.c_str(), O_RDWR | O_CLOEXEC);
    const int copy = open(temporary.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (live < 0 || copy < 0) std::abort();
    const Text text = ReadAll(live);
    WriteAll(copy, text);
    WriteAll(live, text);
    if (ftruncate(live, static_cast<off_t>(text.Size)) != 0) std::abort();
    if (close(copy) != 0 || unlink(temporary.c_str()) != 0 || close(live) != 0) std::abort();
}

void Copy(const std::string& hostPath) {
    const std::string second = hostPath + ".copy";
    const int from = open(hostPath.c_str(), O_RDONLY | O_CLOEXEC);
    const int to = open(second.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (from < 0 || to < 0) std::abort();
    WriteAll(to, ReadAll(from));
    if (close(to) != 0 || unlink(second.c_str()) != 0 || close(from) != 0) std::abort();
}

std::size_t LineScan(const std::string& hostPath) {
    const int file = open(hostPath.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) std::abort();
    const Text text = ReadAll(file);
    close(file);
    std::size_t lines = 0;
    const char* at = text.Bytes.get();
    const char* end = at + text.Size;
    while (at != end) {
        const void* found = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
        if (found == nullptr) break;
        at = static_cast<const char*>(found) + 1;
        ++lines;
    }
    return lines;
}

} // namespace bv::bench
