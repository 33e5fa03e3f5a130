#include "describe/Answer.h"

#include <fmt/format.h>

#include <cmath>

namespace KVR
{

namespace
{

constexpr std::size_t kBriefLength = 64;

void AppendText(std::string& text, Answer const& answer);

struct Appender
{
    std::string& text;

    void operator()(std::monostate) const { text += "null"; }
    void operator()(bool value) const { text += value ? "true" : "false"; }
    void operator()(long long value) const { text += std::to_string(value); }
    void operator()(unsigned long long value) const { text += std::to_string(value); }
    void operator()(double value) const { text += fmt::format("{}", value); }
    void operator()(std::string const& value) const { text += '"' + value.substr(0, kBriefLength) + '"'; }
    void operator()(Answer::List const& list) const
    {
        text += '[';
        for (Answer const& item : list)
        {
            if (text.size() > kBriefLength)
                break;
            if (&item != &list.front())
                text += ", ";
            AppendText(text, item);
        }
        text += ']';
    }
    void operator()(Answer::Members const& members) const
    {
        text += '{';
        for (auto const& member : members)
        {
            if (text.size() > kBriefLength)
                break;
            if (&member != &members.front())
                text += ", ";
            text += '"' + member.first + "\": ";
            AppendText(text, member.second);
        }
        text += '}';
    }
};

void AppendText(std::string& text, Answer const& answer)
{
    std::visit(Appender{text}, answer.value);
}

}  // namespace

bool operator==(Answer const& a, Answer const& b)
{
    auto const* const x = std::get_if<double>(&a.value);
    auto const* const y = std::get_if<double>(&b.value);
    if (x && y && std::isnan(*x) && std::isnan(*y))
        return true;
    return a.value == b.value;
}

std::string BriefText(Answer const& answer)
{
    std::string text;
    AppendText(text, answer);
    if (text.size() > kBriefLength)
        text = text.substr(0, kBriefLength) + "...";
    return text;
}

Answer AnswerKeeper::Take()
{
    return std::exchange(m_answer, Answer());
}

bool AnswerKeeper::BeginMember(Row const& row)
{
    m_keys.back() = row.name;
    return true;
}

void AnswerKeeper::Bytes(void const* bytes, std::size_t size)
{
    Put(size == 0 ? std::string() : std::string(static_cast<char const*>(bytes), size));
}

void AnswerKeeper::BeginObject(Interface const& interface)
{
    Open(Answer{Answer::Members()});
    if (interface.form != Interface::Form::Named)
        return;
    m_keys.back() = "Class";
    Put(std::string(interface.name));
}

template <class Value>
void AnswerKeeper::Put(Value value)
{
    Answer answer{std::move(value)};
    if (m_open.empty())
        m_answer = std::move(answer);
    else if (auto* const list = std::get_if<Answer::List>(&m_open.back().value))
        list->push_back(std::move(answer));
    else
        std::get<Answer::Members>(m_open.back().value).emplace_back(m_keys.back(), std::move(answer));
}

void AnswerKeeper::Open(Answer answer)
{
    m_open.push_back(std::move(answer));
    m_keys.emplace_back();
}

void AnswerKeeper::Close()
{
    Answer closed = std::move(m_open.back());
    m_open.pop_back();
    m_keys.pop_back();
    Put(std::move(closed.value));
}

Answer AnswersOf(DescribedObject const& object, PropertyDatabase const* properties,
                 std::span<std::string const> extensionTypeIds)
{
    if (!object.interface)
        return {};
    AnswerKeeper keeper;
    TellObject(*object.interface, object.object,
               Telling{.to = keeper, .properties = properties, .extensionTypeIds = extensionTypeIds});
    return keeper.Take();
}

}  // namespace KVR
