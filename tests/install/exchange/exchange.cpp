#include <exchange/ExportScene.h>
#include <exchange/ImportModel.h>
#include <iostream>

// exchange MODEL SCENE TARGET: makes a scene of a model and writes it for other programs.
int main(int, char** argv)
{
    KVR::ImportResult const imported = KVR::ImportModel(argv[1], argv[2]);
    std::cout << imported.counts.parts << " parts, " << imported.counts.instances << " instances" << imported.failure;
    if (imported.outcome != KVR::Outcome::kDone)
        return 1;
    KVR::SceneOptions scene;
    scene.path = argv[2];
    std::string stage;
    KVR::Progress const progress = [&](KVR::ProgressReport const& report) { return stage = report.stage, true; };
    KVR::ExportResult const exported = KVR::ExportScene(scene, argv[3], {}, progress);
    std::cout << "; " << stage << exported.failure << '\n';
    return exported.outcome == KVR::Outcome::kDone ? 0 : 1;
}
