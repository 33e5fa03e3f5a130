// Prints each visible occurrence of a scene that shows something: its path, its colour and the box around it.

#include <kvr/framework/api/kvr_api.h>
#include <kvr/producer/XMLProducer.h>
#include <kvr/scene/OccurrenceWalk.h>
#include <kvr/scene/SceneBox.h>
#include <kvr/scene/SceneMeshes.h>

#include <exception>
#include <iostream>
#include <stdexcept>

namespace
{

void Print(char const* path)
{
    KVR::XMLProducer producer(KVR::UTF16String(KVR::UTF8String(path)), nullptr);
    producer.BeginProcess(KVR::IdSet(), nullptr, nullptr);
    KVR::Scene const scene(producer, producer.RootObjectId().Id());
    KVR::SceneMeshes meshes;  // each is made once, for all its occurrences
    for (KVR::OccurrenceWalk walk(scene, KVR::OccurrenceWalk::Mode::kVisible); walk.Next();)
    {
        auto const box = KVR::SceneBox::Of(walk, meshes);
        if (!box)
            continue;
        for (auto const id : walk.Path())
            std::cout << '/' << id;
        auto const* style = walk.State().StyleOf(walk.Component().geometry.front());
        if (style && style->diffuse)
            std::cout << "  " << (*style->diffuse)[0] << ' ' << (*style->diffuse)[1] << ' ' << (*style->diffuse)[2];
        std::cout << "  from " << box->low[0] << ' ' << box->low[1] << ' ' << box->low[2];
        std::cout << " to " << box->high[0] << ' ' << box->high[1] << ' ' << box->high[2] << '\n';
    }
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        if (argc != 2)
            throw std::invalid_argument("usage: scene_host SCENE.xml");
        Print(argv[1]);
        return 0;
    }
    catch (std::exception const& error)
    {
        std::cerr << "scene_host: " << error.what() << '\n';
        return 1;
    }
}
