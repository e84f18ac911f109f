#include "console/assignments.h"

#include <algorithm>

#include "platform/ascii.h"

namespace bv::console {

std::optional<std::vector<Assignment>> ReadAssignments(const Session& session, const Arguments& arguments,
                                                       std::string_view parameter) {
    std::vector<Assignment> assignments;
    for (const std::string& text : arguments.All(parameter)) {
        const std::size_t sign = text.find('=');
        if (sign == std::string::npos || sign == 0) {
            session.Streams.PrintNotice("'" + text + "' is not of the form " + std::string(parameter) + '\n');
            return {};
        }
        Assignment assignment = {text.substr(0, sign), text.substr(sign + 1)};
        const auto hasKey = [&](const Assignment& other) { return EqualFolded(other.Key, assignment.Key); };
        if (std::ranges::any_of(assignments, hasKey)) {
            session.Streams.PrintNotice(assignment.Key + " is given twice\n");
            return {};
        }
        assignments.push_back(std::move(assignment));
    }
    return assignments;
}

void DropShown(std::vector<Assignment>& assignments, std::string_view key, std::string_view value) {
    std::erase_if(assignments, [&](const Assignment& assignment) {
        return EqualFolded(assignment.Key, key) && assignment.Value == value;
    });
}

} // namespace bv::console
