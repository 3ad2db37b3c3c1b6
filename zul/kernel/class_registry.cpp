#include "zul/kernel/class_registry.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <string_view>
#include <typeindex>
#include <unordered_map>

#include "zul/kernel/buffer.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"

namespace zul {
namespace {

struct TEntry {
    CString Name;
    CString Document;
    std::unique_ptr<CAnyFactory> Factory;
};

struct TRegistry {
    std::map<CString, TEntry> Entries;
    std::unordered_map<std::type_index, const CString*> NameOf;
    CAnyDictionary Structures;

    TRegistry();
    void Register(std::unique_ptr<CAnyFactory> factory, const CString& name, const CString& document);
    const TEntry* Find(const CString& name) const {
        const auto found = Entries.find(name);
        return found != Entries.end() ? &found->second : nullptr;
    }
};

/// The value of the attribute `name` of the document's `class` element; empty when there is none.
CString NameIn(const CString& document) {
    constexpr std::u16string_view Blanks = u" \t\r\n";
    constexpr std::u16string_view Element = u"<class";
    constexpr std::u16string_view Attribute = u"name='";

    std::u16string_view text(document.GetBuffer(), document.GetLength());
    const std::size_t start = text.find(Element);
    if (start == std::u16string_view::npos) return {};
    text.remove_prefix(start + Element.size());
    text = text.substr(0, text.find(u'>'));
    for (std::size_t at = text.find(Attribute); at != std::u16string_view::npos;
         at = text.find(Attribute, at + 1)) {
        if (at == 0 || Blanks.find(text[at - 1]) == std::u16string_view::npos) continue;
        const std::u16string_view value = text.substr(at + Attribute.size());
        const std::size_t end = value.find(u'\'');
        if (end == std::u16string_view::npos) return {};
        return CString(value.data(), static_cast<std::uint32_t>(end));
    }
    return {};
}

TRegistry& GetRegistry() {
    // Lives until the process ends: its factories may belong to libraries that are unloaded before.
    static TRegistry* registry = new TRegistry;
    return *registry;
}

TRegistry::TRegistry() {
    const auto add = [this](CAnyFactory* factory, const char16_t* document) {
        Register(std::unique_ptr<CAnyFactory>(factory), NameIn(document), document);
    };
    add(new CFactory<CAnyBuffer>,
        u"<class   name='CAnyBuffer'   title='Buffer'   description='Growable block of bytes'   "
        u"supportinfo=''"
        u"   package='zul.kernel'   module='zulkernel'   platform=''   version='1.0.0'>"
        u"<public>      <parent name='CAnyObject'/>   </public></class>");
    add(new CFactory<CInteger>,
        u"<class   name='CInteger'   title='Integer'   description='Integer number of 64 bits'   "
        u"supportinfo=''"
        u"   package='zul.kernel'   module='zulkernel'   platform=''   version='1.0.0'>"
        u"<public>      <parent name='CAnyDomain'/>   </public></class>");
    add(new CFactory<CFloat>,
        u"<class   name='CFloat'   title='Float'   description='Floating number of 64 bits'   supportinfo=''"
        u"   package='zul.kernel'   module='zulkernel'   platform=''   version='1.0.0'>"
        u"<public>      <parent name='CAnyDomain'/>   </public></class>");
}

void TRegistry::Register(std::unique_ptr<CAnyFactory> factory, const CString& name, const CString& document) {
    // What may fail comes first; a type without a name is as good as unknown.
    TEntry made{name, document, nullptr};
    const CString** const nameOf = factory != nullptr ? &NameOf[factory->GetObjectType()] : nullptr;
    TEntry& entry = Entries[name];
    if (entry.Factory != nullptr) {
        // Another name may have taken the type over meanwhile.
        const auto known = NameOf.find(entry.Factory->GetObjectType());
        if (known != NameOf.end() && known->second == &entry.Name) known->second = nullptr;
    }
    made.Factory = std::move(factory);
    entry = std::move(made);
    if (nameOf != nullptr) *nameOf = &entry.Name;
}

}  // namespace

// --- CAnyFactory ---

CAnyObject* CAnyFactory::CreateInstance(void*) {
    return nullptr;
}
CAnyObject* CAnyFactory::CreateInstance() {
    return nullptr;
}
std::size_t CAnyFactory::GetObjectSize() const {
    return 0;
}
const std::type_info& CAnyFactory::GetObjectType() const {
    return typeid(void);
}

void* CAnyFactory::operator new(std::size_t size) noexcept {
    return std::malloc(size);
}
void CAnyFactory::operator delete(void* storage) noexcept {
    std::free(storage);
}

// --- CClass ---

void CClass::Register(CAnyFactory* factory, const CString& document) {
    std::unique_ptr<CAnyFactory> owned(factory);
    const CString name = NameIn(document);
    if (name.IsEmpty()) {
        CAnyObject::RunError(ErrorFailed, u"Class description has no name <zul::CClass::Register()>");
        return;
    }
    GetRegistry().Register(std::move(owned), name, document);
}

CAnyObject* CClass::Create(const CString& name) {
    CAnyFactory* const factory = GetFactory(name);
    std::unique_ptr<CAnyObject> object(factory != nullptr ? factory->CreateInstance() : nullptr);
    if (object != nullptr) object->DoInitialize();
    return object.release();
}

CAnyFactory* CClass::GetFactory(const CString& name) {
    const TEntry* const entry = GetRegistry().Find(name);
    return entry != nullptr ? entry->Factory.get() : nullptr;
}

const CString* CClass::GetDocument(const CString& name) {
    const TEntry* const entry = GetRegistry().Find(name);
    return entry != nullptr ? &entry->Document : nullptr;
}

std::size_t CClass::GetSize(const CString& name) {
    const CAnyFactory* const factory = GetFactory(name);
    return factory != nullptr ? factory->GetObjectSize() : 0;
}

const CString* CClass::GetName(const CAnyObject* object) {
    if (object == nullptr) return nullptr;
    const auto& names = GetRegistry().NameOf;
    const auto found = names.find(typeid(*object));
    return found != names.end() ? found->second : nullptr;
}

CAnyDictionary* CClass::GetStructureRegistry() {
    return &GetRegistry().Structures;
}

}  // namespace zul
