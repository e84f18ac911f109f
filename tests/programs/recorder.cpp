// Stands in for a program that the system starts. Beside its own file it writes its arguments, one line a call, to
// NAME.calls, and its time zone to NAME.zone, and then goes on until there is no file NAME.hold.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

std::filesystem::path Beside(const std::filesystem::path& program, const char* extension) {
    return std::filesystem::path(program).replace_extension(extension);
}

} // namespace

int main(int count, char** arguments) {
    const std::filesystem::path program = arguments[0];
    const char* zone = std::getenv("TZ");
    std::ofstream(Beside(program, ".zone"), std::ios::binary) << (zone != nullptr ? zone : "");
    std::ofstream calls(Beside(program, ".calls"), std::ios::app | std::ios::binary);
    for (int i = 1; i < count; ++i) calls << (i > 1 ? "|" : "") << arguments[i];
    calls << '\n';
    calls.close();
    while (std::filesystem::exists(Beside(program, ".hold")))
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return 0;
}
