// NETAPI32.DLL, which is looked up when accounts are read. What it says of counts and sizes is held against the memory
// that is really there.
#include "platform/network_users.h"

#include <windows.h>

#include <dsgetdc.h>
#include <lm.h>

#include <algorithm>
#include <cstdint>
#include <set>

#include "platform/libraries.h"
#include "platform/win32/foreign_memory.h"
#include "platform/win32/wide_text.h"

namespace bv::platform {
namespace {

constexpr std::size_t kTextLimit = 512; // letters of a name
constexpr DWORD kPageEntries = 100;
constexpr DWORD kPageBytes = 16 * 1024;

// The library and those of its entries that it has.
struct Api {
    using FreeCall = NET_API_STATUS(WINAPI*)(LPVOID);
    using SizeCall = NET_API_STATUS(WINAPI*)(LPVOID, LPDWORD);
    using QueryCall = NET_API_STATUS(WINAPI*)(LPCWSTR, DWORD, DWORD, DWORD, DWORD, LPDWORD, PVOID*);
    using EnumCall = NET_API_STATUS(WINAPI*)(LPCWSTR, DWORD, DWORD, LPBYTE*, DWORD, LPDWORD, LPDWORD, LPDWORD);
    using DomainCall = DWORD(WINAPI*)(LPCWSTR, LPCWSTR, GUID*, LPCWSTR, ULONG, DOMAIN_CONTROLLER_INFOW**);
    using ControllerCall = NET_API_STATUS(WINAPI*)(LPCWSTR, LPCWSTR, LPBYTE*);

    Api() : Module(TheLibraries().Load("NETAPI32.DLL")) {
        Find("NetApiBufferFree", Free);
        Find("NetApiBufferSize", Size);
        Find("NetQueryDisplayInformation", Query);
        Find("NetUserEnum", Enumerate);
        Find("DsGetDcNameW", FindDomain);
        Find("NetGetDCName", FindController);
    }

    template <class Call>
    void Find(const char* name, Call& call) {
        call = Module ? reinterpret_cast<Call>(Module->Entry(name)) : nullptr;
    }

    std::unique_ptr<Library> Module;
    FreeCall Free = nullptr;
    SizeCall Size = nullptr;
    QueryCall Query = nullptr;
    EnumCall Enumerate = nullptr;
    DomainCall FindDomain = nullptr;
    ControllerCall FindController = nullptr;
};

// Memory that the library has made, given back with this object.
class Buffer {
  public:
    explicit Buffer(const Api& api) : api_(api) {}
    ~Buffer() {
        if (memory_ != nullptr && api_.Free != nullptr) api_.Free(memory_);
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    void** Place() { return &memory_; }
    [[nodiscard]] const void* Memory() const { return memory_; }

    // How many of so many records can be there.
    template <class Info>
    [[nodiscard]] std::size_t CountOf(std::size_t said) const {
        if (memory_ == nullptr || reinterpret_cast<std::uintptr_t>(memory_) % alignof(Info) != 0) return 0;
        constexpr std::size_t kMost = 1U << 20U;
        std::size_t bytes = std::min(said, kMost) * sizeof(Info);
        DWORD size = 0;
        if (api_.Size != nullptr && api_.Size(memory_, &size) == NERR_Success && size > 0)
            bytes = std::min<std::size_t>(bytes, size);
        return ReadableBytes(memory_, bytes) / sizeof(Info);
    }

  private:
    const Api& api_;
    void* memory_ = nullptr;
};

const wchar_t* NameOf(const NET_DISPLAY_USER& info) { return info.usri1_name; }
const wchar_t* NameOf(const USER_INFO_20& info) { return info.usri20_name; }
const wchar_t* NameOf(const USER_INFO_0& info) { return info.usri0_name; }
const wchar_t* FullnameOf(const NET_DISPLAY_USER& info) { return info.usri1_full_name; }
const wchar_t* FullnameOf(const USER_INFO_20& info) { return info.usri20_full_name; }
const wchar_t* FullnameOf(const USER_INFO_0&) { return nullptr; }
DWORD FlagsOf(const NET_DISPLAY_USER& info) { return info.usri1_flags; }
DWORD FlagsOf(const USER_INFO_20& info) { return info.usri20_flags; }
DWORD FlagsOf(const USER_INFO_0&) { return 0; }

// The accounts of a buffer, up to the first that has no name, from which on nothing can be believed.
template <class Info>
std::vector<NetworkUser> TakeUsers(const Buffer& buffer, std::size_t said) {
    const auto* infos = static_cast<const Info*>(buffer.Memory());
    std::vector<NetworkUser> users;
    for (std::size_t count = buffer.CountOf<Info>(said); users.size() < count; ++infos) {
        const FittedText name = FitIntoCodePage(ForeignText(NameOf(*infos), kTextLimit));
        if (name.Text.empty()) break;
        const FittedText fullname = FitIntoCodePage(ForeignText(FullnameOf(*infos), kTextLimit));
        users.push_back(
            {name.Text, fullname.Text, (FlagsOf(*infos) & UF_ACCOUNTDISABLE) != 0, name.IsWhole && fullname.IsWhole});
    }
    return users;
}

class Reading {
  public:
    Reading(const Api& api, const std::string& computer, const NetworkUsers::Visitor& visit)
        : api_(api), computer_(Widened(computer, CP_ACP)), visit_(visit) {}

    // By the call for lists, which is fast on a list of any length, else by the one for accounts.
    DWORD Run() {
        DWORD status = ERROR_PROC_NOT_FOUND;
        if (api_.Query != nullptr) status = Query();
        if (status == NERR_Success || hasRead_ || api_.Enumerate == nullptr) return status;
        status = Enumerate<USER_INFO_20>(20);
        return status == NERR_Success || hasRead_ ? status : Enumerate<USER_INFO_0>(0);
    }

  private:
    [[nodiscard]] LPCWSTR Computer() const { return computer_.empty() ? nullptr : computer_.c_str(); }

    static bool HasPage(DWORD status) { return status == NERR_Success || status == ERROR_MORE_DATA; }

    // Hands a page over. True when there is another one, at a place where reading has not been yet.
    template <class Info>
    bool TakePage(const Buffer& buffer, DWORD said, DWORD& status) {
        const std::vector<NetworkUser> users = TakeUsers<Info>(buffer, said);
        hasRead_ = hasRead_ || !users.empty();
        const bool goesOn = users.empty() || visit_(users);
        const bool isMore = status == ERROR_MORE_DATA;
        status = users.size() < said ? ERROR_INVALID_DATA : NERR_Success;
        if (!goesOn) status = NERR_Success;
        return goesOn && isMore && status == NERR_Success;
    }

    DWORD Query() {
        std::set<DWORD> places{0};
        for (DWORD place = 0;;) {
            Buffer buffer(api_);
            DWORD count = 0;
            DWORD status = api_.Query(Computer(), 1, place, kPageEntries, MAX_PREFERRED_LENGTH, &count, buffer.Place());
            if (!HasPage(status)) return status;
            if (!TakePage<NET_DISPLAY_USER>(buffer, count, status)) return status;
            if (count == 0) return ERROR_INVALID_DATA;
            place = static_cast<const NET_DISPLAY_USER*>(buffer.Memory())[count - 1].usri1_next_index;
            if (!places.insert(place).second) return ERROR_INVALID_DATA;
        }
    }

    template <class Info>
    DWORD Enumerate(DWORD level) {
        std::set<DWORD> places{0};
        for (DWORD place = 0;;) {
            Buffer buffer(api_);
            DWORD count = 0;
            DWORD total = 0;
            DWORD status =
                api_.Enumerate(Computer(), level, FILTER_NORMAL_ACCOUNT, reinterpret_cast<LPBYTE*>(buffer.Place()),
                               kPageBytes, &count, &total, &place);
            if (!HasPage(status)) return status;
            if (!TakePage<Info>(buffer, count, status)) return status;
            if (!places.insert(place).second) return ERROR_INVALID_DATA;
        }
    }

    const Api& api_;
    std::wstring computer_;
    const NetworkUsers::Visitor& visit_;
    bool hasRead_ = false;
};

// What the system calls an error; the network's own have a library of texts.
std::string TextOf(DWORD error) {
    constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    const bool isNetworks = error >= NERR_BASE && error <= MAX_NERR;
    const HMODULE texts = isNetworks ? LoadLibraryExW(L"netmsg.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE) : nullptr;
    wchar_t text[kTextLimit] = L"";
    FormatMessageW(kFlags | (texts != nullptr ? FORMAT_MESSAGE_FROM_HMODULE : 0), texts, error, 0, text, kTextLimit,
                   nullptr);
    if (texts != nullptr) FreeLibrary(texts);
    std::string fitted = FitIntoCodePage(text).Text;
    while (fitted.ends_with(' ') || fitted.ends_with('.')) fitted.pop_back();
    return fitted.empty() ? "unknown error" : fitted;
}

class WindowsNetworkUsers final : public NetworkUsers {
  public:
    std::vector<NetworkDomain> Domains() override {
        const Api api;
        if (api.FindDomain != nullptr) {
            Buffer buffer(api);
            auto** info = reinterpret_cast<DOMAIN_CONTROLLER_INFOW**>(buffer.Place());
            if (api.FindDomain(nullptr, nullptr, nullptr, nullptr, 0, info) == NERR_Success &&
                buffer.CountOf<DOMAIN_CONTROLLER_INFOW>(1) == 1)
                return Domain((*info)->DomainName, (*info)->DomainControllerName);
        }
        if (api.FindController == nullptr) return {};
        Buffer buffer(api);
        const DWORD status = api.FindController(nullptr, nullptr, reinterpret_cast<LPBYTE*>(buffer.Place()));
        return status == NERR_Success ? Domain(nullptr, static_cast<const wchar_t*>(buffer.Memory()))
                                      : std::vector<NetworkDomain>();
    }

    NetworkReading Read(const std::string& computer, const Visitor& visit) override {
        const Api api;
        DWORD error = TheLibraries().LastError();
        if (api.Module) error = Reading(api, computer, visit).Run();
        if (error == NERR_Success) return {};
        return {error, TextOf(error)};
    }

  private:
    static std::vector<NetworkDomain> Domain(const wchar_t* name, const wchar_t* controller) {
        const FittedText computer = FitIntoCodePage(ForeignText(controller, kTextLimit));
        if (computer.Text.empty() || !computer.IsWhole) return {};
        return {{FitIntoCodePage(ForeignText(name, kTextLimit)).Text, computer.Text}};
    }
};

} // namespace

template <>
NetworkUsers& Service<NetworkUsers>::System() {
    static WindowsNetworkUsers users;
    return users;
}

} // namespace bv::platform
