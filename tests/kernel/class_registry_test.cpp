#include "zul/kernel/class_registry.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/client.h"
#include "zul/kernel/domain.h"

namespace zul {

// Constructed with an argument by its factory.
class CSized : public CAnyObject {
public:
    explicit CSized(int size) : m_Size(size) {}
    int m_Size;
};

template <>
struct CFactoryTraits<CSized> {
    static CSized* Construct(void* place) { return new (place) CSized(11); }
};

namespace {

// Counts the factories that are gone.
template <class T>
class CCountedFactory : public CFactory<T> {
public:
    ~CCountedFactory() override { ++Gone; }
    static inline int Gone = 0;
};

class CThrower : public CAnyObject {
public:
    CThrower() { throw std::runtime_error("no"); }
};

class CLateThrower : public CProbe {
public:
    void DoInitialize() override { throw std::runtime_error("not yet"); }
};

TEST(ClassRegistryTest, CreatesByTheNameInTheDocument) {
    const CString document(
        u"<class   name='CProbe'   title='name=\u0416'><private><field name='m_X'/></private></class>");
    CClass::Register(new CFactory<CProbe>, document);
    const std::unique_ptr<CAnyObject> object(CClass::Create(u"CProbe"));
    auto* const probe = dynamic_cast<CProbe*>(object.get());
    ASSERT_NE(probe, nullptr);
    EXPECT_EQ(probe->Initialized, 1);
    EXPECT_EQ(CClass::GetSize(u"CProbe"), sizeof(CProbe));
    EXPECT_EQ(*CClass::GetDocument(u"CProbe"), document);
    EXPECT_EQ(*CClass::GetName(probe), CString(u"CProbe"));
    EXPECT_EQ(CClass::Create(u"cprobe"), nullptr);
    EXPECT_EQ(CClass::GetDocument(CString()), nullptr);
    EXPECT_EQ(CClass::GetName(nullptr), nullptr);
}

TEST(ClassRegistryTest, ASecondRegistrationReplacesTheFirst) {
    using CFirst = CCountedFactory<CProbe>;
    CClass::Register(new CFirst, u"<class name='CTwice' version='1'/>");
    const int gone = CFirst::Gone;
    CClass::Register(new CFactory<CSized>, u"<class name='CTwice' version='2'/>");
    EXPECT_EQ(CFirst::Gone, gone + 1);
    const std::unique_ptr<CAnyObject> object(CClass::Create(u"CTwice"));
    auto* const sized = dynamic_cast<CSized*>(object.get());
    ASSERT_NE(sized, nullptr);
    EXPECT_EQ(sized->m_Size, 11);
    CClass::Register(new CFactory<CSized>, u"<class name='CThrice'/>");
    CClass::Register(nullptr, u"<class name='CTwice'/>");
    EXPECT_EQ(CClass::Create(u"CTwice"), nullptr);
    EXPECT_EQ(CClass::GetSize(u"CTwice"), 0u);
    EXPECT_EQ(*CClass::GetName(sized), CString(u"CThrice"));
}

TEST(ClassRegistryTest, DocumentsWithoutANameAreReportedAndTheirFactoryFreed) {
    using CLost = CCountedFactory<CProbe>;
    const char16_t* const documents[] = {
        u"",
        u"<class name=''/>",
        u"<class name='CCut",
        u"<class><field name='m_X'/></class>",
        u"<class filename='CFile'/>",
    };
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    for (const char16_t* document : documents) {
        const int gone = CLost::Gone;
        EXPECT_THROW(CClass::Register(new CLost, document), CRunError) << CString(document).GetBufferAnsi();
        EXPECT_EQ(CLost::Gone, gone + 1);
    }
}

TEST(FactoryTest, AConstructorThatThrowsLeaksNothing) {
    CFactory<CThrower> factory;
    EXPECT_THROW(factory.CreateInstance(), std::runtime_error);
    CClass::Register(new CFactory<CLateThrower>, u"<class name='CLateThrower'/>");
    const int living = CProbe::Living;
    EXPECT_THROW(CClass::Create(u"CLateThrower"), std::runtime_error);
    EXPECT_EQ(CProbe::Living, living);
}

}  // namespace
}  // namespace zul
