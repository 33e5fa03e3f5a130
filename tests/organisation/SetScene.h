#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

/// A scene with a part "owner" whose "AttributeSet" holds the text, and which holds objects "a", "b", "c". It is read
/// at once, with a prefix if one is given.
class SetScene
{
public:
    explicit SetScene(std::string_view attributeSet, char const* prefix = nullptr)
        : m_scene(std::make_unique<TestScene>("<Scene><IPart ID='a'/><IPart ID='b'/><IPart ID='c'/><IPart ID='owner'>"
                                              "<AttributeSet>" +
                                              std::string(attributeSet) + "</AttributeSet></IPart></Scene>"))
    {
        if (prefix)
            m_scene->WithPrefix(prefix);
        m_scene->Begin();
    }

    template <class Interface>
    Interface& Get(char const* id)
    {
        return m_scene->Get<Interface>(id);
    }
    bool Has(char const* id) { return m_scene->Has(id); }
    IPart& Owner() { return Get<IPart>("owner"); }

private:
    std::unique_ptr<TestScene> m_scene;
};

/// The ids that a reader of sets told, in its order.
inline std::vector<std::string> Texts(std::vector<UTF8String> const& ids)
{
    std::vector<std::string> texts;
    for (UTF8String const& id : ids)
        texts.push_back(Text(id));
    return texts;
}

}  // namespace KVR::Test
