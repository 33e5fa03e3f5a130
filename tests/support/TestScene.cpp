#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

template <class Owner>
std::vector<std::string> ChildIdsOf(Owner const& owner)
{
    std::vector<std::string> ids;
    for (unsigned long long i = 0; i < owner.ChildCount(); ++i)
        ids.emplace_back(owner.ChildAt(i).Id().View());
    return ids;
}

}  // namespace

TestScene::TestScene(std::string_view xml, std::string const& fileName)
    : m_path(m_folder.NarrowPathOf(fileName)),
      m_producer(std::make_unique<XMLProducer>(UTF16String(UTF8String(m_path.c_str())), &m_options))
{
    m_folder.Write(fileName, xml);
}

TestScene& TestScene::WithFile(std::string const& name, std::string_view bytes)
{
    m_folder.Write(name, bytes);
    return *this;
}

TestScene& TestScene::WithPrefix(char const* prefix)
{
    m_producer->SetNewObjectIdPrefix(prefix);
    return *this;
}

TestScene& TestScene::Begin(EventManager const* events)
{
    m_producer->BeginProcess(IdSet(), nullptr, events);
    return *this;
}

std::vector<std::string> TestScene::ChildIds(char const* id)
{
    IObject* const object = m_producer->Load(id);
    if (auto const* const file = dynamic_cast<IFile*>(object))
        return ChildIdsOf(*file);
    if (auto const* const assembly = dynamic_cast<IAssembly*>(object))
        return ChildIdsOf(*assembly);
    if (auto const* const part = dynamic_cast<IPart*>(object))
        return ChildIdsOf(*part);
    throw std::runtime_error(std::string("no such owner: ") + id);
}

UTF16String Wide(char const* text)
{
    return UTF16String(UTF8String(text));
}
std::string Text(UTF8String const& text)
{
    return std::string(text.View());
}
std::string Text(UTF16String const& text)
{
    return Text(UTF8String(text));
}

std::vector<std::string> Ids(IdSet const& ids)
{
    std::vector<std::string> list;
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        list.push_back(Text(ids.At(i)));
    return list;
}

}  // namespace KVR::Test
