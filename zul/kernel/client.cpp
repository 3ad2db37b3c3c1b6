#include "zul/kernel/client.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <deque>
#include <mutex>
#include <string>

#include "zul/kernel/modification_state.h"

namespace zul {
namespace {

/// Prints, keeps the latest reports, and returns. Reports may come from several threads.
class CKeepingErrorHandler : public CErrorHandler {
public:
    void OnError(const TErrorReport& report) override {
        std::string line = report.Category.IsEmpty() ? "error " + std::to_string(report.Type)
                                                     : std::string(report.Category.GetBufferAnsi());
        line.append(": ").append(report.Text.GetBufferAnsi());
        std::replace_if(
            line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');

        const std::lock_guard<std::mutex> lock(m_Guard);
        std::fprintf(stderr, "zul: %s\n", line.c_str());
        ++m_Count;
        if (m_Latest.size() == CClient::MaxErrors) m_Latest.pop_front();
        m_Latest.push_back(report);
    }

    std::vector<TErrorReport> GetErrors() {
        const std::lock_guard<std::mutex> lock(m_Guard);
        return {m_Latest.begin(), m_Latest.end()};
    }

    std::uint64_t GetCount() {
        const std::lock_guard<std::mutex> lock(m_Guard);
        return m_Count;
    }

    void Clear() {
        const std::lock_guard<std::mutex> lock(m_Guard);
        m_Latest.clear();
        m_Count = 0;
    }

private:
    std::mutex m_Guard;
    std::deque<TErrorReport> m_Latest;
    std::uint64_t m_Count = 0;
};

CKeepingErrorHandler& GetDefaultHandler() {
    // Lives until the process ends: objects that die late may still report.
    static CKeepingErrorHandler* handler = new CKeepingErrorHandler;
    return *handler;
}

std::atomic<CErrorHandler*> g_Handler{nullptr};

CString& GetDirectory() {
    static CString directory;
    return directory;
}

std::string What(const TErrorReport& report) {
    return report.Text.GetBufferAnsi();
}

}  // namespace

// For those who take its address: a Windows library exports only what one of its sources defines.
constexpr std::size_t CClient::MaxErrors;

CRunError::CRunError(const TErrorReport& report) : std::runtime_error(What(report)), m_Report(report) {}

CInternalError::CInternalError(const TErrorReport& report)
    : std::runtime_error(What(report)), m_Report(report) {}

void CThrowingErrorHandler::OnError(const TErrorReport& report) {
    if (report.Category.IsEmpty()) throw CRunError(report);
    throw CInternalError(report);
}

CClient* CClient::Get() {
    static CClient client;
    return &client;
}

CErrorHandler* CClient::SetErrorHandler(CErrorHandler* handler) {
    return g_Handler.exchange(handler);
}

std::vector<TErrorReport> CClient::GetErrors() {
    return GetDefaultHandler().GetErrors();
}
std::uint64_t CClient::GetErrorCount() {
    return GetDefaultHandler().GetCount();
}
void CClient::ClearErrors() {
    GetDefaultHandler().Clear();
}

void CClient::Report(const TErrorReport& report) {
    CErrorHandler* const installed = g_Handler.load();
    (installed != nullptr ? *installed : GetDefaultHandler()).OnError(report);
}

std::uint64_t CClient::GetModificationCount() {
    return GetModificationState().Count;
}

void CClient::AddObserver(CModificationObserver* observer) {
    if (observer == nullptr) return;
    TObservers& observers = GetObservers();
    observers.List.push_back(observer);
    observers.Any = true;
}

void CClient::RemoveObserver(CModificationObserver* observer) {
    TObservers& observers = GetObservers();
    const auto place = std::find(observers.List.begin(), observers.List.end(), observer);
    if (place != observers.List.end()) observers.List.erase(place);
    observers.Any = !observers.List.empty();
}

void CClient::GetSysDBDir(CString& directory) {
    directory = GetDirectory();
}
void CClient::SetSysDBDir(const CString& directory) {
    GetDirectory() = directory;
}

}  // namespace zul
