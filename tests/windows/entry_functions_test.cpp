#include <gtest/gtest.h>

#include "platform/gdi.h"

namespace {

using Entry = void (*)();

Entry Find(HMODULE library, const char* name) {
    // Through a pointer of no type: the two function types have nothing in common.
    return reinterpret_cast<Entry>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

TEST(EntryFunctions, AreFoundByTheirPlainNamesAndRun) {
    const HMODULE library = ::LoadLibraryW(L"zulgraphics.dll");
    ASSERT_NE(library, nullptr);
    for (const char* name : {"AutoRegister", "InitializeLibrary", "FinalizeLibrary"}) {
        const Entry entry = Find(library, name);
        ASSERT_NE(entry, nullptr) << name;
        entry();
    }
    EXPECT_EQ(Find(library, "autoregister"), nullptr);
    ::FreeLibrary(library);
}

}  // namespace
