// Keeps a number in the store that the argument names, and reads it back.
#include <string>

#include "zul/kernel/domain.h"
#include "zul/store/store.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const zul::CString path(argv[1]);
    {
        zul::CStore store;
        zul::CInteger number(42);
        if (!store.Open(path.GetBuffer(), zul::CStore::Create) || !store.SetRoot(u"number", &number))
            return 1;
    }
    zul::CStore store;
    if (!store.Open(path.GetBuffer(), zul::CStore::ReadOnly)) return 1;
    const auto number = store.GetRoot<zul::CInteger>(u"number");
    return number.IsExist() && number->GetValue() == 42 ? 0 : 1;
}
