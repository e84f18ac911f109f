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

// The name of the n-th record of a user list.
std::string RecordName(std::size_t n);

} // namespace bv::bench
