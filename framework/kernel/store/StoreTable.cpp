#include "framework/kernel/store/StoreTable.h"

#include <charconv>
#include <ostream>
#include <utility>

#include "framework/kernel/store/StoreStream.h"

namespace KVR
{

namespace
{

constexpr std::uint64_t kLastKind = kEntity_Vertex;
constexpr std::size_t kMostDigits = 20;

// A number is eight bytes, or decimal digits with one blank or line end behind them. A text is its length and its
// bytes, in the text form with a line end behind them.
class Reader
{
public:
    Reader(StoreReadBuffer& content, bool textMode) : m_content(content), m_textMode(textMode) {}

    bool Number(std::uint64_t& value) { return m_textMode ? Digits(value) : Word(value); }

    // A count of items of which each takes so many bytes at the least.
    bool Count(std::uint64_t& count, std::uint64_t leastSize)
    {
        return Number(count) && count <= m_content.Remaining() / leastSize;
    }

    bool Text(std::string& text)
    {
        std::uint64_t length = 0;
        if (!Count(length, 1))
            return false;
        text.resize(static_cast<std::size_t>(length));
        auto const count = static_cast<std::streamsize>(length);
        if (m_content.sgetn(text.data(), count) != count)
            return false;
        return !m_textMode || m_content.sbumpc() == '\n';
    }

    bool Texts(std::vector<std::string>& texts)
    {
        std::uint64_t count = 0;
        if (!Count(count, LeastSize()))
            return false;
        for (std::uint64_t i = 0; i < count; ++i)
        {
            std::string text;
            if (!Text(text))
                return false;
            texts.push_back(std::move(text));
        }
        return true;
    }

    bool SubIds(std::vector<BODY::SubId>& ids)
    {
        std::uint64_t count = 0;
        if (!Count(count, 2 * LeastSize()))
            return false;
        for (std::uint64_t i = 0; i < count; ++i)
        {
            std::uint64_t place = 0;
            std::string text;
            if (!Number(place) || place > UINT32_MAX || !Text(text))
                return false;
            ids.push_back({static_cast<std::uint32_t>(place), std::move(text)});
        }
        return true;
    }

    // A number, and a text's length, take no less.
    std::uint64_t LeastSize() const noexcept { return m_textMode ? 2 : sizeof(std::uint64_t); }

private:
    bool Word(std::uint64_t& value)
    {
        unsigned char bytes[sizeof value];
        if (m_content.sgetn(reinterpret_cast<char*>(bytes), sizeof bytes) != sizeof bytes)
            return false;
        value = 0;
        for (std::size_t i = 0; i < sizeof bytes; ++i)
            value |= static_cast<std::uint64_t>(bytes[i]) << (8 * i);
        return true;
    }

    bool Digits(std::uint64_t& value)
    {
        std::string digits;
        for (int character = m_content.sbumpc(); character != ' ' && character != '\n'; character = m_content.sbumpc())
        {
            if (character < '0' || character > '9' || digits.size() == kMostDigits)
                return false;
            digits.push_back(static_cast<char>(character));
        }
        auto const result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        return !digits.empty() && result.ec == std::errc();
    }

    StoreReadBuffer& m_content;
    bool m_textMode;
};

class Writer
{
public:
    Writer(std::ostream& out, bool textMode) : m_out(out), m_textMode(textMode) {}

    void Number(std::uint64_t value, char behind = '\n')
    {
        if (m_textMode)
        {
            m_out << std::to_string(value) << behind;
            return;
        }
        char bytes[sizeof value];
        for (std::size_t i = 0; i < sizeof bytes; ++i)
            bytes[i] = static_cast<char>(value >> (8 * i) & 0xFF);
        m_out.write(bytes, sizeof bytes);
    }

    void Text(std::string const& text)
    {
        Number(text.size(), ' ');
        m_out.write(text.data(), static_cast<std::streamsize>(text.size()));
        if (m_textMode)
            m_out.put('\n');
    }

    void Texts(std::vector<std::string> const& texts)
    {
        Number(texts.size());
        for (std::string const& text : texts)
            Text(text);
    }

    void SubIds(std::vector<BODY::SubId> const& ids)
    {
        Number(ids.size());
        for (BODY::SubId const& id : ids)
        {
            Number(id.place, ' ');
            Text(id.dataId);
        }
    }

private:
    std::ostream& m_out;
    bool m_textMode;
};

}  // namespace

bool StoreTable::Read(StoreReadBuffer& content, bool textMode)
{
    std::uint64_t const size = content.Remaining();
    Reader reader(content, textMode);
    std::uint64_t count = 0;
    // A row has a kind and three counts.
    if (!reader.Count(count, 4 * reader.LeastSize()))
        return false;
    for (std::uint64_t i = 0; i < count; ++i)
    {
        Row row;
        row.begin = size - content.Remaining();
        std::uint64_t kind = 0;
        if (!reader.Number(kind) || kind > kLastKind || !reader.Texts(row.dataIds) || !reader.SubIds(row.faceIds) ||
            !reader.SubIds(row.edgeIds))
            return false;
        row.kind = static_cast<ENTITY_KIND>(kind);
        row.end = size - content.Remaining();
        rows.push_back(std::move(row));
    }
    return true;
}

void StoreTable::Write(std::ostream& out, bool textMode) const
{
    Writer writer(out, textMode);
    writer.Number(rows.size());
    for (Row const& row : rows)
    {
        writer.Number(row.kind);
        writer.Texts(row.dataIds);
        writer.SubIds(row.faceIds);
        writer.SubIds(row.edgeIds);
    }
}

}  // namespace KVR
