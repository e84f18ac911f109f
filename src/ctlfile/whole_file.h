// Files that an editor replaces as a whole: the new text is written beside the live file, and then takes its place. The
// live file is deleted and the new one renamed, so in the instant between there is only the new one, complete: who
// opens the live file and does not find it looks for that.
#pragma once

#include <string>
#include <string_view>

namespace bv {

enum class WriteFault { None, NotOpened, NotWritten };

// Writes a file anew ("wb"). When it cannot be written whole, a part of it does not stay. Shows nothing.
WriteFault TryWriteWholeFile(const std::string& path, std::string_view text);

// The same; false after either fault.
bool WriteWholeFile(const std::string& path, std::string_view text);

// Deletes the live file, if there is one, and gives the new one its name. False when either cannot be done: then the
// live file is as it was, or gone with the new one beside. Shows nothing.
bool PutInPlace(const std::string& newPath, const std::string& livePath);

// Whether there is certainly no such file: a look that failed says nothing.
bool IsMissing(const std::string& path);

// Whether a replacement was cut off in that instant: the live file is certainly gone, the new one is there.
bool IsCutOff(const std::string& newPath, const std::string& livePath);

// The live file for a reader; the new one, after warning 9012, when a replacement was cut off.
std::string PathToRead(const std::string& livePath, const std::string& newPath);

} // namespace bv
