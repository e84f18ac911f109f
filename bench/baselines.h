// What the benchmarks are held against: the same bytes moved with no parsing at all.
#pragma once

#include <cstddef>
#include <string>

namespace bv::bench {

// Reads the file, writes a temporary of the same text, writes it over the file, truncates, deletes the temporary.
void Floor(const std::string& hostPath);

// Reads the file, writes a second one of the same text, deletes that one.
void Copy(const std::string& hostPath);

// Reads the file and finds each line end. The number of lines.
std::size_t LineScan(const std::string& hostPath);

} // namespace bv::bench
