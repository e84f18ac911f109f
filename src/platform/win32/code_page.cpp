#include "platform/code_page.h"

#include "platform/win32/wide_text.h"

namespace bv::platform {
namespace {

unsigned& Chosen() {
    static unsigned number = CP_ACP;
    return number;
}

} // namespace

bool UseCodePage(unsigned number) {
    CPINFO info{};
    const bool isOwn = number == 0 || number == GetACP();
    if (!isOwn && (GetCPInfo(number, &info) == 0 || info.MaxCharSize != 1)) return false;
    Chosen() = isOwn ? CP_ACP : number;
    return true;
}

std::optional<std::string> InCodePage(char32_t letter) { return Narrowed(WideOf({&letter, 1}), Chosen()); }

std::u32string LettersOf(std::string_view text) { return LettersOfWide(Widened(text, Chosen())); }

} // namespace bv::platform
