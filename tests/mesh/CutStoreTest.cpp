// What a store's file does not hold any more reads as zeros, or as the default of the field: cut behind any field, a
// store answers as one that goes on with these.

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "describe/Tables.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/TextAnswers.h"

namespace KVR::Test
{

namespace
{

// A store, field by field, with what stands for each that is missing.
struct Fields
{
    Fields& Add(std::string const& field, std::string const& missing)
    {
        ends.push_back(bytes.size());
        bytes += field;
        defaults += missing;
        return *this;
    }
    Fields& Add(std::string const& field) { return Add(field, std::string(field.size(), '\0')); }
    Fields& Byte(unsigned value) { return Add(ByteBuilder().Byte(value).Bytes()); }
    Fields& U32(std::uint32_t value) { return Add(ByteBuilder().U32(value).Bytes()); }
    Fields& Text(std::string_view value) { return Add(ByteBuilder().String(value).Bytes()); }
    Fields& U64(std::vector<std::uint64_t> const& values)
    {
        for (std::uint64_t const value : values)
            Add(ByteBuilder().U64(value).Bytes());
        return *this;
    }
    Fields& F64(std::vector<double> const& values, double missing = 0.0)
    {
        for (double const value : values)
            Add(ByteBuilder().F64(value).Bytes(), ByteBuilder().F64(missing).Bytes());
        return *this;
    }

    std::string bytes;
    std::string defaults;
    std::vector<std::size_t> ends;
};

Fields CurveOf(std::uint64_t type)
{
    return Fields().U64({99, 1, 0, 77, type}).Text("c");
}

Fields Line()
{
    return CurveOf(1).F64({1, 2, 3, 4, 5, 6, 7, 8});
}

Fields Ray()
{
    return CurveOf(2).F64({1, 2, 3}).F64({4}, 1.0).F64({5, 6});
}

Fields Ellipse()
{
    Fields fields = CurveOf(3).Byte(1).Byte(1).F64({1, 2, 3});
    fields.F64({4}, 1.0).F64({5, 6, 7, 8}).F64({9}, 1.0);
    return fields.F64({0.5}, 1.0).F64({0.25, 2});
}

Fields Polyline()
{
    return CurveOf(4).Byte(1).Byte(1).U64({2}).F64({1, 2, 3, 4, 5, 6}).U64({1}).F64({7, 8, 9, 10, 11, 12});
}

Fields Composite()
{
    Fields fields = CurveOf(5).Byte(1).Byte(1).U64({2});
    fields.U64({7, 1}).Text("line").F64({1, 2, 3, 4, 5, 6, 7, 8});
    fields.U64({7, 5}).Text("inner").Byte(1).Byte(1).U64({1, 7, 1}).Text("other").F64({1, 2, 3, 4, 5, 6, 7, 8});
    fields.U64({1}).F64({2, 3}).U64({4});
    return fields.U64({1, 0}).F64({1, 2, 3, 4}).U64({5, 6});
}

Fields Nurbs()
{
    Fields fields = CurveOf(6).Byte(1).Byte(1).U64({4}).F64({0.25, 0.5, 1, 2}).U64({2}).F64({1, 2, 3, 4, 5, 6});
    return fields.U64({1}).F64({0.5, 2}).U64({1}).F64({0.5, 1});
}

// A mesh with everything. Its first vertices are the table of materials, so that it is whole wherever polygons are cut.
Fields Mesh()
{
    constexpr std::uint64_t kTableOffset = 89;
    Fields fields = Fields().U64({99, 1, kTableOffset, 77, 0}).Text("m").U64({3, 2, 3, 55, 2});
    EXPECT_EQ(fields.bytes.size(), kTableOffset);
    fields.U64({2, 8}).Add("material").U64({8}).Add("hardwood").F64({6, 7, 8, 9}).F64({1, 0, 0, 0, 1, 0});
    fields.U32(2).U64({2}).F64({1, 2, 3, 4}).U32(3).U64({1}).F64({5, 6, 7});
    fields.U64({3, 1, 2, 1}).Byte(1).U64({1}).Byte(1).U64({1, 1, 1}).Byte(1);
    for (int vertex = 0; vertex < 3; ++vertex)
        fields.U32(2).U64({1, 1, 1, 1});
    fields.U64({4, 2, 1, 2, 1}).Byte(1).U64({1}).Byte(0).Byte(0);
    return fields.U64({1, 2}).Byte(0).Byte(0).Byte(1).U32(1).U64({1, 1});
}

// The other layout: a set of texture vertices, and an index for each vertex of a polygon.
Fields GeometryMesh()
{
    Fields fields = Fields().U64({1, 0, 77, 0}).Text("m").U64({2, 1, 2, 55, 2});
    fields.F64({1, 2, 3, 4, 5, 6}).F64({1, 0, 0}).F64({1, 2, 3, 4});
    fields.U64({2, 1, 1}).Byte(0).Byte(1).U64({1, 1}).Byte(1).U64({1, 1});
    return fields.U64({1, 1}).Byte(0).Byte(0).Byte(1).U64({1});
}

// Small polygons, several of which are taken in one piece.
Fields PlainMesh()
{
    Fields fields = Fields().U64({99, 1, 0, 77, 0}).Text("m").U64({2, 0, 3, 55, 0}).F64({1, 2, 3, 4, 5, 6});
    for (int polygon = 0; polygon < 3; ++polygon)
        fields.U64({3, 1, 1, 1}).Byte(0);
    return fields;
}

Fields Segments()
{
    Fields fields = Fields().U64({1}).Text("m").U64({2, 2, 2}).Byte(1).Byte(1);
    return fields.U64({2, 1, 2, 1, 3}).U64({1, 1, 2, 2, 3});
}

std::string AnswersOf(std::string const& info, std::string const& mesh, std::string const& segments)
{
    TestScene scene(StoreScene(info, {"m"}, {"c"}));
    scene.WithFile("s.mesh", mesh).WithFile("s.seg", segments).Begin();
    // Lists may promise more than they have: what is refused is null.
    TextAnswers answers;
    Telling const telling{.to = answers};
    for (char const* const id : {"m", "c"})
    {
        IObject* const object = scene.Producer().Load(id);
        DescribedObject const described = object ? DescribedObject::Of(*object) : DescribedObject{};
        if (described.interface)
            TellObject(*described.interface, described.object, telling);
    }
    return answers.Take();
}

struct CutStore
{
    char const* name;
    Fields fields;
    std::string info = kMeshInfo;
    // Of the answers, so many differ at the least.
    std::size_t differing = 0;

    std::string Answers(std::string const& bytes) const
    {
        if (info == kMeshInfo || info == kGeometryInfo)
            return AnswersOf(info, bytes, "");
        return AnswersOf(info, PlainMesh().bytes, bytes);
    }

    friend std::ostream& operator<<(std::ostream& stream, CutStore const& store) { return stream << store.name; }
};

class CutStores : public testing::TestWithParam<CutStore>
{
};

}  // namespace

TEST_P(CutStores, AnswerAsThoseThatGoOnWithWhatIsMissing)
{
    Fields const& fields = GetParam().fields;
    std::set<std::string> answers = {GetParam().Answers(fields.bytes)};
    for (std::size_t i = 0; i < fields.ends.size(); ++i)
    {
        std::size_t const end = fields.ends[i];
        std::size_t const next = i + 1 < fields.ends.size() ? fields.ends[i + 1] : fields.bytes.size();
        std::string const held = fields.bytes.substr(0, end);
        std::string const cut = GetParam().Answers(held);
        answers.insert(cut);
        EXPECT_EQ(cut, GetParam().Answers(held + fields.defaults.substr(end) + std::string(1024, '\0')))
            << "cut behind " << end << " bytes";
        EXPECT_EQ(cut, GetParam().Answers(fields.bytes.substr(0, next - 1))) << "a part of a field counts as none";
    }
    EXPECT_GE(answers.size(), GetParam().differing);
}

INSTANTIATE_TEST_SUITE_P(Each, CutStores,
                         testing::Values(CutStore{"Line", Line(), kMeshInfo, 9}, CutStore{"Ray", Ray(), kMeshInfo, 7},
                                         CutStore{"Ellipse", Ellipse(), kMeshInfo, 15},
                                         CutStore{"Polyline", Polyline(), kMeshInfo, 15},
                                         CutStore{"Composite", Composite(), kMeshInfo, 20},
                                         CutStore{"Nurbs", Nurbs(), kMeshInfo, 20},
                                         CutStore{"Mesh", Mesh(), kMeshInfo, 40},
                                         CutStore{"GeometryMesh", GeometryMesh(), kGeometryInfo, 20},
                                         CutStore{"PlainMesh", PlainMesh(), kMeshInfo, 15},
                                         CutStore{"Segments", Segments(), std::string(kMeshInfo) + kSegmentInfo, 10}),
                         [](auto const& test) { return std::string(test.param.name); });

}  // namespace KVR::Test
