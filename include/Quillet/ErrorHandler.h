#pragma once

#include <Quillet/Error.h>
#include <Quillet/ErrorPlace.h>

#include <string>

namespace Quillet {

/// Receives every fault. Operations are const so that code with a const handler can report.
///
/// It is called on the thread that works on the document, while the call of the host lasts that met the fault. Hosts
/// that give one handler to documents on several threads make it safe for them. A handler is never owned: it outlives
/// the documents that it serves.
class QUILLET_API ErrorHandler
{
public:
    /// Page being built, from 0; -1 before the first, -2 if nobody knows.
    virtual int GetErrorPage() const = 0;
    virtual std::string GetErrorDocumentName() const = 0;
    /// The handler behind this one; itself if there is none.
    virtual const ErrorHandler* GetErrorHandler() const { return this; }
    /// The host's abort flag, or null. It is read as `Kernel::Abortable` says.
    virtual const bool* GetAbortPointer() const = 0;
    /// A file is opened: its path, or the name of what holds it.
    virtual void StartDocument(const std::string& name) const = 0;
    /// From 0; by the host, before it asks for a page. Any other value says that no page is built.
    virtual void SetPage(int page) const = 0;
    /// Takes note of a fault. The provided body throws a fatal kind and returns from any other; an override ends in it,
    /// or decides by itself whether to throw.
    virtual void OnError(Error::Type type) const = 0;
    /// What a document raises its faults by: `OnError` with a place. By default it is `OnError`, and the place is lost;
    /// an override throws what that would throw.
    virtual void OnErrorAt(Error::Type type, const ErrorPlace& place) const;
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
