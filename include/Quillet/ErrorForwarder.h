#pragma once

#include <Quillet/ErrorHandler.h>

namespace Quillet {

class DefaultErrorHandler;

/// One link of the chain from an object to its document's handler. Without a handler it answers for itself: fatal
/// kinds are thrown all the same.
class QUILLET_API ErrorForwarder : public ErrorHandler
{
public:
    /// `newHandler` is borrowed and may be null.
    explicit ErrorForwarder(const ErrorHandler* newHandler = nullptr) : handler(newHandler) {}

    void SetErrorHandler(const ErrorHandler* newHandler) { handler = newHandler; }

    int GetErrorPage() const override;
    std::string GetErrorDocumentName() const override;
    /// One link on: the handler, or this object without one.
    const ErrorHandler* GetErrorHandler() const override;
    const bool* GetAbortPointer() const override;
    void StartDocument(const std::string& name) const override;
    void SetPage(int page) const override;
    void OnError(Error::Type type) const override;

    /// The handler if it is a `DefaultErrorHandler`, else null.
    const DefaultErrorHandler* GetDefaultErrorHandler() const;

    const ErrorHandler* handler;
};

} // namespace Quillet
