#pragma once

#include <deque>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>
#include <unordered_set>
#include <utility>

#include "tests/support/SceneWalk.h"

namespace KVR::Test
{

/// The walk behind WalkScene: a queue of ids and the text of all answers.
class SceneWalker
{
public:
    explicit SceneWalker(XMLProducer& producer) : m_producer(producer) { m_text.imbue(std::locale::classic()); }

    void Visit(std::string const& id)
    {
        if (m_seen.insert(id).second)
            m_waiting.push_back(id);
    }

    void AskUniverse();
    void AskAll();
    SceneAnswers Answers()
    {
        m_answers.text = m_text.str();
        return std::move(m_answers);
    }

    template <class Value>
    void Tell(char const* question, Value const& value)
    {
        m_text << question << ": ";
        Write(value);
        m_text << '\n';
    }

    // A getter with one output.
    template <class Value, class Asked, class Interface>
    void Ask(char const* question, Asked const& asked, IsValueSpecifiedEnum (Interface::*getter)(Value&) const)
    {
        Value value{};
        if ((asked.*getter)(value) == kIsValueSpecified_Yes)
            Tell(question, value);
        else
            Tell(question, "not specified");
    }

private:
    void Write(bool value) { m_text << (value ? "true" : "false"); }
    void Write(unsigned long long value) { m_text << value; }
    void Write(int value) { m_text << value; }
    void Write(UnitTypeEnum value) { m_text << static_cast<int>(value); }
    void Write(double value) { m_text << std::setprecision(17) << value; }
    void Write(char const* value) { m_text << value; }
    void Write(std::string const& value) { m_text << value; }
    void Write(UTF8String const& value) { m_text << value.View(); }
    void Write(UTF16String const& value) { Write(UTF8String(value)); }
    void Write(struct tm const& time) { m_text << std::put_time(&time, "%Y-%m-%dT%H:%M:%S"); }
    void Write(Time const& time) { Write(time.Value()); }
    void Write(Vector const& vector) { m_text << vector[0] << ' ' << vector[1] << ' ' << vector[2]; }
    void Write(ViewingData const& data)
    {
        Write(data.UpVector());
        m_text << " / ";
        Write(data.FrontVector());
    }
    void Write(Color const& color)
    {
        m_text << color.Red() << ' ' << color.Green() << ' ' << color.Blue() << ' ' << color.Alpha();
    }
    void Write(IdSet const& ids)
    {
        for (unsigned long long i = 0; i < ids.Size(); ++i)
            m_text << '[' << ids[i].View() << ']';
    }
    void Write(Matrix3d const& matrix)
    {
        for (double const element : matrix.Elements())
            m_text << std::setprecision(17) << element << ' ';
    }
    void Write(Blob const& blob)
    {
        m_text << blob.Size() << " bytes ";
        m_text.write(static_cast<char const*>(blob.Data()), static_cast<std::streamsize>(blob.Size()));
    }
    void Write(Variant const& variant)
    {
        m_text << static_cast<int>(variant.Kind()) << ' ';
        if (variant.AStringValue())
            Write(*variant.AStringValue());
        if (variant.IdSetValue())
            Write(*variant.IdSetValue());
        if (variant.BlobValue())
            Write(*variant.BlobValue());
    }
    void Write(CustomProperty const& property);

    void AskObject(IObject& object);
    void AskUnits(IUnit const& object);
    void AskAttributeSets(IAttributeSets const& object);
    void TellObjects(char const* question, IdSet const& ids);
    void AskFileProperties(FileProperties const* properties);
    void AskComponent(IComponent const& component);
    void AskFile(IFile const& file);
    void AskAssembly(IAssembly const& assembly);
    void AskInstance(IInstance const& instance);
    void AskGeometry(IGeometry const& geometry);
    void AskShape(IGeometry const& geometry);
    void AskCallout(IAnnotationCallout const& callout);
    void AskText(IText const& text);
    void AskFragment(ITextFragment const& fragment);
    void VisitAll(char const* question, IdSet const& ids)
    {
        Tell(question, ids);
        for (std::string const& id : Ids(ids))
            Visit(id);
    }
    template <class Asked, class Interface, class Status>
    void AskTriple(char const* question, Asked const& asked,
                   Status (Interface::*getter)(double&, double&, double&) const)
    {
        Vector triple;
        (asked.*getter)(triple[0], triple[1], triple[2]);
        Tell(question, triple);
    }
    template <class Owner>
    void AskChildren(Owner const& owner);

    XMLProducer& m_producer;
    SceneAnswers m_answers;
    std::ostringstream m_text;
    std::deque<std::string> m_waiting;
    std::unordered_set<std::string> m_seen;
};

template <class Owner>
void SceneWalker::AskChildren(Owner const& owner)
{
    for (unsigned long long i = 0; i < owner.ChildCount(); ++i)
    {
        std::string const id = Text(owner.ChildAt(i).Id());
        Tell("ChildAt", id);
        Visit(id);
    }
}

}  // namespace KVR::Test
