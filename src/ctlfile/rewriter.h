// Changing single keys and records of control files.
//
// A change copies the file line by line into a temporary, replacing, adding or removing only the lines of one key (or
// one paragraph's contents), and then copies the temporary back over the file (copy_back.h). Copied lines are cleaned
// as ReadControlLine cleans them and end in CR LF, so a rewrite puts a whole file in order, not only one paragraph.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/control_stream.h"

namespace bv {

// Where a new line goes: in the place of the first old one with its key, or at the end of the paragraph with every
// old one removed.
enum class Placing { InPlace, Append };

// One change to one paragraph.
struct KeyChange {
    std::optional<std::string_view> Paragraph; // header ("[OPTIONS]"); none: the lines before the first header
    std::optional<std::string_view> Key;       // with its separator; none or empty: empty the paragraph
    std::optional<std::string_view> Value;     // none: delete every line with the key
    Placing Where = Placing::InPlace;
};

// Copies the source, from its position, to the destination with the change made. A paragraph that is not there is
// added at the end; of several with one header the first is changed. Empty lines inside the paragraph go, and one
// follows it. False when a stream failed.
bool CopyReplacingKey(ControlStream& source, ControlStream& destination, const KeyChange& change);

// One change to one record of a paragraph made of records, each opened by a line that begins with a marker
// character: the first record whose opening line begins with RecordKey. A record that is not there is added at the
// end of the paragraph.
struct RecordChange {
    std::string_view Paragraph;
    std::string_view RecordKey;
    std::optional<std::string_view> RecordValue; // none: delete the opening line alone
    Placing Where = Placing::InPlace;            // Append keeps an old opening line
    std::string_view FieldKey;                   // empty: remove the record's other lines
    std::optional<std::string_view> FieldValue;  // none: delete the field's line
    char Marker = '@';
    int Skipped = 0; // as many records of that key stay as they are before the one that is meant
};

// Makes a change in the control file of that path. False when there is no paragraph, the path or its temporary's is
// too long, a file cannot be opened, or the rewrite failed. No message is shown.
bool UpdateControlFile(const std::string& path, const KeyChange& change);
bool UpdateControlFileRecord(const std::string& path, const RecordChange& change);

} // namespace bv
