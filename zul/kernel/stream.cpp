#include "zul/kernel/stream.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/crt.h"
#include "zul/kernel/references.h"

namespace zul {

void CStream::OnReference(const CAnyObject*) {}

std::int64_t CStream::ToStoredId(const CAnyObject* object) {
    return object->GetControlCell()->NeedId();
}
std::int64_t CStream::ToStoredId(const CObjectID& id) {
    return id.GetValue();
}
std::int64_t CStream::FromStoredId(std::int64_t stored) {
    return stored;
}

// --- CMemoryStream ---

CMemoryStream::CMemoryStream(const void* data, std::size_t size) {
    if (data == nullptr) return;
    const auto* const bytes = static_cast<const std::uint8_t*>(data);
    m_Bytes.assign(bytes, bytes + size);
}

bool CMemoryStream::Read(void* data, std::uint32_t size) {
    if (size == 0) return true;
    if (size > GetRemaining()) {
        m_Position = m_Bytes.size();
        return false;
    }
    if (data == nullptr) return false;
    std::memcpy(data, m_Bytes.data() + m_Position, size);
    m_Position += size;
    return true;
}

bool CMemoryStream::Write(const void* data, std::uint32_t size) {
    if (size == 0) return true;
    if (data == nullptr) return false;
    const auto* const bytes = static_cast<const std::uint8_t*>(data);
    const std::size_t over = std::min<std::size_t>(size, m_Bytes.size() - m_Position);
    m_Bytes.insert(m_Bytes.end(), bytes + over, bytes + size);
    if (over != 0) std::memcpy(m_Bytes.data() + m_Position, bytes, over);
    m_Position += size;
    return true;
}

void CMemoryStream::SetPosition(std::size_t position) {
    m_Position = std::min(position, m_Bytes.size());
}

void CMemoryStream::Clear() {
    m_Bytes.clear();
    m_Position = 0;
}

// --- CFileStream ---

CFileStream::CFileStream(const char16_t* path, const char16_t* mode) : m_File(zul_wfopen(path, mode)) {
    if (m_File == nullptr) return;
    if (zul_fseek(m_File.get(), 0, SEEK_END) != 0) return;
    const auto size = zul_ftell(m_File.get());
    if (size > 0) m_Size = static_cast<std::uint64_t>(size);
    const bool appends = std::u16string_view(mode).find(u'a') != std::u16string_view::npos;
    if (appends) {
        m_Position = m_Size;
    } else {
        std::rewind(m_File.get());
    }
}

bool CFileStream::Read(void* data, std::uint32_t size) {
    if (m_File == nullptr) return false;
    if (size == 0) return true;
    const bool isThere = m_AllWritten && size <= GetRemaining();
    if (isThere && data == nullptr) return false;
    m_AllRead = isThere && ReadAll(data, size) && m_AllRead;
    m_Position = m_AllRead ? m_Position + size : m_Size;
    return m_AllRead;
}

bool CFileStream::ReadAll(void* data, std::uint32_t size) {
    if (!SwitchTo(Reading)) return false;
    if (size > LargeRead) return std::fread(data, 1, size, m_File.get()) == size;
    std::uint8_t bytes[LargeRead];
    if (std::fread(bytes, 1, size, m_File.get()) != size) return false;
    std::memcpy(data, bytes, size);
    return true;
}

bool CFileStream::Write(const void* data, std::uint32_t size) {
    if (m_File == nullptr) return false;
    if (size == 0) return true;
    if (data == nullptr) return false;
    // How much of a write that failed stands in the file nobody knows, so nothing can follow it.
    m_AllWritten = m_AllWritten && WriteAll(data, size);
    return m_AllWritten;
}

bool CFileStream::WriteAll(const void* data, std::uint32_t size) {
    if (!SwitchTo(Writing)) return false;
    if (std::fwrite(data, 1, size, m_File.get()) != size) return false;
    m_Position += size;
    m_Size = std::max(m_Size, m_Position);
    return true;
}

bool CFileStream::Close() {
    if (m_File == nullptr) return false;
    return std::fclose(m_File.release()) == 0 && m_AllRead && m_AllWritten;
}

bool CFileStream::SwitchTo(TOperation operation) {
    // The C library asks for a seek between reading and writing.
    if (m_LastOperation != operation && m_LastOperation != Nothing &&
        zul_fseek(m_File.get(), 0, SEEK_CUR) != 0) {
        return false;
    }
    m_LastOperation = operation;
    return true;
}

}  // namespace zul
