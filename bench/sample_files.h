// Files of any size to measure on, made anew in a temporary directory that goes at the end of the program.
#pragma once

#include <cstddef>
#include <string>

namespace bv::bench {

struct SampleFile {
    std::string HostPath;
    std::string Path; // as the engine takes it
};

// A setup file of so many lines in paragraphs of twelve, the one looked for ("[LAST]") at the end, an early one
// ("[OPTIONS]") at the start.
const SampleFile& SetupFile(std::size_t lines);

// A user list of so many records in order of their names, about 255 bytes each.
const SampleFile& UserList(std::size_t records);

// The name of the n-th record of a user list, and one that sorts right behind it and is not there.
std::string RecordName(std::size_t n);
std::string NewName(std::size_t n);

// A server with a user list of so many records and a setup file of 2,000 lines. The engine works on the one that was
// asked for last.
struct SampleServer {
    std::string Directory; // as the engine takes it
    SampleFile Users;
    SampleFile Setup;
};
const SampleServer& UseServer(std::size_t records);

} // namespace bv::bench
