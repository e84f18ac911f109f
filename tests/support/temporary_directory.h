// A directory of a test's own, on the real file system.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace bv::test {

// An empty directory, removed with all that it holds at the end. The files are written and read without the code
// under test; their names may hold directories ("B-DB\\USERLIST.INI"), which Write makes.
class TemporaryDirectory {
  public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    // As the program knows it, without a trailing "\", and a path in it.
    [[nodiscard]] const std::string& Path() const { return path_; }
    [[nodiscard]] std::string Path(std::string_view name) const;

    // As the system of the test knows it.
    [[nodiscard]] const std::filesystem::path& HostPath() const { return hostPath_; }
    [[nodiscard]] std::filesystem::path HostPath(std::string_view name) const;

    void Write(std::string_view name, std::string_view bytes) const;

    // The file's bytes; "(missing)" when there is no such file.
    [[nodiscard]] std::string Read(std::string_view name) const;
    [[nodiscard]] bool Has(std::string_view name) const;

  private:
    std::filesystem::path hostPath_;
    std::string path_;
};

} // namespace bv::test
