#pragma once

#include <Quillet/Error.h>

#include <string>

namespace Quillet {

/// Receives every fault. Operations are const so that code with a const handler can report.
///
/// It is called on the thread that works on the document, while the call of the host lasts that met the fault. Hosts
/// that give one handler to documents on several threads make it safe for them.
class QUILLET_API ErrorHandler
{
public:
    /// Page being built, from 0; -1 before the first, -2 if nobody knows.
    virtual int GetErrorPage() const = 0;
    virtual std::string GetErrorDocumentName() const = 0;
    /// The handler behind this one; itself if there is none.
    virtual const ErrorHandler* GetErrorHandler() const { return this; }
    /// The host's abort flag, or null.
    virtual const bool* GetAbortPointer() const = 0;
    virtual void StartDocument(const std::string& name) const = 0;
    virtual void SetPage(int page) const = 0;
    /// Takes note of a fault. The provided body throws a fatal kind and returns from any other; an override ends in it,
    /// or decides by itself whether to throw.
    virtual void OnError(Error::Type type) const = 0;
    virtual ~ErrorHandler() = default;

    /// Raises `type` if `condition` is false. Gives the condition back, so that the failure branch can follow.
    bool Check(bool condition, Error::Type type) const
    {
        if (!condition) OnError(type);
        return condition;
    }

    /// False for the kinds that are thrown.
    static bool IsRecoverable(Error::Type type);
};

} // namespace Quillet
