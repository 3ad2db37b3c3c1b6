/// \file
/// What the host sets up once: the error handler, the observers, the system directory.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "zul/kernel/any_object.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/references.h"

namespace zul {

/// One report of `CAnyObject::RunError` or `CClient::RaiseException`.
struct TErrorReport {
    TErrorType Type = ErrorInternal;  ///< what the report is about
    CString Category;                 ///< of an internal fault; empty otherwise
    CString Text;                     ///< for people; names the member that reports
    CAnyPtr Object;                   ///< whom it is about, if anyone, as long as that lives
};

/// Decides what an error means. May return: the operation then goes on as its documentation says; or throw:
/// the library leaks nothing and its objects stay usable.
class ZUL_KERNEL_API CErrorHandler {
public:
    virtual ~CErrorHandler() = default;
    /// Called on the thread that met the fault.
    virtual void OnError(const TErrorReport& report) = 0;
};

/// A recoverable error as an exception.
class ZUL_KERNEL_API CRunError : public std::runtime_error {
public:
    explicit CRunError(const TErrorReport& report);       ///< Keeps the report.
    TErrorType GetType() const { return m_Report.Type; }  ///< Never that of an internal fault.
    /// Of the report.
    const CString& GetText() const { return m_Report.Text; }
    /// Null when there was none or it has died since.
    const CAnyObject* GetInstance() const { return m_Report.Object.DoGetInstance(); }

private:
    TErrorReport m_Report;
};

/// An internal fault as an exception.
class ZUL_KERNEL_API CInternalError : public std::runtime_error {
public:
    explicit CInternalError(const TErrorReport& report);  ///< Keeps the report.
    /// Of the report.
    const CString& GetCategory() const { return m_Report.Category; }
    const CString& GetText() const { return m_Report.Text; }

private:
    TErrorReport m_Report;
};

/// Throws `CRunError` and `CInternalError`.
class ZUL_KERNEL_API CThrowingErrorHandler : public CErrorHandler {
public:
    void OnError(const TErrorReport& report) override;
};

/// The kernel as the host sees it. One per process.
class ZUL_KERNEL_API CClient {
public:
    static CClient* Get();  ///< The only one.

    // --- errors ---

    /// Installs a handler, which stays the host's; null brings back the default one, which prints a line on
    /// standard error, keeps the latest reports and returns. \returns the handler before, null for the
    /// default.
    static CErrorHandler* SetErrorHandler(CErrorHandler* handler);
    /// The default handler's latest reports, oldest first, at most `MaxErrors`.
    static std::vector<TErrorReport> GetErrors();
    /// How many reports the default handler got since it was last cleared.
    static std::uint64_t GetErrorCount();
    static void ClearErrors();                     ///< Drops the reports and begins to count anew.
    static constexpr std::size_t MaxErrors = 256;  ///< older ones go first

    /// Reports an internal fault; the text is made as `CString::Format` does.
    template <class... Arguments>
    static void RaiseException(const CAnyObject* source, const char16_t* category, const char16_t* format,
                               const Arguments&... arguments) {
        Report({ErrorInternal, category, CString::Format(format, arguments...), source});
    }
    static void Report(const TErrorReport& report);  ///< Hands a report to the handler.

    // --- changes ---

    /// How many changes brackets of the calling thread have recorded.
    static std::uint64_t GetModificationCount();
    /// Observers stay the host's. To be added and removed while no other thread changes objects.
    static void AddObserver(CModificationObserver* observer);
    static void RemoveObserver(CModificationObserver* observer);

    // --- places ---

    /// The directory of the system database, without a separator at its end; image files lie below it.
    static void GetSysDBDir(CString& directory);
    static void SetSysDBDir(const CString& directory);

private:
    CClient() = default;
};

/// Installs an error handler for a while.
class CErrorHandlerScope {
public:
    /// Null: the default handler.
    explicit CErrorHandlerScope(CErrorHandler* handler) : m_Previous(CClient::SetErrorHandler(handler)) {}
    ~CErrorHandlerScope() { CClient::SetErrorHandler(m_Previous); }
    CErrorHandlerScope(const CErrorHandlerScope&) = delete;
    CErrorHandlerScope& operator=(const CErrorHandlerScope&) = delete;

private:
    CErrorHandler* m_Previous;
};

}  // namespace zul
