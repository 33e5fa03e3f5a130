#pragma once

#include <string_view>

namespace KVR
{

class IProducer;
class IdSet;
class UTF8String;
struct SceneContent;
struct SceneStyle;

/// Reads styles into a scene, each once.
class StyleReader
{
public:
    StyleReader(SceneContent& content, IProducer& producer) : m_content(content), m_producer(producer) {}

    /// The style of that id; null for an empty id. One without an object has its id alone.
    SceneStyle const* Read(UTF8String const& id);
    /// The first one of a list; null for an empty list.
    SceneStyle const* First(IdSet const& ids);

private:
    void Fill(SceneStyle& style, UTF8String const& id);

    SceneContent& m_content;
    IProducer& m_producer;
};

}  // namespace KVR
