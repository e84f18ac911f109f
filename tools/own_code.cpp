// A check for clang-tidy that finds nothing itself: it has the others look at our own declarations alone. Without it
// they walk through all of the standard library that a file includes, where nobody wants to hear of them, and that
// takes three quarters of their time.
#include <clang-tidy/ClangTidyCheck.h>
#include <clang-tidy/ClangTidyModule.h>
#include <clang-tidy/ClangTidyModuleRegistry.h>
#include <clang/AST/ASTContext.h>

namespace {

using clang::ast_matchers::MatchFinder;

class OwnCode : public clang::tidy::ClangTidyCheck {
  public:
    using ClangTidyCheck::ClangTidyCheck;

    void registerMatchers(MatchFinder* finder) override {
        finder->addMatcher(clang::ast_matchers::translationUnitDecl().bind("all"), this);
    }

    // Called before clang-tidy goes on to what the translation unit holds.
    void check(const MatchFinder::MatchResult& result) override {
        std::vector<clang::Decl*> own;
        for (clang::Decl* declaration : result.Context->getTranslationUnitDecl()->decls()) {
            const auto place = result.SourceManager->getExpansionLoc(declaration->getLocation());
            if (!result.SourceManager->isInSystemHeader(place)) own.push_back(declaration);
        }
        result.Context->setTraversalScope(own);
    }
};

class OwnCodeModule : public clang::tidy::ClangTidyModule {
  public:
    void addCheckFactories(clang::tidy::ClangTidyCheckFactories& checks) override {
        checks.registerCheck<OwnCode>("bv-own-code");
    }
};

const clang::tidy::ClangTidyModuleRegistry::Add<OwnCodeModule> kModule("bv", "our own code alone");

} // namespace
