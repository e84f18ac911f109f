// A NETAPI32.DLL that serves accounts as it is told, and counts the buffers that are not given back.
#include <windows.h>

#include <dsgetdc.h>
#include <lm.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <map>
#include <string>

#include "network/scene.h"

namespace {

constexpr std::size_t kName = 32;

bv::test::Scene& Played() {
    static bv::test::Scene scene;
    return scene;
}

std::map<void*, DWORD>& Buffers() {
    static std::map<void*, DWORD> buffers;
    return buffers;
}

char* Allocate(std::size_t size) {
    char* memory = static_cast<char*>(VirtualAlloc(nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
    Buffers()[memory] = static_cast<DWORD>(size);
    return memory;
}

void NameUser(wchar_t* name, DWORD number, const wchar_t* format) {
    if (number == 3) format = L"\x0416%04lu";
    std::swprintf(name, kName, format, static_cast<unsigned long>(number));
}

void Put(NET_DISPLAY_USER& user, wchar_t* name, wchar_t* fullname, DWORD flags, DWORD next) {
    user.usri1_name = name;
    user.usri1_full_name = fullname;
    user.usri1_flags = flags;
    user.usri1_next_index = next;
}
void Put(USER_INFO_20& user, wchar_t* name, wchar_t* fullname, DWORD flags, DWORD) {
    user.usri20_name = name;
    user.usri20_full_name = fullname;
    user.usri20_flags = flags;
}
void Put(USER_INFO_0& user, wchar_t* name, wchar_t*, DWORD, DWORD) { user.usri0_name = name; }

// A page of records from there on, their texts behind them.
template <class Info>
NET_API_STATUS GivePage(DWORD from, DWORD most, DWORD* count, void** buffer) {
    const bv::test::Scene& scene = Played();
    if (scene.FailsAfter != 0 && from >= scene.FailsAfter) return ERROR_ACCESS_DENIED;
    const DWORD given = std::min(most, scene.Users - std::min(from, scene.Users));
    char* memory = Allocate(given * (sizeof(Info) + 2 * kName * sizeof(wchar_t)) + 1);
    auto* infos = reinterpret_cast<Info*>(memory);
    auto* texts = reinterpret_cast<wchar_t*>(infos + given);
    for (DWORD i = 0; i < given; ++i, texts += 2 * kName) {
        const DWORD number = from + i + 1;
        NameUser(texts, number, L"user%04lu");
        NameUser(texts + kName, number, L"User number %lu");
        const bool isBad = scene.BadNames && number == 5;
        auto* nowhere = reinterpret_cast<wchar_t*>(8);
        Put(infos[i], isBad ? nowhere : texts, texts + kName, number % 10 == 0 ? UF_ACCOUNTDISABLE : 0,
            scene.StaysInPlace ? from : number);
    }
    *buffer = memory;
    *count = given + scene.LiesBy;
    return from + given < scene.Users ? ERROR_MORE_DATA : NERR_Success;
}

} // namespace

extern "C" {

NET_API_STATUS WINAPI NetQueryDisplayInformation(LPCWSTR server, DWORD level, DWORD index, DWORD wanted, DWORD,
                                                 LPDWORD count, PVOID* buffer) {
    if (Played().QueryError != 0) return Played().QueryError;
    if (level != 1 || (server != nullptr && std::wcscmp(server, L"\\\\DC1") != 0)) return NERR_InvalidComputer;
    return GivePage<NET_DISPLAY_USER>(index, wanted, count, buffer);
}

NET_API_STATUS WINAPI NetUserEnum(LPCWSTR, DWORD level, DWORD filter, LPBYTE* buffer, DWORD, LPDWORD count,
                                  LPDWORD total, LPDWORD resume) {
    constexpr DWORD kPage = 70;
    if (filter != FILTER_NORMAL_ACCOUNT) return ERROR_INVALID_PARAMETER;
    if (level == 20 && Played().Level20Error != 0) return Played().Level20Error;
    *total = Played().Users;
    const DWORD from = *resume;
    auto** place = reinterpret_cast<void**>(buffer);
    const NET_API_STATUS status = level == 20 ? GivePage<USER_INFO_20>(from, kPage, count, place)
                                              : GivePage<USER_INFO_0>(from, kPage, count, place);
    if (!Played().StaysInPlace) *resume = from + kPage;
    return status;
}

NET_API_STATUS WINAPI NetApiBufferFree(LPVOID memory) {
    if (Buffers().erase(memory) == 0) return ERROR_INVALID_PARAMETER;
    VirtualFree(memory, 0, MEM_RELEASE);
    return NERR_Success;
}

NET_API_STATUS WINAPI NetApiBufferSize(LPVOID memory, LPDWORD size) {
    *size = Buffers()[memory];
    return NERR_Success;
}

DWORD WINAPI FindDomain(LPCWSTR, LPCWSTR, GUID*, LPCWSTR, ULONG, DOMAIN_CONTROLLER_INFOW** info) {
    static wchar_t controller[] = L"\\\\DC1";
    static wchar_t domain[] = L"QUILLNET";
    if (Played().HasNoDomain) return ERROR_NO_SUCH_DOMAIN;
    *info = reinterpret_cast<DOMAIN_CONTROLLER_INFOW*>(Allocate(sizeof(DOMAIN_CONTROLLER_INFOW)));
    (*info)->DomainControllerName = controller;
    (*info)->DomainName = domain;
    return NERR_Success;
}

NET_API_STATUS WINAPI NetGetDCName(LPCWSTR, LPCWSTR, LPBYTE*) { return NERR_DCNotFound; }

void ScenePlayed(const bv::test::Scene* scene) { Played() = *scene; }

int BuffersKept() { return static_cast<int>(Buffers().size()); }

} // extern "C"
