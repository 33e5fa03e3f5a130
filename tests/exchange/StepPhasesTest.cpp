#include "exchange/export/StepPhases.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>

#include <TDocStd_Document.hxx>
#include <XCAFDoc_DocumentTool.hxx>

// What the compiler says of the order of the phases.
namespace KVR::Test
{

namespace
{

template <class... Phases>
struct List
{
};

// Each phase is made of the one before it, given away, and of no other.
template <class Phase, class Before, class... All>
constexpr bool IsMadeOf(List<All...>)
{
    return (... &&
            (std::is_same_v<All, Phase> || std::is_constructible_v<Phase, All> == std::is_same_v<All, Before>)) &&
           !std::is_constructible_v<Phase, Before&> && !std::is_constructible_v<Phase, Before const&> &&
           !std::is_copy_constructible_v<Phase> && std::is_nothrow_move_constructible_v<Phase>;
}

using Phases =
    List<ShapeDocument, TransferredModel, SeparatedModel, LayeredModel, DressedModel, AnnotatedModel, FinishedModel>;

static_assert(IsMadeOf<SeparatedModel, TransferredModel>(Phases()));
static_assert(IsMadeOf<LayeredModel, SeparatedModel>(Phases()));
static_assert(IsMadeOf<DressedModel, LayeredModel>(Phases()));
static_assert(IsMadeOf<AnnotatedModel, DressedModel>(Phases()));
static_assert(IsMadeOf<FinishedModel, AnnotatedModel>(Phases()));
static_assert(std::is_constructible_v<TransferredModel, ShapeDocument>);
static_assert(!std::is_constructible_v<FinishedModel, ShapeDocument>);

}  // namespace

TEST(StepPhases, ADocumentWithoutShapesIsRefusedInTheFirst)
{
    NotCarriedCounts counts;
    ShapeDocument document(counts);
    document.document = new TDocStd_Document("BinXCAF");
    XCAFDoc_DocumentTool::Set(document.document->Main());
    EXPECT_THROW(TransferredModel{std::move(document)}, std::runtime_error);
}

}  // namespace KVR::Test
