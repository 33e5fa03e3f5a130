#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "host/TextValues.h"
#include "host/explain/ExplanationOutput.h"
#include "inspect/Explain.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

std::string LinesOf(FileRange const& range)
{
    if (range.firstLine == 0)
        return Escaped(range.file);
    return fmt::format("{}:{}{}", Escaped(range.file), range.firstLine,
                       range.lastLine > range.firstLine ? fmt::format("-{}", range.lastLine) : std::string());
}

std::string BytesOf(FileRange const& range)
{
    return range.end > range.begin ? fmt::format(", bytes {} to {}", range.begin, range.end) : std::string();
}

// Safe to show, with quotes as they stand.
std::string Shown(std::string const& text)
{
    std::string shown = Escaped(text);
    for (std::size_t at = 0; (at = shown.find("\\\"", at)) != std::string::npos; ++at)
        shown.erase(at, 1);
    return shown;
}

std::string SourceOf(ExplainedAnswer const& answer)
{
    bool const isNamed = answer.source == AnswerSource::kAttribute || answer.source == AnswerSource::kElement;
    std::string text = TextOf(answer.source);
    if (!isNamed)
        return text;
    text += " " + Escaped(answer.from);
    if (answer.source == AnswerSource::kAttribute && answer.from.find(' ') == std::string::npos)
        text += "=" + Quoted(answer.text);
    else if (!answer.text.empty())
        text += ": " + Escaped(answer.text);
    return answer.understood.empty() ? text : text + " (" + Escaped(answer.understood) + ")";
}

void PutAnswers(Explanation const& explanation, Output& out)
{
    std::size_t width = 0;
    for (ExplainedAnswer const& answer : explanation.answers)
        width = std::max(width, answer.operation.size());
    if (width > 0)
        out.Put("answers\n");
    for (ExplainedAnswer const& answer : explanation.answers)
        out.Put(fmt::format("  {:<{}}  {}  <- {}\n", answer.operation, width, Shown(answer.value), SourceOf(answer)));
}

void PutMore(std::uint64_t count, std::size_t listed, Output& out)
{
    if (count > listed)
        out.Put(fmt::format("  and {} more\n", count - listed));
}

void PutOccurrence(ExplainedOccurrence const& occurrence, Output& out)
{
    out.Put(fmt::format("  {}\n", occurrence.path.empty() ? "the root" : Escaped(occurrence.path)));
    std::string const style = occurrence.style.empty() ? "none" : Escaped(occurrence.style);
    out.Put(fmt::format("    style {}{}: {}\n", style,
                        occurrence.styleLabel.empty() ? "" : " " + Quoted(occurrence.styleLabel),
                        Escaped(occurrence.styleReason)));
    out.Put(
        fmt::format("    {}: {}\n", occurrence.isVisible ? "shown" : "hidden", Escaped(occurrence.visibilityReason)));
    out.Put(fmt::format("    place: {}\n", Escaped(occurrence.placeReason)));
}

}  // namespace

void WriteExplanationAsText(Explanation const& explanation, Output& out)
{
    out.Put(fmt::format("{} {} {}\n", explanation.className, Quoted(explanation.label), Escaped(explanation.id)));
    out.Put(fmt::format("{}{}: {}\n", LinesOf(explanation.element), BytesOf(explanation.element),
                        Escaped(explanation.elementPath)));
    for (ExplainedRecord const& record : explanation.records)
        out.Put(fmt::format("{}{}: {}\n", LinesOf(record.place), BytesOf(record.place), Escaped(record.kind)));
    PutAnswers(explanation, out);
    out.Put(fmt::format("named by {}\n", Counted(explanation.referenceCount, "object", "objects")));
    for (ExplainedReference const& reference : explanation.references)
        out.Put(fmt::format("  {} {}: {}\n", reference.className, Escaped(reference.id),
                            fmt::join(reference.operations, ", ")));
    PutMore(explanation.referenceCount, explanation.references.size(), out);
    out.Put(Counted(explanation.occurrenceCount, "occurrence", "occurrences") + "\n");
    for (ExplainedOccurrence const& occurrence : explanation.occurrences)
        PutOccurrence(occurrence, out);
    PutMore(explanation.occurrenceCount, explanation.occurrences.size(), out);
}

}  // namespace KVR
