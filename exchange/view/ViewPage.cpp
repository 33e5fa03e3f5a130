#include "exchange/view/ViewPage.h"

#include <zlib.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>

#include "framework/api/Unicode.h"
#include "output/Output.h"

#ifdef KVR_HAS_VIEWER
// The page as the build made it; its bytes are put there by ViewTemplate.cpp.
extern "C" char const kvrViewTemplate[];
extern "C" char const kvrViewTemplateEnd[];
#endif

namespace KVR
{

namespace
{

std::string_view WholePage() noexcept
{
#ifdef KVR_HAS_VIEWER
    return {kvrViewTemplate, static_cast<std::size_t>(kvrViewTemplateEnd - kvrViewTemplate)};
#else
    return {};
#endif
}

// Cuts off what is in front of a placeholder, and the placeholder.
std::string_view TakeUntil(std::string_view& text, std::string_view placeholder)
{
    std::size_t const place = text.find(placeholder);
    if (place == std::string_view::npos)
        throw std::runtime_error("the page of the viewer in this build is not whole");
    std::string_view const part = text.substr(0, place);
    text.remove_prefix(place + placeholder.size());
    return part;
}

}  // namespace

std::string TitleText(std::string_view text)
{
    constexpr std::size_t kMost = 200;
    // More than the bytes of so many characters.
    std::wstring const wide = Unicode::WideFromUtf8(text.substr(0, 4 * kMost));
    auto const isHidden = [](char32_t unit)
    {
        return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x061C || unit == 0x200E || unit == 0x200F ||
               (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069) || unit == 0xFEFF;
    };
    std::string title;
    for (wchar_t const c : wide.substr(0, kMost))
    {
        switch (c)
        {
            case L'&':
                title += "&amp;";
                break;
            case L'<':
                title += "&lt;";
                break;
            case L'>':
                title += "&gt;";
                break;
            default:
                title += isHidden(static_cast<char32_t>(c)) ? std::string(" ") : Unicode::Utf8FromWide({&c, 1});
        }
    }
    return title;
}

bool ViewPage::IsThere() noexcept
{
    return !WholePage().empty();
}

ViewPage ViewPage::Parts()
{
    if (!IsThere())
        throw std::runtime_error("this build has no viewer: it was configured with KVR_BUILD_VIEWER=OFF");
    std::string_view text = WholePage();
    ViewPage page;
    page.untilTitle = TakeUntil(text, "{{KVR_TITLE}}");
    page.untilGeometry = TakeUntil(text, "{{KVR_GEOMETRY}}");
    page.untilScene = TakeUntil(text, "{{KVR_SCENE}}");
    page.rest = text;
    return page;
}

class PackedText::Stream
{
public:
    explicit Stream(Output& out) : m_out(out)
    {
        // 15 bits of window, and 16 for the head of gzip.
        if (deflateInit2(&m_deflate, kLevel, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY) != Z_OK)
            throw std::bad_alloc();
    }
    ~Stream() { deflateEnd(&m_deflate); }
    Stream(Stream const&) = delete;
    Stream& operator=(Stream const&) = delete;

    void Put(std::string_view bytes, bool isLast)
    {
        // What zlib takes at once is counted in 32 bits.
        constexpr std::size_t kMost = std::size_t{1} << 30U;
        do
        {
            std::string_view const piece = bytes.substr(0, kMost);
            bytes.remove_prefix(piece.size());
            m_deflate.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));
            m_deflate.avail_in = static_cast<uInt>(piece.size());
            Deflate(isLast && bytes.empty() ? Z_FINISH : Z_NO_FLUSH);
        } while (!bytes.empty());
        if (isLast)
            PutRest();
    }

    unsigned long long Size() const noexcept { return m_size; }

private:
    static constexpr int kLevel = 7;

    void Deflate(int flush)
    {
        do
        {
            m_deflate.next_out = m_packed.data();
            m_deflate.avail_out = static_cast<uInt>(m_packed.size());
            deflate(&m_deflate, flush);
            for (std::size_t i = 0; i < m_packed.size() - m_deflate.avail_out; ++i)
                Encode(m_packed[i]);
        } while (m_deflate.avail_out == 0);
    }

    void Encode(unsigned char byte)
    {
        m_held = (m_held << 8U) | byte;
        if (++m_heldCount == 3)
            PutHeld(4);
    }

    void PutRest()
    {
        if (m_heldCount == 0)
            return;
        std::size_t const characters = m_heldCount + 1;
        m_held <<= 8U * (3 - m_heldCount);
        PutHeld(characters);
        for (std::size_t i = characters; i < 4; ++i)
            m_out.Put('=');
        m_size += 4 - characters;
    }

    void PutHeld(std::size_t characters)
    {
        constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        for (std::size_t i = 0; i < characters; ++i)
            m_out.Put(kAlphabet[(m_held >> (18U - 6U * i)) & 63U]);
        m_size += characters;
        m_held = 0;
        m_heldCount = 0;
    }

    Output& m_out;
    z_stream m_deflate{};
    std::array<unsigned char, 16384> m_packed{};
    std::uint32_t m_held = 0;
    std::size_t m_heldCount = 0;
    unsigned long long m_size = 0;
};

PackedText::PackedText(Output& out) : m_stream(std::make_unique<Stream>(out)) {}
PackedText::~PackedText() = default;

void PackedText::Put(std::string_view bytes)
{
    m_stream->Put(bytes, false);
}

void PackedText::Finish()
{
    m_stream->Put({}, true);
}

unsigned long long PackedText::Size() const noexcept
{
    return m_stream->Size();
}

}  // namespace KVR
