/// \file
/// The background: the device settings of a canvas that are no handles.
#pragma once

#include <cstdint>

#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"

namespace zulsys {
class CTextFile;
}

namespace zul {

class CCanvas;
struct TSettings;

/// Background mode and colour (behind text, the gaps of broken lines and one-bit patterns) and the binary
/// raster operation of pens and fills. Only what changed since the last validation reaches the device.
///
/// A new background is transparent and black and copies the pen.
class ZUL_API CBackground : public CAnyObject {
public:
    /// Whether what lies behind shows through.
    enum TMode : std::int32_t { ModeTransparent = 0, ModeOpaque = 1 };
    /// How a pixel goes onto the one that is there.
    enum TRop : std::int32_t { RopCopy = 0, RopXor = 1 };

    CBackground() = default;
    CBackground(const CBackground&) = delete;
    CBackground& operator=(const CBackground&) = delete;

    std::int32_t GetColor() const { return m_BkColor; }  ///< 0x00BBGGRR
    std::int32_t GetMode() const { return m_BkMode; }    ///< TMode, or whatever was set
    std::int32_t GetRop() const { return m_Rop; }        ///< TRop, or whatever was set

    /// Transparent, black, copying; everything is to reach the device again. Not recorded as a modification.
    void Default();
    /// Each setter records one modification when the value is a new one. Values outside the enumerations are
    /// kept and leave the device as it is.
    void SetColor(std::int32_t color);
    void SetMode(std::int32_t mode);
    void SetRop(std::int32_t rop);
    /// Copies the settings. Null and the background itself are ignored.
    void ApplyBackground(const CBackground* other);
    /// Has all three settings set again at the next validation.
    void Invalidate() { m_fInvalid = InvalidAll; }

    /// Sets on the canvas's device what changed. Null is ignored.
    void Validate(CCanvas* canvas) {
        if (m_fInvalid) Set(canvas);
    }

    /// Codes 10057 to 10062 read and write the settings; 10080 ORs its parameter into the invalid flags
    /// (1 colour, 2 mode, 4 raster operation).
    bool DoMessage(CMessage* message) override;

    // --- the settings as text (see formats.h) ---

    /// Reads the parameter block that \p file stands at, up to its end line.
    virtual void ImportParameters(zulsys::CTextFile& file);
    /// Takes the settings from the attributes of an XML element, which the host's reader stands for. Those
    /// that it lacks stay.
    virtual void ImportParametersEx(CAnyObject* element);
    /// Write mode, colour and raster operation as a parameter block, as an XML element.
    virtual void ExportParameters(zulsys::CTextFile& file) const;
    virtual void ExportParametersEx(zulsys::CTextFile& file) const;

    // Persistent form: mode, colour, raster operation, 12 bytes.
    bool ObjectToBuffer(CStream* stream) override;
    /// Everything reaches the device again afterwards.
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

private:
    static const TSettings& GetSettings();

    enum TInvalid : std::int32_t { InvalidColor = 1, InvalidMode = 2, InvalidRop = 4, InvalidAll = 7 };

    void Set(CCanvas* canvas);

    std::int32_t m_BkMode = ModeTransparent;
    std::int32_t m_BkColor = 0;
    std::int32_t m_Rop = RopCopy;
    std::int32_t m_fInvalid = InvalidAll;
};

}  // namespace zul
