#include "dialling/tele_session.h"

namespace bv {
namespace {

using telephony::Entries;
using telephony::Word;

constexpr const char* kLibraryName = "TAPI32.DLL";
constexpr Word kFirstDevice = 0;

void BV_SYSTEM_CALL IgnoreMessage(Word, Word, telephony::Pointer, telephony::Pointer, telephony::Pointer,
                                  telephony::Pointer) {}

template <class Entry>
bool Resolve(platform::Library& library, const char* name, Entry& entry, int severity = kTapiGrave) {
    entry = reinterpret_cast<Entry>(library.Entry(name));
    if (entry == nullptr) ReportMessage(severity, "Function %s missing from TAPI DLL", name);
    return entry != nullptr;
}

bool ResolveEntries(platform::Library& library, Entries& entries) {
    if (!Resolve(library, "lineInitialize", entries.Initialize)) return false;
    if (!Resolve(library, "lineShutdown", entries.Shutdown)) return false;
    if (!Resolve(library, "lineGetTranslateCaps", entries.GetTranslateCaps)) return false;
    if (!Resolve(library, "lineNegotiateAPIVersion", entries.NegotiateAPIVersion)) return false;
    Resolve(library, "lineGetCountry", entries.GetCountry, kTapiTrace); // without it, rules are deduced
    if (!Resolve(library, "lineTranslateDialog", entries.TranslateDialog)) return false;
    return Resolve(library, "lineTranslateAddress", entries.TranslateAddress);
}

StatusCode NegotiateWithDevice(TapiSession& session) {
    telephony::ExtensionID extension{};
    const telephony::Result result = session.Entries.NegotiateAPIVersion(
        session.Line, kFirstDevice, telephony::kVersion14, telephony::kVersion14, &session.Version, &extension);
    if (result == 0) return kDone;
    TAPIErrorText(result, kTapiFault);
    session.Version = 0;
    return kTapiUnavailable;
}

// Any answer but that of an incompatible version, the usual one being that the structure is too small, is agreement.
StatusCode NegotiateByTest(TapiSession& session) {
    TraceTapi("About to test API version");
    telephony::TranslateCaps caps{};
    caps.Size.Total = sizeof caps;
    const telephony::Result result = session.Entries.GetTranslateCaps(session.Line, telephony::kVersion14, &caps);
    if (result == telephony::kIncompatibleVersion) {
        ReportMessage(kTapiFault, "Unable to negotiate TAPI version number");
        session.Version = 0;
        return kTapiUnavailable;
    }
    session.Version = telephony::kVersion14;
    ReportMessage(kTapiNote, "TAPI initialised using API version #0x%X", session.Version);
    return kDone;
}

StatusCode OurNegotiateAPIVersion(TapiNegotiation negotiation) {
    TraceTapi("OurNegotiateAPIVersion() called");
    if (const StatusCode status = CheckTapi(&Entries::GetTranslateCaps); status != kDone) return status;
    if (const StatusCode status = CheckTapi(&Entries::NegotiateAPIVersion); status != kDone) return status;
    TapiSession& session = Tapi().Session;
    return negotiation == TapiNegotiation::Test ? NegotiateByTest(session) : NegotiateWithDevice(session);
}

StatusCode StartSession(TapiSession& session, const std::string& application, void* instance,
                        TapiNegotiation negotiation) {
    if (!ResolveEntries(*session.Library, session.Entries)) return kTapiUnavailable;
    Word deviceCount = 0;
    const telephony::Result result =
        session.Entries.Initialize(&session.Line, instance, IgnoreMessage, application.c_str(), &deviceCount);
    if (result != 0) {
        TAPIErrorText(result, kTapiFault);
        session.Line = 0;
        return kTapiUnavailable;
    }
    TraceTapi("TAPI Initialised");
    session.Initialised = true;
    return OurNegotiateAPIVersion(negotiation);
}

void UndoStart(TapiSession& session) {
    if (session.Initialised) {
        TraceTapi("About to terminate TAPI");
        TAPITerm();
    }
    if (session.Library) TraceTapi("Unloading TAPI DLL");
    session = {};
}

} // namespace

TapiState& Tapi() {
    static TapiState state;
    return state;
}

StatusCode TAPIInit(const std::string& application, void* instance, TapiNegotiation negotiation) {
    TraceTapi("TAPIInit() called");
    TapiSession& session = Tapi().Session;
    if (session.Initialised) {
        TraceTapi("TAPI already initialised");
        return kDone;
    }
    Tapi() = {};
    TraceTapi("Loading TAPI DLL");
    platform::Libraries& libraries = platform::TheLibraries();
    session.Library = libraries.Load(kLibraryName);
    if (!session.Library) {
        ReportMessage(kTapiGrave, "Unable to load DLL '%s' (error #%ld)", kLibraryName, libraries.LastError());
        return kTapiUnavailable;
    }
    if (instance == nullptr) instance = libraries.OwnModule();
    const StatusCode status = StartSession(session, application, instance, negotiation);
    if (status != kDone) UndoStart(session);
    return status;
}

void TAPITerm() {
    TraceTapi("TAPITerm() called");
    TapiSession& session = Tapi().Session;
    if (session.Line != 0 && session.Entries.Shutdown != nullptr) session.Entries.Shutdown(session.Line);
    session = {};
}

StatusCode TAPISetLocation(const std::string& address, void* owner) {
    TraceTapi("TAPISetLocation() called");
    if (const StatusCode status = CheckTapi(&Entries::TranslateDialog); status != kDone) return status;
    const TapiSession& session = Tapi().Session;
    const telephony::Result result =
        session.Entries.TranslateDialog(session.Line, kFirstDevice, session.Version, owner, address.c_str());
    if (result == 0) return kDone;
    TAPIErrorText(result, kTapiFault);
    return kTapiCallFailed;
}

} // namespace bv
