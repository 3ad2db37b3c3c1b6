// What the kernel's tests share: an object with one field that shows what the kernel does with it.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>

#include "zul/kernel/any_object.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/stream.h"

namespace zul {

inline void PrintTo(const CString& text, std::ostream* out) {
    *out << '"' << text.GetBufferAnsi() << '"';
}

class CProbe : public CAnyObject {
public:
    CProbe() { ++Living; }
    CProbe(const CProbe& other) : CAnyObject(other), m_Value(other.m_Value) { ++Living; }
    CProbe& operator=(const CProbe&) = default;
    ~CProbe() override { --Living; }

    std::int32_t GetValue() const { return m_Value; }
    void SetValue(std::int32_t value) {
        if (m_Value == value) return;
        CModificator modificator(this, m_Value, value);
        m_Value = value;
    }

    bool ObjectToBuffer(CStream* stream) override { return stream->Write(&m_Value, sizeof m_Value); }
    bool ObjectFromBuffer(CStream* stream) override { return stream->Read(&m_Value, sizeof m_Value); }
    void DoInitialize() override { ++Initialized; }
    void DoFinalize() override { ++Finalized; }
    void DoModify() override { ++Modified; }
    void DoUnmodify() override { ++Unmodified; }
    void DoCommitObject() override { ++Committed; }

    int Initialized = 0, Modified = 0, Unmodified = 0, Committed = 0;
    static inline int Living = 0;
    static inline int Finalized = 0;

private:
    std::int32_t m_Value = 0;
};

// A path of its own below the system's directory for such things; what stands there goes with it.
class CScratchPath {
public:
    CScratchPath()
        : m_Path(std::filesystem::temp_directory_path() / ("zul-kernel-" + std::to_string(Next()))) {
        std::filesystem::remove_all(m_Path);
    }
    ~CScratchPath() { std::filesystem::remove_all(m_Path); }
    const std::filesystem::path& Get() const { return m_Path; }
    std::u16string Wide() const { return m_Path.u16string(); }

private:
    static std::uint64_t Next() {
        static std::atomic<std::uint64_t> count{0};
        return reinterpret_cast<std::uintptr_t>(&count) + ++count;
    }
    std::filesystem::path m_Path;
};

}  // namespace zul
