/// \file
/// The streams between objects and a store's file. Inside of the store.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "zul/kernel/stream.h"

namespace zul {

class CStoreSession;

/// Takes an object's stored form, and the objects that it refers to.
class CStoreWriter : public CMemoryStream {
public:
    explicit CStoreWriter(CStoreSession& session) : m_Session(session) {}

    std::int64_t ToStoredId(const CAnyObject* object) override;
    std::int64_t ToStoredId(const CObjectID& id) override;

private:
    CStoreSession& m_Session;
};

/// Gives a stored form that lies in memory of another.
class CStoreReader : public CStream {
public:
    CStoreReader(const CStoreSession& session, std::string_view bytes) : m_Session(session), m_Rest(bytes) {}

    bool Read(void* data, std::uint32_t size) override;
    bool Write(const void*, std::uint32_t) override { return false; }
    std::uint64_t GetRemaining() const override { return m_Rest.size(); }
    std::int64_t FromStoredId(std::int64_t stored) override;
    /// Whether the bytes were exactly what the object asked for. A form cut short or grown is damaged.
    bool WasWhole() const { return !m_WasShort && m_Rest.empty(); }

private:
    const CStoreSession& m_Session;
    std::string_view m_Rest;
    bool m_WasShort = false;
};

/// Takes nothing, and lists what objects refer to.
class CReferenceLister : public CStream {
public:
    bool Read(void*, std::uint32_t) override { return false; }
    bool Write(const void*, std::uint32_t) override { return true; }
    std::uint64_t GetRemaining() const override { return 0; }
    void OnReference(const CAnyObject* object) override { m_Found.push_back(object); }
    std::int64_t ToStoredId(const CAnyObject*) override { return 0; }

    std::vector<const CAnyObject*> TakeFound() { return std::exchange(m_Found, {}); }

private:
    std::vector<const CAnyObject*> m_Found;
};

}  // namespace zul
