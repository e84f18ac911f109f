// The mail libraries of the tests: Simple MAPI and the bridge to Notes, over a box of three messages. One source is
// both a table in the tests' own process and a library that is loaded (BVLNAPI.DLL, beside the tests).
#pragma once

#include <cstdint>
#include <vector>

#include "mailgw/simple_mapi.h"

namespace bv::test {

// What the libraries answer, and whom they tell of their calls. Nothing in it but what two modules can share.
struct MailPartner {
    mapi::Error (*Call)(const char* entry, const char* details) = nullptr; // returns what the entry is to return
    bool WalksInCircles = false;
    std::uint32_t Recipients = 1; // that a read message and the address book say they have
    bool GivesNothing = false;    // success without a result
    int Buffers = 0;              // handed out and not freed
};

struct MailEntry {
    const char* Name;
    void (*Entry)();
};

// The entries of this process's own table, those of MAPI and those of the bridge.
std::vector<MailEntry> MapiEntries();
std::vector<MailEntry> NotesEntries();

} // namespace bv::test

// Sets whom the libraries of this module speak to; a library that is loaded has an entry of this name.
extern "C" void UseMailPartner(bv::test::MailPartner* partner);
