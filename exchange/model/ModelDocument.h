#pragma once

#include <NCollection_DataMap.hxx>
#include <TDF_Label.hxx>
#include <TDF_LabelMapHasher.hxx>
#include <TDocStd_Document.hxx>
#include <array>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "exchange/model/Losses.h"
#include "exchange/model/ModelFormat.h"
#include "exchange/model/StepContent.h"
#include "exchange/run/StageProgress.h"
#include "framework/api/Enums.h"

class TopoDS_TShape;

namespace KVR
{

struct ModelReadOptions
{
    /// Whether annotations (dimensions, tolerances, datums) and views are read.
    bool withAnnotations = true;
    /// The unit of a model that states none.
    UnitTypeEnum unit = kUnitType_Millimeter;
    /// Whether what is whole is taken of a STEP file that is damaged.
    bool isLenient = false;
    /// Told, where there is one, of "reading" of STEP, and of "transferring" of STEP and IGES.
    TellStage progress;
};

/// A model as it was read: a document of Open CASCADE's with its geometry in the unit that the model states, and what
/// stands beside it.
struct ModelDocument
{
    Handle(TDocStd_Document) document;
    UnitTypeEnum unit = kUnitType_Millimeter;
    bool isUnitStated = false;
    /// Which of its axes points up.
    bool isYUp = false;
    /// Names of elements of file properties ("Author", "Organization", ...) with their texts.
    std::vector<std::pair<std::string, std::string>> header;
    /// "YYYY-MM-DDThh:mm:ss", as the model says.
    std::string creationTime;
    /// What the model calls its bodies, and by what its faces and edges are known in it, by the shape without place.
    std::unordered_map<TopoDS_TShape const*, std::string> bodyNames;
    std::unordered_map<TopoDS_TShape const*, std::string> entityIds;
    /// Where the eyes of saved views are, by the names of the views; Open CASCADE's documents do not tell.
    std::unordered_map<std::string, std::array<double, 3>> eyes;
    /// The names of the callouts that saved views name, in the same way: those that mean nothing but themselves are not
    /// in the views of documents.
    std::unordered_map<std::string, std::vector<std::string>> drawings;
    /// Of a STEP file, what it says by itself; null for another model.
    std::shared_ptr<StepContent> step;
    /// Its products and their usages by the labels of the document.
    NCollection_DataMap<TDF_Label, StepProduct, TDF_LabelMapHasher> products;
    NCollection_DataMap<TDF_Label, StepUsage, TDF_LabelMapHasher> usages;
    /// What was found and is not in the document, by kind.
    Losses losses;
    /// Sentences about what was taken of a damaged file.
    std::vector<std::string> remarks;
    /// What gives back, on a thread of its own, all that the reader of a STEP file held; the last, so that it has ended
    /// before anything else of the model goes. None for another model.
    std::future<void> release;

    /// Reads a model. Throws ModelError. May end the process: Open CASCADE crashes on some inputs.
    static ModelDocument Read(std::string const& path, ModelFormat format, ModelReadOptions const& options);
};

}  // namespace KVR
