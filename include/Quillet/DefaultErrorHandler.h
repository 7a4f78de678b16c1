#pragma once

#include <Quillet/ErrorHandler.h>

#include <Kernel/Abortable.h>

namespace Quillet {

/// The end of a document's chain: keeps the one error that is worth telling the user.
class QUILLET_API DefaultErrorHandler : public ErrorHandler, public Kernel::Abortable
{
public:
    int GetErrorPage() const override { return errorPage; }
    std::string GetErrorDocumentName() const override { return documentName; }
    const bool* GetAbortPointer() const override { return Kernel::Abortable::GetAbortPointer(); }
    /// `lastError` carries over, so that a host can look at it after a failed open.
    void StartDocument(const std::string& name) const override;
    void SetPage(int page) const override { errorPage = page; }
    /// Keeps the first error, unless a fatal one, or one that says that something was cut short, follows a recoverable
    /// one.
    void OnError(Error::Type type) const override;

    mutable std::string documentName;
    mutable int errorPage = -1;
    /// What is worth telling the user, by `GetErrorName`. It is no exit status: the first kind of all is 0.
    mutable Error::Type lastError = Error::None;
};

} // namespace Quillet
