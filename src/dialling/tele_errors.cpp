#include "dialling/tele_errors.h"

#include <array>
#include <cstddef>

#include "dialling/tele_interface.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr const char* kUnknown = "Unknown/unspecified error";

// From error 0x80000001 on. Several errors share a text on purpose, and some have none of their own.
constexpr const char* kTexts[] = {
    "The line cannot be opened due to a persistent condition (e.g. exclusively opened by another process)",
    "The specified device identifier or line device identifier is invalid",
    "The call's bearer mode cannot be changed to the specified mode",
    kUnknown,
    "All call appearances on the specified address are currently in use",
    "The maximum number of outstanding call completions has been exceeded",
    "The maximum number of parties for a conference has been reached, or the requested number cannot be satisfied",
    "The dialable address parameter contains characters that are not processed by the service provider",
    "The dialable address parameter contains characters that are not processed by the service provider",
    "The dialable address parameter contains characters that are not processed by the service provider",
    "The dialable address parameter contains characters that are not processed by the service provider",
    "The application requested an incompatible API version",
    "The application requested an invalid or unsupported extension version",
    "The 'telephon.ini' file cannot be read or understood properly by TAPI",
    "The line device is in use",
    "A specified address is either invalid or not allowed",
    "The specified address identifier is invalid",
    "The specified address mode is invalid",
    "The specified 'address states' parameter is invalid",
    "The application handle or the appliction registration handle is invalid",
    "The specified application name is invalid",
    "The specified bearer mode is invalid",
    "The specified completion is invalid",
    "The specified call handle is not valid",
    "The specified call parameters are invalid",
    "The specified call privilege parameter is invalid",
    "The specified select parameter is invalid",
    "The current state of a call is invalid for the requested operation",
    "The specified call state list is invalid",
    "Invalid permanent card ID specified",
    "The completion identifier is invalid",
    "The specified call handle for the conference call is invalid",
    "The specified consultation call handle is invalid",
    "The specified country code is invalid",
    "The line device has no associated device for, or the specified line does not support, the indicated device class",
    kUnknown,
    kUnknown,
    "The specified digit list is invalid",
    "The specified digit mode is invalid",
    "The specified termination digits are not valid",
    kUnknown,
    "The specified group identifier is invalid",
    "The specified call, device, line device, or line handle is invalid",
    "The device configuration may not be changed in the current line state",
    "Invalid location specified",
    "The specified media list is invalid",
    "A specified media type mode is invalid or unsupported by the service provider",
    "The given message ID is outside the range specified",
    kUnknown,
    "Invalid parameter specified",
    kUnknown,
    "The specified park mode is invalid",
    "Invalid parameter specified",
    "Invalid parameter specified",
    "The specified bearer mode is invalid",
    "The specified request mode is invalid",
    "The specified terminal mode parameter is invalid",
    "The specified terminal modes parameter is invalid",
    "The specified timeouts values are not supported",
    "The specified custom tone does not represent a valid tone",
    "The specified tone list is invalid",
    "The specified tone mode parameter is invalid",
    "The specified transfer mode parameter is invalid",
    "Invalid parameter specified",
    "The specified call is not a conference call handle or a participant call",
    "The associated device for the specified device identifier has been removed",
    "Either tapiaddr.dll or a component of the service provider for the specified device is missing or corrupt",
    "Insufficient memory to perform the operation, or unable to lock memory",
    ("There currently is no request pending of the indicated mode, or the application is no longer the "
     "highest-priority "
     "application for that mode"),
    "The application does not have owner privilege to the specified call",
    "The application is not registered as a request recipient for the indicated mode",
    kUnknown,
    "The operation is not available",
    "Not enough bandwidth available for the specified rate",
    "Insufficient resources to complete the operation",
    kUnknown,
    "The insufficient memory allocated by calling application",
    "A target for the call handoff was not found",
    "The application invoking this operation is the target of the indirect handoff",
    "The operation was invoked before doing the required initialisation",
    "The string containing user-user information is too long",
    "TAPI reinitialization has been requested",
    "The specified address is blocked from being dialed on the specified call",
    kUnknown,
    "Invalid parameter specified",
    ("A telephony service provider which does not support multiple instances is listed more than once. Check the "
     "Telephony Control Panel settings"),
};
static_assert(std::size(kTexts) == 0x56);

const char* TextOf(std::int32_t result) {
    const std::uint32_t index = static_cast<std::uint32_t>(result) - telephony::kFirstError; // huge for a positive one
    return index < std::size(kTexts) ? kTexts[index] : kUnknown;
}

} // namespace

void TAPIErrorText(std::int32_t result, int severity) {
    ReportMessage(1, "TAPIErrorText() called"); // a trace, as each operation of the telephony begins with
    if (result != 0) ReportMessage(severity, "TAPI reports '%s'", TextOf(result));
}

} // namespace bv
