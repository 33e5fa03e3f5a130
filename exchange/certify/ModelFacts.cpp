#include "exchange/certify/ModelFacts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace KVR::Certification
{

namespace
{

// JSON has no others.
std::vector<double> Finite(std::vector<double> numbers)
{
    for (double& number : numbers)
        number = std::isfinite(number) ? number : 0.0;
    return numbers;
}

// What the text of facts is made of, one after the other, as it is parsed. Whoever makes a document of it instead,
// needs memory to give it back, and ends where there is none.
class FactsTokens final : public nlohmann::json_sax<nlohmann::json>
{
public:
    explicit FactsTokens(std::string const& text)
    {
        if (!nlohmann::json::sax_parse(text, this))
            throw std::runtime_error("the facts of a model are no text of theirs");
    }

    /// Goes into a list or an object, and out of it where it ends.
    void Enter() { Take(Kind::kBegin); }
    bool Leave()
    {
        if (m_next == m_tokens.size() || m_tokens[m_next].kind != Kind::kEnd)
            return false;
        ++m_next;
        return true;
    }
    /// A text, or the name of a member.
    std::string Text() { return std::move(Take(Kind::kText).text); }
    double Number() { return Take(Kind::kNumber).number; }
    unsigned long long Count() { return static_cast<unsigned long long>(Number()); }
    bool Flag() { return Number() != 0.0; }
    std::vector<double> Numbers()
    {
        std::vector<double> numbers;
        for (Enter(); !Leave();)
            numbers.push_back(Number());
        return numbers;
    }
    std::set<std::string> Texts()
    {
        std::set<std::string> texts;
        for (Enter(); !Leave();)
            texts.insert(Text());
        return texts;
    }

    bool null() override { return false; }
    bool binary(binary_t&) override { return false; }
    bool boolean(bool flag) override { return Keep({Kind::kNumber, flag ? 1.0 : 0.0, {}}); }
    bool number_integer(number_integer_t number) override
    {
        return Keep({Kind::kNumber, static_cast<double>(number), {}});
    }
    bool number_unsigned(number_unsigned_t number) override
    {
        return Keep({Kind::kNumber, static_cast<double>(number), {}});
    }
    bool number_float(number_float_t number, string_t const&) override { return Keep({Kind::kNumber, number, {}}); }
    bool string(string_t& text) override { return Keep({Kind::kText, 0.0, std::move(text)}); }
    bool key(string_t& text) override { return Keep({Kind::kText, 0.0, std::move(text)}); }
    bool start_object(std::size_t) override { return Keep({Kind::kBegin, 0.0, {}}); }
    bool end_object() override { return Keep({Kind::kEnd, 0.0, {}}); }
    bool start_array(std::size_t) override { return Keep({Kind::kBegin, 0.0, {}}); }
    bool end_array() override { return Keep({Kind::kEnd, 0.0, {}}); }
    bool parse_error(std::size_t, std::string const&, nlohmann::detail::exception const&) override { return false; }

private:
    enum class Kind : unsigned char
    {
        kNumber,
        kText,
        kBegin,
        kEnd
    };
    struct Token
    {
        Kind kind;
        double number;
        std::string text;
    };

    bool Keep(Token token)
    {
        m_tokens.push_back(std::move(token));
        return true;
    }
    Token& Take(Kind kind)
    {
        if (m_next == m_tokens.size() || m_tokens[m_next].kind != kind)
            throw std::runtime_error("the facts of a model are not in their order");
        return m_tokens[m_next++];
    }

    std::vector<Token> m_tokens;
    std::size_t m_next = 0;
};

}  // namespace

void ModelFacts::Add(char const* table, std::string const& name, std::vector<double> const& numbers, double count)
{
    tables[table][name].Add({count, numbers});
}

void ModelFacts::Entry::Add(Entry const& other)
{
    count += other.count;
    numbers.resize(std::max(numbers.size(), other.numbers.size()), 0.0);
    for (std::size_t i = 0; i < other.numbers.size(); ++i)
        numbers[i] += other.numbers[i];
}

std::pair<std::string, std::string> ModelFacts::Parted(std::string const& joined)
{
    std::size_t const place = joined.find(kJoint);
    return place == std::string::npos ? std::pair(std::string(), joined)
                                      : std::pair(joined.substr(0, place), joined.substr(place + 1));
}

std::string ModelFacts::Text() const
{
    using nlohmann::json;
    json list = json::array();
    for (Occurrence const& o : occurrences)
        list.push_back({o.path, o.name, o.component, o.componentName, o.number, o.isPart, o.isHidden, o.solids, o.faces,
                        o.triangles, o.bodies.Numbers(), o.mesh.Numbers(), o.properties, o.units});
    json all = json::object();
    for (auto const& [name, table] : tables)
    {
        json entries = json::object();
        for (auto const& [key, entry] : table)
            entries[key] = {entry.count, Finite(entry.numbers)};
        all[name] = std::move(entries);
    }
    return json({std::move(list), std::move(all), hasBodies, hasMesh})
        .dump(-1, ' ', false, json::error_handler_t::replace);
}

ModelFacts ModelFacts::Of(std::string const& text)
{
    FactsTokens tokens(text);
    ModelFacts facts;
    tokens.Enter();
    for (tokens.Enter(); !tokens.Leave();)
    {
        Occurrence& o = facts.occurrences.emplace_back();
        tokens.Enter();
        o.path = tokens.Text();
        o.name = tokens.Text();
        o.component = tokens.Text();
        o.componentName = tokens.Text();
        o.number = tokens.Text();
        o.isPart = tokens.Flag();
        o.isHidden = tokens.Flag();
        o.solids = tokens.Count();
        o.faces = tokens.Count();
        o.triangles = tokens.Count();
        o.bodies = Bulk::Of(tokens.Numbers());
        o.mesh = Bulk::Of(tokens.Numbers());
        o.properties = tokens.Texts();
        o.units = tokens.Texts();
        tokens.Leave();
    }
    for (tokens.Enter(); !tokens.Leave();)
    {
        Table& entries = facts.tables[tokens.Text()];
        for (tokens.Enter(); !tokens.Leave();)
        {
            Entry& entry = entries[tokens.Text()];
            tokens.Enter();
            entry.count = tokens.Number();
            entry.numbers = tokens.Numbers();
            tokens.Leave();
        }
    }
    facts.hasBodies = tokens.Flag();
    facts.hasMesh = tokens.Flag();
    return facts;
}

std::string ColorText(double red, double green, double blue, double alpha)
{
    auto const byte = [](double fraction)
    { return static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * 255.0)); };
    return fmt::format("#{:02x}{:02x}{:02x}{:02x}", byte(red), byte(green), byte(blue), byte(alpha));
}

}  // namespace KVR::Certification
