/// \file
/// What a command says beside its result.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <iostream>
#include <string>

#include "apps/zulmap/tool_error.h"
#include "platform/gdi.h"
#include "zul/kernel/client.h"

namespace zulmap {

/// One line on standard error that is written over again and again, and only where somebody watches.
class ProgressLine {
public:
    ProgressLine() : m_IsShown(isatty(STDERR_FILENO) != 0) {}
    ~ProgressLine() { Show({}); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void Show(const std::string& text) const {
        if (m_IsShown) std::cerr << "\r\x1b[K" << text << std::flush;
    }
    void ShowReading(const std::string& path, std::size_t features) const {
        Show("reading " + path + ": " + std::to_string(features) + " features");
    }
    /// How much of some work is done, as a bar.
    void ShowBar(const std::string& what, std::size_t done, std::size_t all) const {
        constexpr std::size_t kLength = 40;
        const std::size_t filled = all > 0 ? done * kLength / all : kLength;
        Show(what + " [" + std::string(filled, '#') + std::string(kLength - filled, ' ') + "] " +
             std::to_string(all > 0 ? done * 100 / all : 100) + " %");
    }

private:
    bool m_IsShown;
};

/// A frame of many thousand figures goes on when one of them is in error; the number of reports is what the
/// user wants to know.
class CountingErrorHandler : public zul::CErrorHandler {
public:
    void OnError(const zul::TErrorReport&) override {
        ++m_Count;
        m_WasShort = m_WasShort || ::GetLastError() == ERROR_NOT_ENOUGH_MEMORY;
    }
    /// \throws ToolError when anything was left out for want of memory
    void NeedMemory() const {
        if (m_WasShort) throw ToolError("there is no memory for all of the picture");
    }
    /// Says the number on standard error, if there were any.
    void Tell() const {
        if (m_Count > 0) std::cerr << m_Count << " drawing errors were reported\n";
    }

private:
    std::size_t m_Count = 0;
    bool m_WasShort = false;
};

}  // namespace zulmap
