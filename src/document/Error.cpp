#include <Quillet/DefaultErrorHandler.h>
#include <Quillet/ErrorForwarder.h>

#include <iterator>

namespace Quillet {

const char* GetErrorName(Error::Type type)
{
    // Hosts match on these words, the misspelt "profiile" included.
    static constexpr const char* c_names[] = {
        "fopen",
        "file op",
        "unexpected EOF",
        "PDF header",
        "PDF trailer",
        "XRef table",
        "page tree",
        "encrypt",
        "catalog",
        "major version",
        "password",
        "unimplemented encryption",
        "general",
        "ZLib",
        "CCITT",
        "unimplemented feature",
        "unimplemented text encoding",
        "unimplemented filter",
        "unimplemented transparency",
        "unimplemented fill",
        "unimplemented line dash",
        "unimplemented shading",
        "unimplemented colour profiile",
        "",
        "",
        "cut short",
    };
    const auto index = static_cast<unsigned>(type);
    return index < std::size(c_names) ? c_names[index] : "Unknown error";
}

void ErrorHandler::OnError(Error::Type type) const
{
    if (!IsRecoverable(type)) throw type;
}

void ErrorHandler::OnErrorAt(Error::Type type, const ErrorPlace&) const
{
    OnError(type);
}

bool ErrorHandler::IsRecoverable(Error::Type type)
{
    return type == Error::MajorVersion || type == Error::Password || type >= Error::General;
}

int ErrorForwarder::GetErrorPage() const
{
    return handler ? handler->GetErrorPage() : -2;
}

std::string ErrorForwarder::GetErrorDocumentName() const
{
    return handler ? handler->GetErrorDocumentName() : std::string();
}

const ErrorHandler* ErrorForwarder::GetErrorHandler() const
{
    return handler ? handler : this;
}

const bool* ErrorForwarder::GetAbortPointer() const
{
    return handler ? handler->GetAbortPointer() : nullptr;
}

void ErrorForwarder::StartDocument(const std::string& name) const
{
    if (handler) handler->StartDocument(name);
}

void ErrorForwarder::SetPage(int page) const
{
    if (handler) handler->SetPage(page);
}

void ErrorForwarder::OnError(Error::Type type) const
{
    if (handler) {
        handler->OnError(type);
    } else {
        ErrorHandler::OnError(type);
    }
}

const DefaultErrorHandler* ErrorForwarder::GetDefaultErrorHandler() const
{
    return dynamic_cast<const DefaultErrorHandler*>(GetErrorHandler());
}

void DefaultErrorHandler::StartDocument(const std::string& name) const
{
    documentName = name;
    errorPage = -1;
}

void DefaultErrorHandler::OnError(Error::Type type) const
{
    // That something is missing is worth more than any fault that was stepped over.
    const bool isGrave = !IsRecoverable(type) || type == Error::CutShort;
    if (lastError == Error::None || (IsRecoverable(lastError) && isGrave)) lastError = type;
    ErrorHandler::OnError(type);
}

} // namespace Quillet
