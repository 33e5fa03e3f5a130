#include "bench/SceneGenerator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <string_view>

#include "authoring/SceneWriter.h"
#include "framework/api/UTF16String.h"

namespace KVR::Bench
{

namespace
{

constexpr unsigned kInstancesPerAssembly = 100;
constexpr unsigned kBranchesPerAssembly = 10;
constexpr unsigned kInstancesPerPart = 500;
constexpr unsigned kFewestParts = 10;

constexpr std::array<std::string_view, 8> kNames = {
    "Hexagon bolt ISO 4014 M8x60",
    "Washer A 8.4",
    "Bearing housing left",
    "Träger U-Profil 80x45",
    "Shaft",
    "Cover plate",
    "Écrou frein M12",
    "Sensor bracket, welded",
};

using namespace Authoring;

UTF8String Id(char const* kind, unsigned number)
{
    return UTF8String(kind + std::to_string(number));
}

class Generator
{
public:
    Generator(std::filesystem::path const& path, unsigned instances)
        : m_scene(UTF16String(UTF8String(path.string()))),
          m_instances(instances),
          m_parts(std::max(kFewestParts, instances / kInstancesPerPart))
    {
    }

    void Write()
    {
        UniverseRecord universe;
        universe.upVector = {0.0, 0.0, 1.0};
        universe.frontVector = {0.0, -1.0, 0.0};
        m_scene.Universe(universe);
        FileRecord file;
        file.id = "file1";
        file.label = "Plant";
        file.children = {{"asm0", FileChildType::kAssembly}};
        m_scene.BeginFile(file);
        m_scene.EndFile();
        unsigned const assemblies = (m_instances + kInstancesPerAssembly - 1) / kInstancesPerAssembly;
        for (unsigned assembly = 0; assembly < assemblies; ++assembly)
            WriteAssembly(assembly, assemblies);
        for (unsigned part = 0; part < m_parts; ++part)
        {
            ComponentRecord component;
            component.id = Id("part", part);
            component.label = UTF8String(Name(part));
            m_scene.BeginPart(component);
            m_scene.EndPart();
        }
        m_scene.Finish();
    }

private:
    static std::string_view Name(unsigned index) { return kNames[index % kNames.size()]; }

    void WriteAssembly(unsigned assembly, unsigned assemblies)
    {
        ComponentRecord component;
        component.id = Id("asm", assembly);
        component.label = Id("Module ", assembly);
        component.unit = {kUnitType_Millimeter, kUnitType_Millimeter, kUnitType_Degree};
        m_scene.BeginAssembly(component);
        unsigned const first = assembly * kInstancesPerAssembly;
        unsigned const count = std::min(kInstancesPerAssembly, m_instances - first);
        for (unsigned place = 0; place < count; ++place)
        {
            unsigned const branch = assembly * kBranchesPerAssembly + place + 1;
            if (place < kBranchesPerAssembly && branch < assemblies)
                WriteInstance(first + place, Id("asm", branch), "Module");
            else
                WritePartInstance(first + place);
        }
        m_scene.EndAssembly();
    }

    void WritePartInstance(unsigned index)
    {
        unsigned const part = static_cast<unsigned>(m_random() % m_parts);
        WriteInstance(index, Id("part", part), Name(part));
    }

    void WriteInstance(unsigned index, UTF8String const& target, std::string_view name)
    {
        InstanceRecord instance;
        instance.id = UTF8String(InstanceId(index));
        instance.label = UTF8String(std::string(name) + ':' + std::to_string(index % kInstancesPerAssembly + 1));
        instance.isVisible = m_random() % 16 != 0;
        instance.targetId = target;
        instance.transform = Transformation(index);
        m_scene.Instance(instance);
    }

    // Of four instances two are turned and moved, one is moved, and one states no transform.
    Matrix3d Transformation(unsigned index)
    {
        Matrix3d matrix;
        if (index % 4 == 3)
            return matrix;
        double const angle = index % 4 == 2 ? 0.0 : Uniform(0.0, 6.28);
        double const c = std::cos(angle);
        double const s = std::sin(angle);
        matrix.SetElement(0, 0, c);
        matrix.SetElement(0, 1, s == 0.0 ? 0.0 : -s);
        matrix.SetElement(1, 0, s);
        matrix.SetElement(1, 1, c);
        for (int row = 0; row < 3; ++row)
            matrix.SetElement(row, 3, Uniform(-1000.0, 1000.0));
        return matrix;
    }

    double Uniform(double low, double high) { return low + (high - low) * static_cast<double>(m_random()) / 0x1p64; }

    SceneWriter m_scene;
    unsigned m_instances;
    unsigned m_parts;
    std::mt19937_64 m_random{20240301};
};

}  // namespace

void WriteScene(std::filesystem::path const& path, unsigned instances)
{
    Generator(path, instances).Write();
}

std::string InstanceId(unsigned index)
{
    return "inst" + std::to_string(index);
}

}  // namespace KVR::Bench
