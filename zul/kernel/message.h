/// \file
/// A message to an object, known by a number or by a name.
#pragma once

#include <cstdint>

#include "zul/kernel/string.h"

namespace zul {

/// Four 64-bit parameters go in, one 64-bit result comes out. A parameter is a number, widened with sign, or
/// an address; the type behind an address cannot be checked, so sender and receiver must agree on it. A
/// receiver treats a null address as a message that it does not handle.
class CMessage {
public:
    /// By a code other than 0, or by a name.
    explicit CMessage(std::int32_t code, std::int64_t param1 = 0, std::int64_t param2 = 0,
                      std::int64_t param3 = 0, std::int64_t param4 = 0)
        : m_Code(code), m_Params{param1, param2, param3, param4} {}
    explicit CMessage(const CString& name, std::int64_t param1 = 0, std::int64_t param2 = 0,
                      std::int64_t param3 = 0, std::int64_t param4 = 0)
        : m_Named(true), m_Name(name), m_Params{param1, param2, param3, param4} {}

    /// 0 for a named message.
    std::int32_t GetCode() const { return m_Code; }
    /// Null for a coded message.
    const CString* GetName() const { return m_Named ? &m_Name : nullptr; }
    /// True for a named message of this name; case does not matter.
    bool IsNamed(const char16_t* name) const { return m_Named && m_Name.IsEqual(name, true); }

    /// A number, or an address for ToPointer().
    std::int64_t GetParam1() const { return m_Params[0]; }
    std::int64_t GetParam2() const { return m_Params[1]; }
    std::int64_t GetParam3() const { return m_Params[2]; }
    std::int64_t GetParam4() const { return m_Params[3]; }

    /// The receiver's answer; 0 until it sets one.
    std::int64_t GetResult() const { return m_Result; }
    void SetResult(std::int64_t result) { m_Result = result; }

    /// An address as a parameter, and back.
    static std::int64_t FromPointer(const void* address) {
        return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(address));
    }
    template <class T>
    static T* ToPointer(std::int64_t param) {
        return reinterpret_cast<T*>(static_cast<std::intptr_t>(param));
    }

private:
    std::int32_t m_Code = 0;
    bool m_Named = false;
    CString m_Name;
    std::int64_t m_Params[4];
    std::int64_t m_Result = 0;
};

}  // namespace zul
