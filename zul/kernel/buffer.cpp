#include "zul/kernel/buffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "zul/kernel/stream.h"

namespace zul {
namespace {

constexpr std::uint32_t KeptWhenCleared = 64 * 1024;
constexpr std::uint64_t SmallestBlock = 64;

}  // namespace

CAnyMemoryBuffer::CAnyMemoryBuffer(const CAnyMemoryBuffer& other) {
    *this = other;
}

CAnyMemoryBuffer::CAnyMemoryBuffer(CAnyMemoryBuffer&& other) noexcept {
    *this = std::move(other);
}

CAnyMemoryBuffer& CAnyMemoryBuffer::operator=(const CAnyMemoryBuffer& other) {
    if (this == &other) return *this;
    NeedMemory(Write(0, other.m_Size, other.m_Block));
    m_Size = other.m_Size;
    m_fNotSerializable = other.m_fNotSerializable;
    return *this;
}

CAnyMemoryBuffer& CAnyMemoryBuffer::operator=(CAnyMemoryBuffer&& other) noexcept {
    std::swap(m_Block, other.m_Block);
    std::swap(m_Size, other.m_Size);
    std::swap(m_Reserved, other.m_Reserved);
    m_fNotSerializable = other.m_fNotSerializable;
    return *this;
}

CAnyMemoryBuffer::~CAnyMemoryBuffer() {
    std::free(m_Block);
}

void CAnyMemoryBuffer::Copy(void* to, const void* from, std::uint32_t size) {
    if (to != nullptr && from != nullptr && size != 0) std::memmove(to, from, size);
}

void CAnyMemoryBuffer::Clear() {
    m_Size = 0;
    if (m_Reserved <= KeptWhenCleared) return;
    std::free(m_Block);
    m_Block = nullptr;
    m_Reserved = 0;
}

bool CAnyMemoryBuffer::Reserve(std::uint32_t size) {
    return size <= m_Reserved || Reallocate(size);
}

void* CAnyMemoryBuffer::Resize(std::uint32_t size, bool keep) {
    if (!Grow(size)) return nullptr;
    const std::uint32_t kept = keep ? std::min(m_Size, size) : 0;
    if (size > kept) std::memset(m_Block + kept, 0, size - kept);
    m_Size = size;
    return size != 0 ? m_Block : nullptr;
}

bool CAnyMemoryBuffer::Write(std::uint32_t position, std::uint32_t size, const void* data) {
    if (data == nullptr || size == 0) return true;
    const std::uint64_t end = std::uint64_t{position} + size;
    if (end > m_Reserved) {
        const bool own = Contains(data);
        const std::ptrdiff_t offset = own ? static_cast<const std::uint8_t*>(data) - m_Block : 0;
        if (!Grow(end)) return false;
        if (own) data = m_Block + offset;
    }
    if (position > m_Size) std::memset(m_Block + m_Size, 0, position - m_Size);
    std::memmove(m_Block + position, data, size);
    m_Size = std::max(m_Size, static_cast<std::uint32_t>(end));
    return true;
}

bool CAnyMemoryBuffer::DoInsert(std::uint32_t position, std::uint32_t size, const void* data) {
    if (data == nullptr || size == 0) return true;
    if (position >= m_Size) return Write(position, size, data);
    if (Contains(data)) {
        const auto* const bytes = static_cast<const std::uint8_t*>(data);
        const std::vector<std::uint8_t> copy(bytes, bytes + size);
        return DoInsert(position, size, copy.data());
    }
    if (!Grow(std::uint64_t{m_Size} + size)) return false;
    std::memmove(m_Block + position + size, m_Block + position, m_Size - position);
    std::memcpy(m_Block + position, data, size);
    m_Size += size;
    return true;
}

void CAnyMemoryBuffer::DoDelete(std::uint32_t position, std::uint32_t size) {
    if (position >= m_Size) return;
    const std::uint32_t taken = std::min(size, m_Size - position);
    const std::uint32_t rest = m_Size - position - taken;
    if (rest != 0) std::memmove(m_Block + position, m_Block + position + taken, rest);
    m_Size -= taken;
}

bool CAnyMemoryBuffer::ObjectToBuffer(CStream* stream) const {
    if (stream == nullptr) return false;
    const std::uint32_t size = m_fNotSerializable ? 0 : m_Size;
    return stream->Write(&size, sizeof size) && (size == 0 || stream->Write(m_Block, size));
}

bool CAnyMemoryBuffer::ObjectFromBuffer(CStream* stream) {
    std::uint32_t size = 0;
    const bool fits = stream != nullptr && stream->Read(&size, sizeof size) && size <= stream->GetRemaining();
    if (fits) NeedMemory(Grow(size));
    m_Size = 0;
    if (!fits || (size != 0 && !stream->Read(m_Block, size))) return false;
    m_Size = size;
    return true;
}

std::uint32_t CAnyMemoryBuffer::GetPreferredSize() const {
    // The largest block's stored form is past 32 bits: the limit stands for it.
    const std::uint32_t stored = m_fNotSerializable ? 0 : m_Size;
    return stored > UINT32_MAX - 4 ? UINT32_MAX : stored + 4;
}

bool CAnyMemoryBuffer::Grow(std::uint64_t size) {
    if (size <= m_Reserved) return true;
    if (size > UINT32_MAX) return false;
    const std::uint64_t doubled = std::max({size, std::uint64_t{m_Reserved} * 2, SmallestBlock});
    return Reallocate(static_cast<std::uint32_t>(std::min<std::uint64_t>(doubled, UINT32_MAX))) ||
           Reallocate(static_cast<std::uint32_t>(size));
}

bool CAnyMemoryBuffer::Reallocate(std::uint32_t size) {
    void* const block = std::realloc(m_Block, size);
    if (block == nullptr) return false;
    m_Block = static_cast<std::uint8_t*>(block);
    m_Reserved = size;
    return true;
}

bool CAnyMemoryBuffer::Contains(const void* data) const {
    const auto address = reinterpret_cast<std::uintptr_t>(data);
    const auto start = reinterpret_cast<std::uintptr_t>(m_Block);
    return address >= start && address - start < m_Reserved;
}

// --- CAnyBuffer ---

void CAnyBuffer::Clear() {
    if (GetSize() == 0) return m_Buffer.Clear();
    CModificator modificator(this);
    m_Buffer.Clear();
}

void* CAnyBuffer::Resize(std::uint32_t size, bool keep) {
    CModificator modificator(this);
    const bool isUnchanged = size == GetSize() && (keep || size == 0);
    void* const block = m_Buffer.Resize(size, keep);
    if (isUnchanged || GetSize() != size) modificator.Clear();
    return block;
}

bool CAnyBuffer::Write(std::uint32_t position, std::uint32_t size, const void* data) {
    if (data == nullptr || size == 0) return true;
    CModificator modificator(this);
    const bool written = m_Buffer.Write(position, size, data);
    if (!written) modificator.Clear();
    return written;
}

bool CAnyBuffer::DoInsert(std::uint32_t position, std::uint32_t size, const void* data) {
    if (data == nullptr || size == 0) return true;
    CModificator modificator(this);
    const bool inserted = m_Buffer.DoInsert(position, size, data);
    if (!inserted) modificator.Clear();
    return inserted;
}

void CAnyBuffer::DoDelete(std::uint32_t position, std::uint32_t size) {
    if (position >= GetSize() || size == 0) return;
    CModificator modificator(this);
    m_Buffer.DoDelete(position, size);
}

void CAnyBuffer::SetAsNotSerializable(bool excluded) {
    CAnyObject::SetAsNotSerializable(excluded);
    m_Buffer.SetAsNotSerializable(excluded);
}

bool CAnyBuffer::ObjectToBuffer(CStream* stream) {
    return m_Buffer.ObjectToBuffer(stream) && CAnyObject::ObjectToBuffer(stream);
}

bool CAnyBuffer::ObjectFromBuffer(CStream* stream) {
    return m_Buffer.ObjectFromBuffer(stream) && CAnyObject::ObjectFromBuffer(stream);
}

}  // namespace zul
