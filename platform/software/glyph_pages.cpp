#include "platform/software/glyph_pages.h"

#include <utility>

#include "platform/software/display.h"
#include "platform/software/glyphs.h"

namespace device {

GlyphPage& GlyphPages::Make(Strike& owner, std::uint32_t number) {
    auto page = std::make_unique<GlyphPage>(owner, number);
    MakeRoom(page->bytes, nullptr);
    m_Pages.push_back(std::move(page));
    m_Bytes += m_Pages.back()->bytes;
    return *m_Pages.back();
}

void GlyphPages::Keep(GlyphPage& page, std::uint32_t cell, std::unique_ptr<GlyphPicture> picture) {
    const std::size_t added = picture->Bytes();
    MakeRoom(added, &page);
    if (m_Bytes + added > GetTextSettings().cacheBytes) {
        for (std::unique_ptr<GlyphPicture>& other : page.pictures)
            other.reset();
        m_Bytes -= page.bytes - sizeof(GlyphPage);
        page.bytes = sizeof(GlyphPage);
    }
    page.pictures[cell] = std::move(picture);
    page.bytes += added;
    m_Bytes += added;
}

void GlyphPages::MakeRoom(std::size_t added, const GlyphPage* kept) {
    const std::size_t most = GetTextSettings().cacheBytes;
    // Twice around: the first time may find every page used. None may be left before that.
    for (std::size_t left = 2 * m_Pages.size(); left > 0 && !m_Pages.empty() && m_Bytes + added > most;
         --left) {
        if (m_Hand >= m_Pages.size()) m_Hand = 0;
        GlyphPage& page = *m_Pages[m_Hand];
        if (page.used || &page == kept) {
            page.used = false;
            ++m_Hand;
        } else {
            Drop(m_Hand);
        }
    }
}

void GlyphPages::DropPagesOf(const Strike& owner) {
    for (std::size_t i = m_Pages.size(); i-- > 0;)
        if (&m_Pages[i]->owner == &owner) Drop(i);
}

void GlyphPages::Drop(std::size_t index) {
    GlyphPage& page = *m_Pages[index];
    page.owner.ForgetPage(page.number);
    m_Bytes -= page.bytes;
    std::swap(m_Pages[index], m_Pages.back());
    m_Pages.pop_back();
}

}  // namespace device
