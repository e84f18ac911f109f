#include "users/user_file.h"

#include <array>

#include "ctlfile/records.h"
#include "platform/ascii.h"

namespace bv {

std::string_view RecordHeader(RecordKind kind) { return kind == RecordKind::User ? "[USER]" : "[GROUP]"; }

std::optional<FoundRecord> FindRecord(ControlStream& list, RecordKind kind, std::optional<std::string_view> name) {
    static constexpr std::array kKeys = {kNameKey};
    list.Rewind();
    RecordWalker records(list, RecordHeader(kind), kKeys);
    WholeValue found;
    while (records.Next()) {
        records.Get(0, found);
        if (name ? EqualFolded(found, *name) : IsDefaultName(found)) {
            return FoundRecord{{records.Start(), records.BodyStart(), records.End()}, found};
        }
    }
    return {};
}

} // namespace bv
