#include "lcr/router_actions.h"

#include "lcr/lcr_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

void EnableKinds(const EnteredValues& values, RouterSettings& settings) {
    if (HasKey(values, "EmailLoginName") && !HasKey(values, "EmailEnabled"))
        settings.EmailEnabled = !settings.EmailLoginName.empty();
    if (HasKey(values, "WanInboxDirectory") && !HasKey(values, "WanEnabled"))
        settings.WanEnabled = !settings.WanInboxDirectory.empty();
}

// Whether the settings can be saved; false after a message.
bool CheckRouter(const RouterSettings& settings) {
    if (settings.LocalServerId.empty()) {
        ShowError(kServerNeedsName);
        return false;
    }
    const auto fault = FaultOfRouter(settings);
    if (fault) ShowError(kFaultOf, fault->Key, fault->Message);
    return !fault;
}

} // namespace

bool EnterRouterSettings(const EnteredValues& values) {
    bool isChanged = false;
    const auto enter = [&](RouterSettings& settings) {
        const RouterSettings before = settings;
        if (!EnterValues("router settings", RouterKeys(), values, settings)) return false;
        EnableKinds(values, settings);
        isChanged = settings != before;
        return CheckRouter(settings) && AreKept(RouterKeys(), values, settings, AsRead(settings));
    };
    if (!ChangeRouterSettings(enter)) return false;
    constexpr MessageWith<0> kChanged = "Changed the general settings of routing";
    constexpr MessageWith<0> kUnchanged = "Nothing was to be changed";
    ShowStatus(isChanged ? kChanged : kUnchanged);
    return true;
}

} // namespace bv
