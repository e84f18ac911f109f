// A field for a password that a file keeps scrambled. Nobody gets to see it: eight asterisks stand for a stored one.
//
//   context.Password.Begin(dialog, ID_LOGIN_PASSWORD, record.TextOf(kKey));   when the dialog is filled
//   std::string stored;
//   if (!context.Password.Take(stored)) return ID_LOGIN_PASSWORD;             when it is taken
//   record.Enter(kKey, stored);
#pragma once

#include <windows.h>

#include <string>

namespace bv {

class PasswordField {
  public:
    // Takes up an edit control (ES_PASSWORD) of a dialog that is being filled, with the password as the file has it;
    // empty: there is none.
    void Begin(HWND dialog, int control, std::string stored);

    // The password as the file is to have it: the stored one until another is typed, and where asterisks stand for it
    // (TextToStore). What is taken twice is scrambled once. False, with the focus on the control, after 9209, 9211,
    // 5033, or the answer No to 9212.
    bool Take(std::string& stored);

  private:
    HWND dialog_ = nullptr;
    int control_ = 0;
    std::string stored_;
    std::string takenText_; // what the control said the last time, and what is stored for it
    std::string taken_;
};

} // namespace bv
