// How a service of the operating system is reached and, in a test, replaced.
//
// Each header of this folder declares one service as an interface with a function that returns the one in
// use (`Files()`, `TheClock()`, ...). The folders win32/ and posix/ each implement every service; the build
// takes one of them. Nothing above this folder knows which.
#pragma once

namespace bv::platform {

template <class S>
class Service {
  public:
    // The service in use: the operating system's, unless a Substitute stands in for it.
    static S& InUse() { return substitute != nullptr ? *substitute : System(); }

    // The operating system's own service; each header declares its specialization, each platform defines it.
    static S& System();

  private:
    template <class T>
    friend class Substitute;
    static inline S* substitute = nullptr;
};

// Puts another implementation of a service in place while it lives, then the one before.
template <class S>
class Substitute {
  public:
    explicit Substitute(S& replacement) : before_(Service<S>::substitute) { Service<S>::substitute = &replacement; }
    ~Substitute() { Service<S>::substitute = before_; }
    Substitute(const Substitute&) = delete;
    Substitute& operator=(const Substitute&) = delete;

  private:
    S* before_;
};

} // namespace bv::platform
