#include "ctlfile/paths.h"

#include "platform/ascii.h"

namespace bv {

std::string_view FilePart(std::string_view path) {
    const std::size_t separator = path.find_last_of("\\:");
    return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

std::string_view DirectoryPart(std::string_view path) { return path.substr(0, path.size() - FilePart(path).size()); }

std::string_view ExtensionOf(std::string_view path) {
    const std::string_view name = FilePart(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
}

std::string_view SharePart(std::string_view path) {
    if (!path.starts_with("\\\\")) {
        const std::size_t colon = path.find(':');
        return colon == std::string_view::npos ? path : path.substr(colon + 1);
    }
    const std::size_t share = path.find('\\', 2);
    if (share == std::string_view::npos) return {};
    const std::size_t rest = path.find('\\', share + 1);
    return rest == std::string_view::npos ? std::string_view() : path.substr(rest);
}

std::string WithExtension(std::string_view path, std::string_view extension) {
    const std::string_view name = FilePart(path);
    const std::size_t dot = name.rfind('.');
    std::string changed(path.substr(0, path.size() - (dot == std::string_view::npos ? 0 : name.size() - dot)));
    changed += '.';
    changed += extension;
    return changed;
}

std::string TemporaryPath(std::string_view path) {
    return WithExtension(path, EqualFolded(ExtensionOf(path), "TMP") ? "TM2" : "TMP");
}

std::string WithBackslash(std::string_view directory) {
    std::string closed(directory);
    if (!closed.empty() && !closed.ends_with('\\')) closed += '\\';
    return closed;
}

} // namespace bv
