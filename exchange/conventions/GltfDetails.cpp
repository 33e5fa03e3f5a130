#include "exchange/conventions/GltfDetails.h"

#include <algorithm>
#include <initializer_list>
#include <nlohmann/json.hpp>

#include "output/JsonDepth.h"

namespace KVR
{

namespace
{

using nlohmann::json;

json ObjectOf(std::string_view text)
{
    json object = IsShallowJson(text) ? json::parse(text, nullptr, false) : json();
    return object.is_object() ? object : json::object();
}

template <class Value>
void Put(json& object, char const* name, std::optional<Value> const& value)
{
    if (value)
        object[name] = *value;
}

std::string TextOf(json const& object)
{
    return object.empty() ? std::string() : object.dump();
}

void TakeFlag(json const& object, char const* name, std::optional<bool>& flag)
{
    if (auto const found = object.find(name); found != object.end() && found->is_boolean())
        flag = found->get<bool>();
}

void TakeOneOf(json const& object, char const* name, std::initializer_list<int> known, std::optional<int>& number)
{
    auto const found = object.find(name);
    if (found != object.end() && std::any_of(known.begin(), known.end(), [&](int value) { return *found == value; }))
        number = found->get<int>();
}

}  // namespace

std::string GltfMaterialDetails::Text() const
{
    json object = json::object();
    Put(object, "alphaMode", alphaMode);
    Put(object, "alphaCutoff", alphaCutoff);
    Put(object, "doubleSided", doubleSided);
    Put(object, "unlit", unlit);
    return TextOf(object);
}

GltfMaterialDetails GltfMaterialDetails::Of(std::string_view text)
{
    json const object = ObjectOf(text);
    GltfMaterialDetails details;
    for (char const* const mode : {"OPAQUE", "MASK", "BLEND"})
        if (object.contains("alphaMode") && object["alphaMode"] == mode)
            details.alphaMode = mode;
    if (auto const cutoff = object.find("alphaCutoff"); cutoff != object.end() && cutoff->is_number())
        details.alphaCutoff = std::max(0.0, cutoff->get<double>());
    TakeFlag(object, "doubleSided", details.doubleSided);
    TakeFlag(object, "unlit", details.unlit);
    return details;
}

std::string GltfSamplerDetails::Text() const
{
    json object = json::object();
    Put(object, "wrapS", wrapS);
    Put(object, "wrapT", wrapT);
    Put(object, "magFilter", magFilter);
    Put(object, "minFilter", minFilter);
    return TextOf(object);
}

GltfSamplerDetails GltfSamplerDetails::Of(std::string_view text)
{
    json const object = ObjectOf(text);
    GltfSamplerDetails details;
    TakeOneOf(object, "wrapS", {10497, 33071, 33648}, details.wrapS);
    TakeOneOf(object, "wrapT", {10497, 33071, 33648}, details.wrapT);
    TakeOneOf(object, "magFilter", {9728, 9729}, details.magFilter);
    TakeOneOf(object, "minFilter", {9728, 9729, 9984, 9985, 9986, 9987}, details.minFilter);
    return details;
}

}  // namespace KVR
