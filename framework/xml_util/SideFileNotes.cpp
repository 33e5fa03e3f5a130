#include "framework/xml_util/SideFileNotes.h"

#include <xxhash.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <new>
#include <string_view>
#include <system_error>
#include <unordered_set>

#include "framework/api/IOUtil.h"

namespace KVR
{

namespace
{

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;

// The end of a document that is looked at first, and at most; there is room for more than 50,000 notes.
constexpr std::size_t kFirstTail = 4096;
constexpr std::size_t kLargestTail = std::size_t{4} * 1024 * 1024;

constexpr std::string_view kBegin = "<?kvr-side-files";
constexpr std::string_view kEnd = "?>";
constexpr std::string_view kLineEnds = "\r\n";
constexpr std::string_view kBlanks = " \t\r\n";

constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr int kHexBase = 16;

struct EndState
{
    void operator()(XXH3_state_t* state) const noexcept { XXH3_freeState(state); }
};

// A name is one word of characters that end neither the word nor the instruction.
bool IsPlain(char byte)
{
    return byte > ' ' && byte < '\x7f' && byte != '%' && byte != '?' && byte != '<' && byte != '>' && byte != '&';
}

std::string Encoded(std::string_view name)
{
    std::string text;
    for (char const byte : name)
    {
        auto const value = static_cast<unsigned char>(byte);
        if (IsPlain(byte))
            text += byte;
        else
            text.append({'%', kHexDigits[value / kHexBase], kHexDigits[value % kHexBase]});
    }
    return text;
}

// The number that a text is as a whole.
template <class Number>
bool IsNumber(std::string_view text, int base, Number& number)
{
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size();
}

// False for a text that Encoded does not make.
bool Decode(std::string_view text, std::string& name)
{
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        unsigned char byte = 0;
        if (text[i] != '%')
            name += text[i];
        else if (i + 2 < text.size() && IsNumber(text.substr(i + 1, 2), kHexBase, byte))
        {
            name += static_cast<char>(byte);
            i += 2;
        }
        else
            return false;
    }
    return true;
}

// Whether it is that of a file in a folder.
bool IsFileName(std::string_view name)
{
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\\0", 3)) == std::string_view::npos;
}

std::string_view NextWord(std::string_view& line)
{
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    std::string_view const word = line.substr(0, line.find_first_of(kBlanks));
    line.remove_prefix(word.size());
    return word;
}

std::vector<SideFileNote> NotesOf(std::string_view content)
{
    std::vector<SideFileNote> notes;
    std::unordered_set<std::string> names;
    while (!content.empty())
    {
        std::string_view line = content.substr(0, content.find_first_of(kLineEnds));
        content.remove_prefix(std::min(line.size() + 1, content.size()));
        SideFileNote note;
        bool const isGood = Decode(NextWord(line), note.name) && IsNumber(NextWord(line), 10, note.digest.size) &&
                            IsNumber(NextWord(line), kHexBase, note.digest.hash);
        if (isGood && IsFileName(note.name) && names.insert(note.name).second)
            notes.push_back(std::move(note));
    }
    return notes;
}

// The last bytes of a file, up to so many; empty when they cannot be read.
std::string Tail(std::FILE* file, std::size_t most)
{
    if (std::fseek(file, 0, SEEK_END) != 0)
        return {};
    long const size = std::ftell(file);
    std::string tail(std::min(static_cast<std::size_t>(std::max(size, 0L)), most), '\0');
    if (std::fseek(file, -static_cast<long>(tail.size()), SEEK_END) != 0 ||
        std::fread(tail.data(), 1, tail.size(), file) != tail.size())
        return {};
    tail.erase(tail.find_last_not_of(kBlanks) + 1);
    return tail;
}

}  // namespace

std::optional<FileDigest> FileDigest::Of(UTF8String const& path)
{
    FilePtr const file(path, "rb");
    if (!file)
        return std::nullopt;
    std::unique_ptr<XXH3_state_t, EndState> const state(XXH3_createState());
    if (!state)
        throw std::bad_alloc();
    XXH3_64bits_reset(state.get());
    // Blocks go past the buffer of the stream.
    std::setvbuf(file, nullptr, _IONBF, 0);
    std::unique_ptr<char[]> const block(new char[kBlockSize]);
    FileDigest digest;
    for (;;)
    {
        std::size_t const count = std::fread(block.get(), 1, kBlockSize, file);
        XXH3_64bits_update(state.get(), block.get(), count);
        digest.size += count;
        if (count < kBlockSize)
            break;
    }
    if (std::ferror(file) != 0)
        return std::nullopt;
    digest.hash = XXH3_64bits_digest(state.get());
    return digest;
}

std::string SideFileNotes::Text(std::vector<SideFileNote> const& notes)
{
    std::string text(kBegin);
    text += '\n';
    for (SideFileNote const& note : notes)
    {
        text += "  " + Encoded(note.name) + ' ' + std::to_string(note.digest.size) + ' ';
        for (int shift = 60; shift >= 0; shift -= 4)
            text += kHexDigits[(note.digest.hash >> shift) % kHexBase];
        text += '\n';
    }
    return text.append(kEnd);
}

std::optional<std::vector<SideFileNote>> SideFileNotes::Of(UTF8String const& scenePath)
{
    FilePtr const file(scenePath, "rb");
    if (!file)
        return std::nullopt;
    for (std::size_t size = kFirstTail; size <= kLargestTail; size *= 4)
    {
        std::string const tail = Tail(file, size);
        if (!tail.ends_with(kEnd))
            return std::nullopt;
        // What stands in the notes is written without this character.
        std::size_t const begin = tail.rfind('<');
        if (begin == std::string::npos)
            continue;
        std::string_view const last = std::string_view(tail).substr(begin);
        std::size_t const head = kBegin.size();
        if (!last.starts_with(kBegin) || kBlanks.find(last[head]) == std::string_view::npos)
            return std::nullopt;
        return NotesOf(last.substr(head, last.size() - head - kEnd.size()));
    }
    return std::nullopt;
}

}  // namespace KVR
