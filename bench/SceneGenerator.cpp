#include "bench/SceneGenerator.h"

#include <fmt/format.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string_view>

#include "bench/SceneFile.h"

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

class Generator
{
public:
    Generator(std::filesystem::path const& path, unsigned instances)
        : m_file(path), m_instances(instances), m_parts(std::max(kFewestParts, instances / kInstancesPerPart))
    {
    }

    void Write()
    {
        m_file.Put(R"(<?xml version="1.0" encoding="UTF-8"?>
<Scene>
  <IUniverse>
    <ViewData><UpVector>0,0,1</UpVector><FrontVector>0,-1,0</FrontVector></ViewData>
  </IUniverse>
  <IFile ID="file1" Label="Plant" IsRoot="1">
    <ChildSet>
      <Child ID="asm0" Type="IAssembly"/>
    </ChildSet>
  </IFile>
)");
        unsigned const assemblies = (m_instances + kInstancesPerAssembly - 1) / kInstancesPerAssembly;
        for (unsigned assembly = 0; assembly < assemblies; ++assembly)
            WriteAssembly(assembly, assemblies);
        for (unsigned part = 0; part < m_parts; ++part)
            m_file.Put("  <IPart ID=\"part{}\" Label=\"{}\"/>\n", part, Name(part));
        m_file.Put("</Scene>\n");
        m_file.Close();
    }

private:
    static std::string_view Name(unsigned index) { return kNames[index % kNames.size()]; }

    void WriteAssembly(unsigned assembly, unsigned assemblies)
    {
        m_file.Put("  <IAssembly ID=\"asm{0}\" Label=\"Module {0}\">\n", assembly);
        m_file.Put(
            "    <Unit LengthUnit=\"kUnitType_Millimeter\" DisplayAngleUnit=\"kUnitType_Degree\""
            " DisplayLengthUnit=\"kUnitType_Millimeter\"/>\n    <ChildSet>\n");
        unsigned const first = assembly * kInstancesPerAssembly;
        unsigned const count = std::min(kInstancesPerAssembly, m_instances - first);
        for (unsigned place = 0; place < count; ++place)
        {
            unsigned const branch = assembly * kBranchesPerAssembly + place + 1;
            if (place < kBranchesPerAssembly && branch < assemblies)
                WriteInstance(first + place, fmt::format("asm{}", branch), "Module");
            else
                WritePartInstance(first + place);
        }
        m_file.Put("    </ChildSet>\n  </IAssembly>\n");
    }

    void WritePartInstance(unsigned index)
    {
        unsigned const part = static_cast<unsigned>(m_random() % m_parts);
        WriteInstance(index, fmt::format("part{}", part), Name(part));
    }

    void WriteInstance(unsigned index, std::string_view target, std::string_view name)
    {
        m_file.Put("      <IInstance ID=\"{0}\" Label=\"{1}:{2}\" Visibility=\"{3}\" NetVisibility=\"{3}\">\n",
                   InstanceId(index), name, index % kInstancesPerAssembly + 1, m_random() % 16 == 0 ? 0 : 1);
        m_file.Put("        <Child ID=\"{}\"", target);
        WriteTransformation(index);
        m_file.Put("/>\n      </IInstance>\n");
    }

    // Of four instances two are turned and moved, one is moved, and one states no transform.
    void WriteTransformation(unsigned index)
    {
        if (index % 4 == 3)
            return;
        double const angle = index % 4 == 2 ? 0.0 : Uniform(0.0, 6.28);
        double const c = std::cos(angle);
        double const s = std::sin(angle);
        m_file.Put(" Transformation=\"{} {} 0 {} {} {} 0 {} 0 0 1 {} 0 0 0 1\"", c, s == 0.0 ? 0.0 : -s,
                   Uniform(-1000.0, 1000.0), s, c, Uniform(-1000.0, 1000.0), Uniform(-1000.0, 1000.0));
    }

    double Uniform(double low, double high) { return low + (high - low) * static_cast<double>(m_random()) / 0x1p64; }

    SceneFile m_file;
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
    return fmt::format("inst{}", index);
}

}  // namespace KVR::Bench
