#include "host/info/Info.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/TextValues.h"
#include "inspect/estimate/SceneCensus.h"
#include "inspect/estimate/SizeText.h"
#include "output/JsonWriter.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

using NamedCount = std::pair<std::string_view, std::uint64_t>;

// The most frequent first, and those of one count by their names.
std::vector<NamedCount> Sorted(DocumentCensus::Counts const& names)
{
    std::vector<NamedCount> sorted(names.begin(), names.end());
    std::sort(sorted.begin(), sorted.end(),
              [](NamedCount const& a, NamedCount const& b)
              { return a.second != b.second ? a.second > b.second : a.first < b.first; });
    return sorted;
}

std::string_view WordOf(SideFileCensus::Kind kind)
{
    switch (kind)
    {
        case SideFileCensus::Kind::kKernelStore:
            return "entity entities";
        case SideFileCensus::Kind::kProperties:
            return "property properties";
        default:
            return "record records";
    }
}

std::string Records(SideFileCensus const& side)
{
    if (!side.records)
        return {};
    std::string_view const words = WordOf(side.kind);
    std::size_t const gap = words.find(' ');
    std::string const counted = Counted(*side.records, words.substr(0, gap), words.substr(gap + 1));
    return (side.kind == SideFileCensus::Kind::kProperties ? ", about " : ", ") + counted;
}

std::string TimeText(double seconds)
{
    if (seconds < 0.0995)
        return fmt::format("{:.{}f} ms", seconds * 1e3, seconds < 0.00995 ? 1 : 0);
    return seconds < 99.95 ? fmt::format("{:.{}f} s", seconds, seconds < 9.95 ? 2 : 1)
                           : fmt::format("{:.0f} minutes", seconds / 60.0);
}

std::uint64_t TotalBytes(SceneCensus const& census)
{
    std::uint64_t bytes = census.documentBytes;
    for (SideFileCensus const& side : census.sideFiles)
        bytes += side.size.value_or(0);
    return bytes;
}

void PutLine(Output& out, std::string_view head, std::string_view text)
{
    out.Put(fmt::format("{:<16}{}\n", head, text));
}

}  // namespace

void WriteInfoAsText(SceneCensus const& census, Output& out)
{
    DocumentCensus const& document = census.document;
    PutLine(out, "document",
            fmt::format("{}, {}, {}, {} deep", SizeText(static_cast<double>(census.documentBytes)),
                        Counted(document.elements, "element", "elements"),
                        Counted(document.attributes, "attribute", "attributes"), document.depth));
    std::string head = "objects";
    for (auto const& [name, count] : Sorted(document.names))
    {
        if (!DocumentCensus::IsObjectName(name))
            continue;
        PutLine(out, head, fmt::format("{:>9} {}", count, Escaped(name)));
        head.clear();
    }
    for (SideFileCensus const& side : census.sideFiles)
        PutLine(out, NameOf(side.kind),
                fmt::format("{}: {}{}", Escaped(side.name),
                            side.size ? SizeText(static_cast<double>(*side.size)) : "cannot be opened", Records(side)));
    ReadingCost const cost = census.Cost();
    PutLine(out, "all files", SizeText(static_cast<double>(TotalBytes(census))));
    PutLine(out, "to read it",
            fmt::format("about {} of memory and {} of processor time", SizeText(cost.bytes), TimeText(cost.seconds)));
}

void WriteInfoAsJson(SceneCensus const& census, Output& out)
{
    JsonWriter json(out);
    auto const number = [&](std::string_view key, std::uint64_t value)
    {
        json.Key(key);
        json.Unsigned(value);
    };
    json.BeginObject();
    json.Key("Document");
    json.BeginObject();
    number("Bytes", census.documentBytes);
    number("Elements", census.document.elements);
    number("Attributes", census.document.attributes);
    number("Depth", census.document.depth);
    json.EndObject();
    json.Key("Elements");
    json.BeginObject();
    for (auto const& [name, count] : Sorted(census.document.names))
        number(name, count);
    json.EndObject();
    json.Key("SideFiles");
    json.BeginList();
    for (SideFileCensus const& side : census.sideFiles)
    {
        json.BeginObject(JsonWriter::Layout::Row);
        json.Key("Kind");
        json.String(NameOf(side.kind));
        json.Key("Name");
        json.String(side.name);
        json.Key("Bytes");
        side.size ? json.Unsigned(*side.size) : json.Null();
        json.Key("Records");
        side.records ? json.Unsigned(*side.records) : json.Null();
        json.EndObject();
    }
    json.EndList();
    number("Bytes", TotalBytes(census));
    json.Key("Estimate");
    json.BeginObject();
    ReadingCost const cost = census.Cost();
    number("MemoryBytes", static_cast<std::uint64_t>(cost.bytes));
    json.Key("Seconds");
    json.Number(cost.seconds);
    json.EndObject();
    json.EndObject();
    json.EndDocument();
}

}  // namespace KVR
