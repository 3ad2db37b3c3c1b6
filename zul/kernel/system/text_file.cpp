#include "zul/kernel/system/text_file.h"

#include <cstring>

#include "platform/crt.h"

namespace zulsys {

bool CTextFile::Connect(const char16_t* path) {
    return Open(path, u"rb");
}
bool CTextFile::Create(const char16_t* path) {
    m_IsWritten = Open(path, u"wb");
    return m_IsWritten;
}

bool CTextFile::Disconnect() {
    if (m_File == nullptr) return true;
    const bool isWhole = !HasFailed();
    const bool isClosed = std::fclose(m_File.release()) == 0;
    return isWhole && (isClosed || !m_IsWritten);  // what was read is not changed by a close that fails
}

bool CTextFile::ReadString(char* buffer, std::uint32_t size) {
    if (buffer == nullptr || size == 0) return false;
    buffer[0] = '\0';
    m_InsideLine = false;
    if (m_File == nullptr || size < 2 || HasFailed()) return false;

    std::FILE* const file = m_File.get();
    std::uint32_t length = 0;
    int byte = std::fgetc(file);
    if (byte == EOF) return false;
    while (byte != EOF && byte != '\n' && length < size - 1) {
        buffer[length++] = static_cast<char>(byte);
        byte = std::fgetc(file);
    }
    if (byte == EOF && HasFailed()) {
        // Half a line could pass for another one.
        buffer[0] = '\0';
        return false;
    }
    if (byte == '\n') {
        if (length != 0 && buffer[length - 1] == '\r') --length;
    } else if (byte != EOF) {
        std::ungetc(byte, file);
        m_InsideLine = true;
    }
    buffer[length] = '\0';
    return true;
}

bool CTextFile::WriteString(const char* text) {
    if (m_File == nullptr || text == nullptr) return false;
    const std::size_t length = std::strlen(text);
    return std::fwrite(text, 1, length, m_File.get()) == length;
}

bool CTextFile::Open(const char16_t* path, const char16_t* mode) {
    Disconnect();
    m_InsideLine = m_IsWritten = false;
    m_File.reset(zul_wfopen(path, mode));
    return m_File != nullptr;
}

}  // namespace zulsys
