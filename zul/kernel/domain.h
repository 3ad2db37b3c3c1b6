/// \file
/// Values that are objects: the base, a floating number, an integer.
#pragma once

#include <cstdint>

#include "zul/kernel/any_object.h"

namespace zul {

/// The base of value classes.
class ZUL_KERNEL_API CAnyDomain : public CAnyObject {
public:
    using TIterator = TTextIterator;  ///< a place in a text

    /// The value's text in its plain format. \returns what `ToString` returns.
    bool GetInscription(CString& text) override;

    /// Below, equal to or above zero as this value is before, the same as or after \p other; 0 for values
    /// that have no order, or of other classes.
    virtual std::int32_t Compare(CAnyDomain* other);
    /// The value itself; a class that wraps another value answers with that.
    virtual CAnyDomain* GetDomainValue();
    /// Takes over the value of \p other when it is of a fitting class.
    virtual void SetValue(CAnyDomain* other);
    /// True when `FromString` would take the text.
    virtual bool IsValidString(const CString& text, const char16_t* format);
    /// Writes the value as text. \returns false when it has no text form; \p text is left alone then.
    virtual bool ToString(CString& text, const char16_t* format);
    /// Reads the value from text; a text that is not valid changes nothing.
    virtual void FromString(const CString& text, const char16_t* format);
    /// The value as a number, 0 where there is none.
    virtual double GetDoubleValue();
    virtual std::int64_t GetIntegerValue();
};

/// A floating number. Stored as 8 bytes.
class ZUL_KERNEL_API CFloat : public CAnyDomain {
public:
    explicit CFloat(double value = 0.0) : m_Value(value) {}  ///< Any value, NaN too.

    double GetValue() const { return m_Value; }  ///< As it was set.
    using CAnyDomain::SetValue;
    void SetValue(double value);  ///< An equal value records nothing.

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override { return 8; }

    std::int32_t Compare(CAnyDomain* other) override;
    void SetValue(CAnyDomain* other) override;
    /// A decimal number with optional sign, fraction and exponent, and nothing else.
    bool IsValidString(const CString& text, const char16_t* format) override;
    /// \param format printf-style with one floating conversion; null or empty means "%f", and a format
    /// without exactly one is the text as it stands.
    bool ToString(CString& text, const char16_t* format) override;
    void FromString(const CString& text, const char16_t* format) override;
    double GetDoubleValue() override { return m_Value; }
    /// Truncated toward zero; NaN gives 0, values beyond 64 bits the nearest limit.
    std::int64_t GetIntegerValue() override;

private:
    double m_Value;
};

/// A 64-bit integer. Stored as 8 bytes.
class ZUL_KERNEL_API CInteger : public CAnyDomain {
public:
    explicit CInteger(std::int64_t value = 0) : m_Value(value) {}  ///< Any value.

    std::int64_t GetValue() const { return m_Value; }  ///< As it was set.
    using CAnyDomain::SetValue;
    void SetValue(std::int64_t value);  ///< An equal value records nothing.

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override { return 8; }

    std::int32_t Compare(CAnyDomain* other) override;
    void SetValue(CAnyDomain* other) override;
    /// A decimal number of 64 bits with an optional sign, and nothing else.
    bool IsValidString(const CString& text, const char16_t* format) override;
    /// The format is not used: always decimal.
    bool ToString(CString& text, const char16_t* format) override;
    void FromString(const CString& text, const char16_t* format) override;
    double GetDoubleValue() override { return static_cast<double>(m_Value); }
    std::int64_t GetIntegerValue() override { return m_Value; }

private:
    std::int64_t m_Value;
};

}  // namespace zul
