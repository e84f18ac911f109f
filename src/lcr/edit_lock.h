// Who may edit least-cost routing, and what must be there before it can be switched on.
//
// LCREDIT.LOK in the server's request area keeps two administrators from editing routing at the same time: who edits
// holds the file open and denies it to everybody else. The file stays behind when the lock is released; nobody reads
// it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace bv {

// The path of the lock file.
std::string LcrLockPath();

// Who holds the lock, as a note in the database directory says: LCREDIT.WHO, which is of this program alone.
struct LcrHolder {
    std::string User;
    std::string Host;
    std::string Since; // YYYY-MM-DD hh:mm
    std::string Editor;

    friend bool operator==(const LcrHolder&, const LcrHolder&) = default;
};
std::string LcrNotePath();

// Whether anybody holds the lock, this process included. Shows nothing.
bool IsLcrLocked();

// The holder, as long as there is one; none, too, when the note cannot be read. Shows nothing.
std::optional<LcrHolder> FindLcrHolder();

// "Held by ANNA on WS12 since 2026-11-22 09:30 (rules)"
std::string DescribeLcrHolder(const LcrHolder& holder);

// Takes the lock, of which a process has one: makes the file when it is not there, and tries to open it every 100 ms
// for 5 seconds. False after "LCR settings are being edited by another user.  Please try again later"; status line 2
// then says who that is, if it is known (9344), or, where no user can be the reason, what the system said of which file
// (9103).
bool LockLcrEdit();

// Releases the lock if it is held.
void UnlockLcrEdit();

// Runs an editor of routing while the lock is held, whatever comes of it, with a note of who holds it for what; a note
// that cannot be written keeps nobody from editing. False when the lock was not to be had, and then the editor was not
// run, or when the editor returned false.
bool RunLcrEditor(const std::function<bool()>& editor, std::string_view what = "routing");

// What of routing can be edited: each is a button and its label on the options' page.
struct LcrButtons {
    bool General = false; // the router's settings
    bool Destinations = false;
    bool Links = false;
    bool Rules = false;
    friend bool operator==(const LcrButtons&, const LcrButtons&) = default;
};

// Links need the general settings ("[ROUTER]" of SETUP.INI); rules also COUNTRY.INI and LINK.INI. Nothing can be
// edited while routing is switched off.
LcrButtons UpdateLcrButtons(bool isEnabled, bool hasGeneralSettings);

// What routing lacks before it can be switched on.
enum class LcrLack { Nothing, GeneralSettings, Links, Destinations, Rules };

// The first of what is missing, in the order of the list above. Rules may be missing. Shows nothing.
LcrLack FindLcrLack(bool hasGeneralSettings);

enum class LcrReadiness {
    Ready,
    NotReady,
    SetUpRules, // routing stays off for now: the rules are to be edited first
};

// The checks before routing is switched on. NotReady after a message that says what is missing. Missing rules are
// asked about when that is allowed: Yes gives SetUpRules, No gives Ready, as does not asking.
LcrReadiness CheckLcrReady(bool hasGeneralSettings, bool mayAskForRules);

} // namespace bv
