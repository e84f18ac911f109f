#include "support/temporary_directory.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <system_error>

#include "platform/drives.h"

namespace bv::test {

namespace fs = std::filesystem;

namespace {

fs::path MakeDirectory() {
    std::random_device random;
    for (int i = 0; i < 100; ++i) {
        const fs::path directory = fs::temp_directory_path() / ("bvtest" + std::to_string(random()));
        if (fs::create_directory(directory)) return directory;
    }
    throw std::runtime_error("no temporary directory");
}

} // namespace

TemporaryDirectory::TemporaryDirectory()
    : hostPath_(MakeDirectory()), path_(platform::ToWindowsPath(hostPath_.string())) {}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(hostPath_, ignored);
}

std::string TemporaryDirectory::Path(std::string_view name) const { return path_ + "\\" + std::string(name); }

fs::path TemporaryDirectory::HostPath(std::string_view name) const {
    std::string relative(name);
    std::ranges::replace(relative, '\\', '/');
    return hostPath_ / relative;
}

void TemporaryDirectory::Write(std::string_view name, std::string_view bytes) const {
    const fs::path path = HostPath(name);
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path.string());
}

std::string TemporaryDirectory::Read(std::string_view name) const {
    std::ifstream file(HostPath(name), std::ios::binary);
    if (!file) return "(missing)";
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool TemporaryDirectory::Has(std::string_view name) const { return fs::exists(HostPath(name)); }

} // namespace bv::test
